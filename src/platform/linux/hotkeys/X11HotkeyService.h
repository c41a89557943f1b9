// Hot keys on X11: passive grabs on the root window.
#pragma once

#include "platform/HotkeyService.h"
#include "platform/linux/activation/UserActivation.h"
#include "platform/linux/hotkeys/AutoRepeatFilter.h"
#include "platform/linux/hotkeys/HotkeyClaims.h"
#include "platform/linux/hotkeys/KeyCombination.h"
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

/// Registrations are only recorded; the grabs follow in one batch at the end of the event loop's
/// turn, so a combination that is given up and taken again stays grabbed throughout. If the same
/// combination is registered several times, the earliest registration is live and the others wait;
/// one that is made again for the same id in the same turn keeps its place.
class X11HotkeyService : public HotkeyService
{
    Q_OBJECT

public:
    /// The connection must be open, support XKB, be used by nobody else, and outlive the service.
    /// Each press is noted as the user's latest activation. Needs no QApplication yet.
    X11HotkeyService(const X11Connection &connection, UserActivation &activation);

    void installHandler(std::function<void(HotkeyId)> handler) override;
    std::optional<Registration> registerHotkey(quint32 keyCode, quint32 modifiers, HotkeyId id,
                                               const HotkeyPurpose &purpose) override;
    HotkeyReach reach() const override { return HotkeyReach::registered; }
    std::optional<HotkeyKeys> otherKeys(quint32, quint32) const override { return std::nullopt; }

    /// Applies the registrations to the grabs now. Combinations that another program holds are
    /// given up until the keyboard changes or retryRefused() is called.
    void flush();

    /// Whether another program held the registered combination at the last flush; nothing if it is
    /// not registered.
    std::optional<bool> isRefused(VirtualKey key, quint32 modifiers) const;

    /// Requests the refused combinations again.
    void retryRefused();

    /// Returns which of the unregistered combinations would be refused. Takes one round trip,
    /// during which a press of the others might reach us instead of the active window.
    std::set<KeyCombination> probe(const std::set<KeyCombination> &combinations);

    /// Starts to receive presses, including those since the grabs were made. To be called once,
    /// when QApplication exists.
    void attachToEventLoop();

    /// The server's current keyboard.
    const X11Keyboard &keyboard() const { return m_keyboard; }

    /// Treats the keys that are down now as held, so that they cause no press until they are
    /// released. To be called before the program ends a grab of the whole keyboard: the next repeat
    /// of a held combination arrives here.
    void ignoreKeysThatAreDown();

Q_SIGNALS:
    /// Emitted when the set of refused keys has changed.
    void refusalsChanged();

private:
    struct Registered {
        /// Never empty.
        HotkeyClaims claims;
        /// The key's codes on the current keyboard, without those that another program holds.
        QList<XKeycode> keys;
        /// True if another program holds all of them.
        bool isRefused = false;
    };
    /// Which keys were down when the server handled the request with that sequence number.
    struct KeyMapSnapshot {
        unsigned int sequence;
        AutoRepeatFilter::KeyMap map;
        /// Grabs that were made around that time, or that a grab of the whole keyboard had
        /// overridden until then.
        std::vector<KeyGrab> grabs;
    };

    void selectKeyboardEvents();
    void unregister(const KeyCombination &combination, quint64 token);
    void scheduleFlush();
    void dropEndedClaims();
    /// One grab for each key and each subset of the lock modifiers; none while the keyboard lacks a
    /// modifier.
    std::set<KeyGrab> grabsOf(const KeyCombination &combination, const QList<XKeycode> &keys) const;
    std::set<KeyGrab> wantedGrabs() const;
    std::set<KeyCombination> refusedCombinations() const;
    void releaseRefused(const std::set<KeyGrab> &refused);
    void updateTargets();
    void readKeyboard();
    void takeKeysOfKeyboard();

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
    /// The combinations that were refused at the last flush.
    std::set<KeyCombination> m_refused;
    /// Maps a key and its modifiers, without locks, to the registration that a press belongs to.
    std::map<KeyGrab, HotkeyId> m_targets;
    std::function<void(HotkeyId)> m_handler;
    quint64 m_lastToken = 0;

    bool m_flushIsDue = false;
    std::optional<QSocketNotifier> m_notifier;
    QTimer m_heldKeysTimer;
    QTimer m_keyboardTimer;
};
