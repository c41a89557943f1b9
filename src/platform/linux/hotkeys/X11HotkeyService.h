// Hot keys on X11: passive grabs on the root window.
#pragma once

#include "platform/HotkeyService.h"
#include "platform/linux/activation/UserActivation.h"
#include "platform/linux/hotkeys/AutoRepeatFilter.h"
#include "platform/linux/hotkeys/KeyGrabs.h"
#include "platform/linux/x11/X11Keyboard.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <map>
#include <optional>
#include <set>
#include <vector>

class X11Connection;
struct X11KeyEvent;

/// A key with a mask of KeyModifier bits.
struct KeyCombination {
    VirtualKey key;
    quint32 modifiers;

    auto operator<=>(const KeyCombination &) const = default;
};

/// Registrations are only noted; the grabs follow at the end of the event loop's turn, all in one
/// batch, so that a combination that is given up and taken again was held all the time. Of several
/// registrations of the same combination the earliest is live and the others wait; one that is made
/// again for the same id in the same turn keeps its place.
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

    /// Makes the grabs what the registrations ask for, now. What another program holds is let go,
    /// until the keyboard changes or somebody calls retryRefused().
    void flush();

    /// Whether another program held keys that are registered, at the last flush; nothing if they
    /// are not registered.
    std::optional<bool> isRefused(VirtualKey key, quint32 modifiers) const;

    /// Asks for what was refused once more.
    void retryRefused();

    /// Which of the combinations that are not registered would be refused. One round trip, during
    /// which a press of the others might reach us in place of the window in front.
    std::set<KeyCombination> probe(const std::set<KeyCombination> &combinations);

    /// Starts to receive presses, those included that came since the grabs were made. To be
    /// called once, when QApplication exists.
    void attachToEventLoop();

    /// The server's keyboard, as it is now.
    const X11Keyboard &keyboard() const { return m_keyboard; }

    /// Takes no key that is down now for pressed, until it is let go. To be called before our
    /// program ends a grab of the whole keyboard: the next repeat of a held combination comes here.
    void ignoreKeysThatAreDown();

Q_SIGNALS:
    /// Other keys are refused than before.
    void refusalsChanged();

private:
    struct Claim {
        HotkeyId id;
        /// Of its Registration; nothing once that has ended, until the next flush.
        std::optional<quint64> token;
    };
    struct Registered {
        /// Never empty. The first is live.
        QList<Claim> claims;
        /// Where the key is on the present keyboard, less what another program holds.
        QList<XKeycode> keys;
        /// Another program holds them all.
        bool isRefused = false;
    };
    /// Which keys were down when the server had got as far as that request.
    struct KeyMapSnapshot {
        unsigned int sequence;
        AutoRepeatFilter::KeyMap map;
        /// Keys that came under a grab around that time, or out of somebody else's.
        std::vector<KeyGrab> grabs;
    };

    void selectKeyboardEvents();
    void unregister(const KeyCombination &combination, quint64 token);
    void scheduleFlush();
    void dropEndedClaims();
    /// One for each mix of the lock modifiers; none while the keyboard lacks a modifier.
    QList<KeyGrab> grabsOf(const KeyCombination &combination, XKeycode key) const;
    std::set<KeyGrab> wantedGrabs() const;
    std::set<KeyCombination> refusedCombinations() const;
    void releaseRefused(const std::set<KeyGrab> &refused);
    void updateTargets();
    void readKeyboard();
    void takeKeysOfKeyboard();

    xcb_query_keymap_cookie_t requestKeyMap() const;
    void takeKeyMap(xcb_query_keymap_cookie_t request, std::vector<KeyGrab> newGrabs);
    void apply(const KeyMapSnapshot &snapshot);
    void drain();
    void handle(const xcb_generic_event_t &event);
    void handleDown(const X11KeyEvent &event, KeyDown down);
    void releaseKeyboard(const X11KeyEvent &event);
    void checkHeldKeys();

    const X11Connection &m_connection;
    UserActivation &m_activation;
    uint8_t m_xkbEvent = 0;
    X11Keyboard m_keyboard;
    KeyGrabs m_grabs;
    AutoRepeatFilter m_repeatFilter;
    std::vector<KeyMapSnapshot> m_snapshots;

    std::map<KeyCombination, Registered> m_registered;
    /// Those that were refused at the last flush.
    std::set<KeyCombination> m_refused;
    /// The registration that a press belongs to, by key and modifiers without locks.
    std::map<KeyGrab, HotkeyId> m_targets;
    std::function<void(HotkeyId)> m_handler;
    quint64 m_lastToken = 0;

    bool m_flushIsDue = false;
    std::optional<QSocketNotifier> m_notifier;
    QTimer m_heldKeysTimer;
    QTimer m_keyboardTimer;
};
