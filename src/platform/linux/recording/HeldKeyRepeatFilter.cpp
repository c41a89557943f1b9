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
            forget(keycode(event));
        return false;
    }
    m_keys.insert(keycode(event), event.key());
    return !event.isAutoRepeat();
}

void HeldKeyRepeatFilter::swallowRepeats()
{
    if (!m_keys.isEmpty())
        QCoreApplication::instance()->installEventFilter(this);
}

bool HeldKeyRepeatFilter::eventFilter(QObject *watched, QEvent *event)
{
    // Leave the event to MisjudgedRepeats until the window sends it to a widget.
    if (watched->isWindowType())
        return false;
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
    if (isHeld && event.isAutoRepeat())
        return true;
    // If the key was held, its release went elsewhere, such as to another program in front.
    forget(keycode(event));
    if (m_keys.isEmpty())
        QCoreApplication::instance()->removeEventFilter(this);
    return false;
}

void HeldKeyRepeatFilter::forget(XKeycode key)
{
    if (m_keys.remove(key) && m_keys.isEmpty())
        Q_EMIT allKeysUp();
}
