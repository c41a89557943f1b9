#include "platform/linux/x11/MisjudgedRepeats.h"

#include "platform/linux/x11/X11Connection.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScopedValueRollback>
#include <utility>

namespace
{
XKeycode keycode(const QKeyEvent &event)
{
    return XKeycode(event.nativeScanCode());
}
} // namespace

MisjudgedRepeats::MisjudgedRepeats(std::function<bool(XKeycode)> isDown)
    : m_isDown(std::move(isDown))
{
}

bool MisjudgedRepeats::eventFilter(QObject *watched, QEvent *event)
{
    // The event reaches a window first, and then the widgets in it.
    switch (event->type()) {
    case QEvent::KeyRelease:
        return watched->isWindowType()
            && swallowRelease(*watched, static_cast<QKeyEvent &>(*event));
    case QEvent::KeyPress:
        return watched->isWindowType() && swallowPress(static_cast<QKeyEvent &>(*event));
    case QEvent::ShortcutOverride:
        if (!isRepeat(static_cast<QKeyEvent &>(*event)))
            return false;
        // Accept it, or Qt looks for a shortcut.
        event->accept();
        return true;
    default:
        return false;
    }
}

bool MisjudgedRepeats::swallowRelease(QObject &window, const QKeyEvent &release)
{
    if (m_isReplaying || release.isAutoRepeat())
        return false;
    m_releasedKey = keycode(release);
    m_releaseTime = release.timestamp();
    m_withheld.reset();
    if (!m_isDown(m_releasedKey))
        return false;
    m_withheld.reset(release.clone());
    m_window = &window;
    return true;
}

bool MisjudgedRepeats::swallowPress(const QKeyEvent &press)
{
    if (isRepeat(press)) {
        m_withheld.reset();
        return true;
    }
    // If the key is pressed anew, the user did let go of it before.
    if (m_withheld && m_window && keycode(press) == m_releasedKey) {
        const auto release = std::exchange(m_withheld, nullptr);
        const QScopedValueRollback replaying(m_isReplaying, true);
        QCoreApplication::sendEvent(m_window, release.get());
    }
    return false;
}

bool MisjudgedRepeats::isRepeat(const QKeyEvent &press) const
{
    return m_releaseTime != 0 && press.timestamp() == m_releaseTime
        && keycode(press) == m_releasedKey && !press.isAutoRepeat();
}

bool isDownOnX11(XKeycode key)
{
    auto *const connection =
        qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
    const auto reply =
        owned(xcb_query_keymap_reply(connection, xcb_query_keymap(connection), nullptr));
    return reply && (reply->keys[quint32(key) / 8] & (1 << (quint32(key) % 8)));
}
