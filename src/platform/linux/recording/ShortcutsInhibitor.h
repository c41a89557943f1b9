// Keeps the Wayland compositor's own shortcuts from acting on the keys of a window.
#pragma once

#include <QObject>
#include <QPointer>
#include <QWindow>

struct wl_registry;
struct zwp_keyboard_shortcuts_inhibit_manager_v1;
struct zwp_keyboard_shortcuts_inhibitor_v1;

/// Uses Qt's own connection to the compositor. Does nothing if Qt runs on another platform, such as
/// XWayland, or if the compositor lacks the protocol. The compositor ends it with the program.
class ShortcutsInhibitor final : public QObject
{
    Q_OBJECT

public:
    ShortcutsInhibitor() = default;
    ~ShortcutsInhibitor() override;

    /// From now on all keys go to the window alone while it has the focus, in place of any former
    /// window. A compositor may refuse, or ask the user first; nothing waits for its answer.
    void hold(QWindow &window);

    /// Lets go when keysAreUp() is called, or when the window loses the focus.
    void letGoWhenKeysAreUp();
    void keysAreUp();

    void letGo();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Listeners;

    void findManager();
    void inhibit();
    void uninhibit();

    wl_registry *m_registry = nullptr;
    zwp_keyboard_shortcuts_inhibit_manager_v1 *m_manager = nullptr;
    zwp_keyboard_shortcuts_inhibitor_v1 *m_inhibitor = nullptr;
    QPointer<QWindow> m_window;
    bool m_isEnding = false;
};
