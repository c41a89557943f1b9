// Hot keys on X11: passive grabs on the root window.
#pragma once

#include "platform/HotkeyService.h"
#include "platform/linux/UserActivation.h"
#include "platform/linux/x11/KeyGrabs.h"
#include "platform/linux/x11/PressFilter.h"
#include "platform/linux/x11/X11Keyboard.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <map>
#include <optional>
#include <vector>

class X11Connection;

/// Registrations are only noted; the grabs follow at the end of the event loop's turn, all in one
/// batch, so that a combination that is given up and taken again was held all the time.
class X11HotkeyService : public QObject, public HotkeyService
{
    Q_OBJECT

public:
    /// The connection must be open, have XKB, be used by nobody else, and outlive the service. Each
    /// press is noted as the user's latest activation. Needs no QApplication yet.
    X11HotkeyService(const X11Connection &connection, UserActivation &activation);

    void installHandler(std::function<void(HotkeyId)> handler) override;
    std::optional<Registration> registerHotkey(quint32 keyCode, quint32 modifiers,
                                               HotkeyId id) override;

    /// Makes the grabs what the registrations ask for, now. What another program holds is let go.
    void flush();

    /// Starts to receive presses, those included that came since the grabs were made. To be
    /// called once, when QApplication exists.
    void attachToEventLoop();

    /// The server's keyboard, as it is now.
    const X11Keyboard &keyboard() const { return m_keyboard; }

    /// Takes no key that is down now for pressed, until it is let go. To be called before our
    /// program ends a grab of the whole keyboard: the next repeat of a held combination comes here.
    void ignoreKeysThatAreDown();

private:
    struct Combination {
        quint32 keyCode;
        quint32 modifiers;

        auto operator<=>(const Combination &) const = default;
    };
    struct Registered {
        quint64 token;
        HotkeyId id;
        /// Where the key is on the present keyboard, less what another program holds.
        QList<xcb_keycode_t> keys;
    };
    /// Which keys were down when the server had got as far as that request.
    struct KeyMapSnapshot {
        unsigned int sequence;
        PressFilter::KeyMap map;
        /// Keys that came under a grab around that time, or out of somebody else's.
        std::vector<KeyGrab> grabs;
    };

    void selectKeyboardEvents();
    void unregister(const Combination &combination, quint64 token);
    void scheduleFlush();
    /// One for each mix of the lock modifiers; none while the keyboard lacks a modifier.
    QList<KeyGrab> grabsOf(const Combination &combination, xcb_keycode_t key) const;
    std::set<KeyGrab> wantedGrabs() const;
    void letGoOf(const std::set<KeyGrab> &refused);
    void updateTargets();
    void readKeyboard();

    xcb_query_keymap_cookie_t requestKeyMap() const;
    void takeKeyMap(xcb_query_keymap_cookie_t request, std::vector<KeyGrab> newGrabs);
    void apply(const KeyMapSnapshot &snapshot);
    void drain();
    void handle(const xcb_generic_event_t &event);
    void handlePress(const xcb_key_press_event_t &press);
    void checkHeldKeys();

    const X11Connection &m_connection;
    UserActivation &m_activation;
    uint8_t m_xkbEvent = 0;
    X11Keyboard m_keyboard;
    KeyGrabs m_grabs;
    PressFilter m_presses;
    std::vector<KeyMapSnapshot> m_snapshots;

    std::map<Combination, Registered> m_registered;
    /// Whose a press is, by key and modifiers without locks.
    std::map<KeyGrab, HotkeyId> m_targets;
    std::function<void(HotkeyId)> m_handler;
    quint64 m_lastToken = 0;

    bool m_flushIsDue = false;
    std::optional<QSocketNotifier> m_notifier;
    QTimer m_heldKeysTimer;
    QTimer m_keyboardTimer;
};
