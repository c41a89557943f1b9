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
        // Comes with each press of the menu key, ahead of it.
        return static_cast<QContextMenuEvent *>(event)->reason() == QContextMenuEvent::Keyboard
            && std::ranges::find(m_keys, int(Qt::Key_Menu)) != m_keys.end();
    default:
        return false;
    }
}

/// Whether the event still belongs to a press that the windows never saw.
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
    // If it was held, its release has gone elsewhere, such as to a program in front.
    m_keys.remove(keycode(event));
    if (m_keys.isEmpty())
        QCoreApplication::instance()->removeEventFilter(this);
    return false;
}

/// A repeat comes as a release and a press of the same time. When the press has not arrived yet,
/// Qt takes the one for a real release, and the other for a fresh press.
bool HeldKeyRepeatFilter::isMisjudgedRepeat(const QKeyEvent &press) const
{
    return m_releaseTime != 0 && press.timestamp() == m_releaseTime
        && keycode(press) == m_releasedKey;
}

void HeldKeyRepeatFilter::letGo(const QKeyEvent &event)
{
    m_keys.remove(keycode(event));
    m_releasedKey = keycode(event);
    m_releaseTime = event.timestamp();
}
