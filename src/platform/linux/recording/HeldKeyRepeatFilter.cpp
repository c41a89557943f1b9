#include "platform/linux/recording/HeldKeyRepeatFilter.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QKeyEvent>
#include <algorithm>

namespace
{
XKeycode keycode(const QKeyEvent &event)
{
    return XKeycode(event.nativeScanCode());
}
} // namespace

bool HeldKeyRepeatFilter::follow(const QKeyEvent &event)
{
    if (event.type() == QEvent::KeyRelease) {
        if (!event.isAutoRepeat())
            letGo(event);
        return false;
    }
    const bool isFresh = !event.isAutoRepeat() && !isMisjudgedRepeat(event);
    m_keys.insert(keycode(event), event.key());
    return isFresh;
}

void HeldKeyRepeatFilter::swallowRepeats()
{
    if (!m_keys.isEmpty())
        QCoreApplication::instance()->installEventFilter(this);
}

bool HeldKeyRepeatFilter::eventFilter(QObject *, QEvent *event)
{
    switch (event->type()) {
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        if (!isRest(static_cast<QKeyEvent &>(*event)))
            return false;
        event->accept();
        return true;
    case QEvent::ContextMenu:
        // This event precedes each press of the menu key.
        return static_cast<QContextMenuEvent *>(event)->reason() == QContextMenuEvent::Keyboard
            && std::ranges::find(m_keys, int(Qt::Key_Menu)) != m_keys.end();
    default:
        return false;
    }
}

/// Whether the event belongs to a press that the windows never saw.
bool HeldKeyRepeatFilter::isRest(const QKeyEvent &event)
{
    const bool isHeld = m_keys.contains(keycode(event));
    if (event.type() == QEvent::KeyRelease) {
        follow(event);
        return isHeld;
    }
    if (isMisjudgedRepeat(event) || (isHeld && event.isAutoRepeat())) {
        follow(event);
        return true;
    }
    // If the key was held, its release went elsewhere, such as to another program in front.
    forget(keycode(event));
    if (m_keys.isEmpty())
        QCoreApplication::instance()->removeEventFilter(this);
    return false;
}

/// A repeat consists of a release and a press with the same time. If the press has not arrived yet,
/// Qt takes the release for a real one and the press for a fresh one.
bool HeldKeyRepeatFilter::isMisjudgedRepeat(const QKeyEvent &press) const
{
    return m_releaseTime != 0 && press.timestamp() == m_releaseTime
        && keycode(press) == m_releasedKey;
}

void HeldKeyRepeatFilter::letGo(const QKeyEvent &event)
{
    forget(keycode(event));
    m_releasedKey = keycode(event);
    m_releaseTime = event.timestamp();
}

void HeldKeyRepeatFilter::forget(XKeycode key)
{
    if (m_keys.remove(key) && m_keys.isEmpty())
        Q_EMIT allKeysUp();
}
