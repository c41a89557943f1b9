#include "platform/linux/recording/KeyCapture.h"

#include "platform/ModifierForms.h"
#include "platform/linux/hotkeys/WaylandHotkeyService.h"
#include "platform/linux/hotkeys/X11HotkeyService.h"
#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/recording/HeldKeyRepeatFilter.h"
#include "platform/linux/recording/ShortcutsInhibitor.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QInputMethodQueryEvent>
#include <QKeyEvent>

namespace
{
constexpr VirtualKey escape{53};

bool isModifier(const QKeyEvent &press)
{
    switch (press.key()) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
    case Qt::Key_Hyper_L:
    case Qt::Key_Hyper_R:
    case Qt::Key_CapsLock:
    case Qt::Key_NumLock:
    case Qt::Key_Mode_switch:
        return true;
    default:
        break;
    }
    // The range ISO_Lock to ISO_Level5_Lock, most of which Qt has no keys for, and Shift_Lock.
    const quint32 keysym = press.nativeVirtualKey();
    return (keysym >= 0xfe01 && keysym <= 0xfe13) || keysym == 0xffe6;
}

std::optional<VirtualKey> virtualKey(XKeycode keycode, const X11Keyboard *keyboard)
{
    return keyboard ? keyboard->virtualKey(keycode) : KeyCodes::virtualKey(evdevCode(keycode));
}

/// Pass the X server's keyboard if the events come from a server whose keyboard is known, else
/// null. Nothing for keys that are modifiers in the user's layout, and for keys without a virtual
/// key code.
std::optional<KeyEvent> keyEvent(const QKeyEvent &press, const X11Keyboard *keyboard)
{
    const auto key = virtualKey(XKeycode(press.nativeScanCode()), keyboard);
    // Escape must always work, whatever the user's layout makes of that key.
    if (!key || (isModifier(press) && *key != escape))
        return std::nullopt;
    // If the server's modifiers are known, use those: Qt's own depend on the layout.
    return KeyEvent{
        quint16(*key),
        keyboard ? keyboard->eventFlags(quint16(press.nativeModifiers()))
                 : converted(press.modifiers(), &ModifierForms::qt, &ModifierForms::eventFlag)};
}
} // namespace

KeyCapture::KeyCapture(QWidget &widget, Handler handler, HeldKeyRepeatFilter &repeatFilter,
                       const Services &services)
    : m_widget(&widget)
    , m_handler(std::move(handler))
    , m_repeatFilter(repeatFilter)
    , m_services(services)
{
    connect(&widget, &QObject::destroyed, this, &KeyCapture::end);
    qApp->installEventFilter(this);
    followWindow();
}

KeyCapture::~KeyCapture()
{
    uninhibitShortcuts();
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
        // Leave the event to MisjudgedRepeats until the window sends it to a widget.
        return m_isOn && !watched->isWindowType() && swallow(*event);
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
    inhibitShortcuts();
    divertHotkeys();
    grabKeyboard();
    // Input methods get the keys before any event filter, unless the focused object disables them.
    QGuiApplication::inputMethod()->update(Qt::ImEnabled);
}

void KeyCapture::end()
{
    if (!std::exchange(m_isOn, false))
        return;
    releaseKeyboard();
    if (m_services.waylandHotkeys)
        m_services.waylandHotkeys->divertPresses(nullptr);
    m_repeatFilter.swallowRepeats();
    QGuiApplication::inputMethod()->update(Qt::ImEnabled);
}

void KeyCapture::inhibitShortcuts()
{
    QWindow *const window = m_widget->window()->windowHandle();
    if (m_services.inhibitor && window)
        m_services.inhibitor->hold(*window);
}

/// A desktop that does not leave the keys to the window tells of our own combinations only as their
/// presses.
void KeyCapture::divertHotkeys()
{
    if (!m_services.waylandHotkeys)
        return;
    m_services.waylandHotkeys->divertPresses([this](const KeyCombination &combination) {
        hear({quint16(combination.key),
              converted(combination.modifiers, &ModifierForms::mask, &ModifierForms::eventFlag)});
    });
}

/// A compositor acts on the next repeat of keys that are held when the inhibitor ends.
void KeyCapture::uninhibitShortcuts()
{
    if (!m_services.inhibitor)
        return;
    if (m_repeatFilter.hasHeldKeys())
        m_services.inhibitor->letGoWhenKeysAreUp();
    else
        m_services.inhibitor->letGo();
}

void KeyCapture::grabKeyboard()
{
    // On other platforms windows cannot grab the keyboard, and print a warning. In a Wayland
    // session the X server is that of XWayland, and a grab there would outlive the window's focus.
    if (m_services.inhibitor || QGuiApplication::platformName() != u"xcb")
        return;
    QWindow *const window = m_widget->window()->windowHandle();
    if (window && !m_keyboardGrab)
        m_keyboardGrab.emplace(xcb_window_t(window->winId()));
    if (m_keyboardGrab)
        m_keyboardGrab->renew();
}

void KeyCapture::releaseKeyboard()
{
    if (!m_keyboardGrab)
        return;
    if (m_services.x11Hotkeys)
        m_services.x11Hotkeys->ignoreKeysThatAreDown();
    m_keyboardGrab.reset();
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
    if (const auto press =
            keyEvent(event, m_services.x11Hotkeys ? &m_services.x11Hotkeys->keyboard() : nullptr))
        hear(*press);
    return true;
}

void KeyCapture::hear(const KeyEvent &event)
{
    // Copy the handler: it may delete itself.
    const Handler handler = m_handler;
    handler(event);
}
