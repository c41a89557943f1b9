// Sends the program's key presses, and those that others have grabbed, to one handler while a
// window is active.
#pragma once

#include "platform/EventMonitor.h"

#include <QObject>
#include <QPointer>
#include <QWidget>
#include <QWindow>

class HeldKeyRepeatFilter;
class ShortcutsInhibitor;
class X11HotkeyService;

class KeyCapture final : public QObject
{
    Q_OBJECT

public:
    using Handler = std::function<void(const KeyEvent &)>;

    /// The window is that of the widget; the widget may be destroyed first. The handler may delete
    /// the capture. Pass the hot keys, if there are any, so that the grab on X11 suspends them.
    /// Pass the inhibitor in Wayland sessions, where nothing is grabbed.
    KeyCapture(QWidget &widget, Handler handler, HeldKeyRepeatFilter &repeatFilter,
               X11HotkeyService *hotkeys, ShortcutsInhibitor *inhibitor);
    ~KeyCapture() override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void followWindow();
    void begin();
    void end();
    void inhibitShortcuts();
    void uninhibitShortcuts();
    void grabKeyboard();
    void releaseKeyboard();
    bool swallow(QEvent &event);
    bool swallowKey(QKeyEvent &event);

    const QPointer<QWidget> m_widget;
    const Handler m_handler;
    HeldKeyRepeatFilter &m_repeatFilter;
    X11HotkeyService *const m_hotkeys;
    ShortcutsInhibitor *const m_inhibitor;
    bool m_isOn = false;
    QPointer<QWindow> m_grabbedWindow;
};
