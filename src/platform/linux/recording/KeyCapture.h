// Sends the program's key presses, and those that others have grabbed, to one handler while a
// window is active.
#pragma once

#include "platform/EventMonitor.h"
#include "platform/linux/recording/KeyboardGrab.h"

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <QWindow>
#include <optional>

class HeldKeyRepeatFilter;
class ShortcutsInhibitor;
class WaylandHotkeyService;
class X11HotkeyService;
struct KeyCombination;

class KeyCapture final : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<void(const KeyEvent &)>;

    /// Those that the session has; the others are null.
    struct Services {
        /// The grab on X11 suspends them.
        X11HotkeyService *x11Hotkeys = nullptr;
        /// Their presses go to the handler too.
        WaylandHotkeyService *waylandHotkeys = nullptr;
        /// In all Wayland sessions, where nothing is grabbed.
        ShortcutsInhibitor *inhibitor = nullptr;
    };

    /// The window is that of the widget; the widget may be destroyed first. The handler may delete
    /// the capture.
    KeyCapture(QWidget &widget, Handler handler, HeldKeyRepeatFilter &repeatFilter,
               const Services &services);
    ~KeyCapture() override;

    /// Whether the window is active.
    bool isOn() const { return m_isOn; }

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void followWindow();
    void begin();
    void end();
    void inhibitShortcuts();
    void uninhibitShortcuts();
    void grabKeyboard();
    void releaseKeyboard();
    void divertHotkeys();
    void hear(const KeyEvent &event);
    bool swallow(QEvent &event);
    bool swallowKey(QKeyEvent &event);

    const QPointer<QWidget> m_widget;
    const Handler m_handler;
    HeldKeyRepeatFilter &m_repeatFilter;
    const Services m_services;
    bool m_isOn = false;
    std::optional<KeyboardGrab> m_keyboardGrab;
};
