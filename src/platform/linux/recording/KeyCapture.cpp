#include "platform/linux/recording/KeyCapture.h"

#include "platform/linux/hotkeys/X11HotkeyService.h"
#include "platform/linux/recording/HeldKeyRepeatFilter.h"
#include "platform/linux/recording/KeyTranslation.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QInputMethodQueryEvent>
#include <QKeyEvent>

KeyCapture::KeyCapture(QWidget &widget, Handler handler, HeldKeyRepeatFilter &repeatFilter,
                       X11HotkeyService *hotkeys)
    : m_widget(&widget)
    , m_handler(std::move(handler))
    , m_repeatFilter(repeatFilter)
    , m_hotkeys(hotkeys)
{
    connect(&widget, &QObject::destroyed, this, &KeyCapture::end);
    qApp->installEventFilter(this);
    followWindow();
}

KeyCapture::~KeyCapture()
{
    end();
}

bool KeyCapture::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::WindowActivate:
    case QEvent::WindowDeactivate:
        if (m_widget && watched == m_widget->window())
            followWindow();
        return false;
    default:
        return m_isOn && swallow(*event);
    }
}

void KeyCapture::followWindow()
{
    if (m_widget->isActiveWindow())
        begin();
    else
        end();
}

void KeyCapture::begin()
{
    if (std::exchange(m_isOn, true))
        return;
    grabKeyboard();
    // Input methods get the keys before any event filter, unless the focused object disables them.
    QGuiApplication::inputMethod()->update(Qt::ImEnabled);
}

void KeyCapture::end()
{
    if (!std::exchange(m_isOn, false))
        return;
    releaseKeyboard();
    m_repeatFilter.swallowRepeats();
    QGuiApplication::inputMethod()->update(Qt::ImEnabled);
}

void KeyCapture::grabKeyboard()
{
    // On other platforms windows cannot grab the keyboard, and print a warning.
    if (QGuiApplication::platformName() != u"xcb")
        return;
    QWindow *const window = m_widget->window()->windowHandle();
    if (window && window->setKeyboardGrabEnabled(true))
        m_grabbedWindow = window;
}

void KeyCapture::releaseKeyboard()
{
    if (!m_grabbedWindow)
        return;
    if (m_hotkeys)
        m_hotkeys->ignoreKeysThatAreDown();
    m_grabbedWindow->setKeyboardGrabEnabled(false);
    m_grabbedWindow = nullptr;
    // Flush now instead of when the event loop is idle, so that no press of a hot key is lost.
    xcb_flush(qApp->nativeInterface<QNativeInterface::QX11Application>()->connection());
}

bool KeyCapture::swallow(QEvent &event)
{
    switch (event.type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        return swallowKey(static_cast<QKeyEvent &>(event));
    case QEvent::ShortcutOverride:
        // Accept it, or Qt looks for a shortcut and the press never arrives.
        event.accept();
        return true;
    case QEvent::Shortcut:
    case QEvent::InputMethod:
        return true;
    case QEvent::InputMethodQuery:
        static_cast<QInputMethodQueryEvent &>(event).setValue(Qt::ImEnabled, false);
        return true;
    case QEvent::ContextMenu:
        return static_cast<QContextMenuEvent &>(event).reason() == QContextMenuEvent::Keyboard;
    default:
        return false;
    }
}

bool KeyCapture::swallowKey(QKeyEvent &event)
{
    // Accept it, or Qt propagates the event to the parent widgets.
    event.accept();
    if (!m_repeatFilter.follow(event))
        return true;
    // Grab again with each press, because the grab may have been refused, or a menu may have ended
    // it since. The modifiers of a combination arrive before the press that needs the grab.
    grabKeyboard();
    const auto press =
        KeyTranslation::keyEvent(event, m_hotkeys ? &m_hotkeys->keyboard() : nullptr);
    if (press) {
        // Copy the handler: it may delete itself.
        const Handler handler = m_handler;
        handler(*press);
    }
    return true;
}
