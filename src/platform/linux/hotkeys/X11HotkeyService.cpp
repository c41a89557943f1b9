#include "platform/linux/hotkeys/X11HotkeyService.h"

#include "platform/KeyModifier.h"
#include "platform/linux/hotkeys/X11KeyEvent.h"
#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/x11/X11Connection.h"
#include "platform/linux/x11/Xkb.h"

#include <algorithm>
#include <xcb/xinput.h>

using namespace std::chrono_literals;

namespace
{
/// One keyboard change arrives as several events, within a few milliseconds. The user does not
/// notice a delay of this length.
constexpr auto keyboardSettlingTime = 50ms;
/// The interval for polling held keys until they are up. A key stays up for longer between two
/// holds, and the fastest usual auto-repeat is slower.
constexpr auto heldKeysInterval = 15ms;

bool containsAny(const std::set<KeyGrab> &set, const std::set<KeyGrab> &grabs)
{
    return std::ranges::any_of(grabs, [&](const KeyGrab &grab) { return set.contains(grab); });
}
} // namespace

X11HotkeyService::X11HotkeyService(const X11Connection &connection, UserActivation &activation)
    : m_connection(connection)
    , m_activation(activation)
    , m_grabs(connection)
{
    m_heldKeysTimer.setInterval(heldKeysInterval);
    m_heldKeysTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_heldKeysTimer, &QTimer::timeout, this, &X11HotkeyService::checkHeldKeys);
    m_keyboardTimer.setInterval(keyboardSettlingTime);
    m_keyboardTimer.setSingleShot(true);
    connect(&m_keyboardTimer, &QTimer::timeout, this, &X11HotkeyService::readKeyboard);

    selectKeyboardEvents();
    readKeyboard();
}

void X11HotkeyService::selectKeyboardEvents()
{
    auto *const connection = m_connection.get();
    m_xkbEvent = xcb_get_extension_data(connection, &xcb_xkb_id)->first_event;
    xcb_discard_reply(
        connection,
        xcb_xkb_use_extension(connection, XCB_XKB_MAJOR_VERSION, XCB_XKB_MINOR_VERSION).sequence);

    constexpr uint16_t events =
        XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY | XCB_XKB_EVENT_TYPE_MAP_NOTIFY;
    constexpr uint16_t mapParts = XCB_XKB_MAP_PART_KEY_SYMS | XCB_XKB_MAP_PART_MODIFIER_MAP;
    xcb_xkb_select_events(connection, XCB_XKB_ID_USE_CORE_KBD, events, 0, events, mapParts,
                          mapParts, nullptr);

    // Without detectable auto-repeat, each repeat of a key under our grab comes with a release that
    // never happened.
    constexpr uint32_t flag = XCB_XKB_PER_CLIENT_FLAG_DETECTABLE_AUTO_REPEAT;
    xcb_discard_reply(
        connection,
        xcb_xkb_per_client_flags(connection, XCB_XKB_ID_USE_CORE_KBD, flag, flag, 0, 0, 0)
            .sequence);
}

void X11HotkeyService::installHandler(std::function<void(HotkeyId)> handler)
{
    m_handler = std::move(handler);
}

std::optional<Registration> X11HotkeyService::registerHotkey(quint32 keyCode, quint32 modifiers,
                                                             HotkeyId id,
                                                             const HotkeyPurpose &purpose)
{
    const VirtualKey key{keyCode};
    if (KeyCodes::physicalKeys(key).isEmpty())
        return std::nullopt;
    const KeyCombination combination{key, modifiers & allModifiers};
    Registered &registered = m_registered[combination];
    // Take all keys, so that the next flush requests the refused ones too.
    registered.keys = m_keyboard.keys(key);
    registered.isRefused = false;

    const quint64 token = ++m_lastToken;
    registered.claims.add(id, purpose, token);
    scheduleFlush();
    return Registration([this, combination, token] { unregister(combination, token); });
}

void X11HotkeyService::unregister(const KeyCombination &combination, quint64 token)
{
    m_registered.at(combination).claims.end(token);
    scheduleFlush();
}

void X11HotkeyService::dropEndedClaims()
{
    for (auto &[combination, registered] : m_registered)
        registered.claims.dropEnded();
    std::erase_if(m_registered, [](const auto &item) { return item.second.claims.isEmpty(); });
}

void X11HotkeyService::scheduleFlush()
{
    if (std::exchange(m_flushIsDue, true))
        return;
    const auto flushIfDue = [this] {
        if (m_flushIsDue)
            flush();
    };
    QMetaObject::invokeMethod(this, flushIfDue, Qt::QueuedConnection);
}

void X11HotkeyService::flush()
{
    m_flushIsDue = false;
    dropEndedClaims();
    const auto difference = m_grabs.differenceTo(wantedGrabs());
    if (!difference.toGrab.empty()) {
        // Read the key map before and after: a key that was down before is not a press for us, and
        // neither is one that went down in between without an event.
        const auto before = xcb_query_keymap(m_connection.get());
        const auto refused = m_grabs.apply(difference);
        const auto after = xcb_query_keymap(m_connection.get());
        takeKeyMap(before, difference.toGrab);
        takeKeyMap(after, difference.toGrab);
        releaseRefused(refused);
    } else if (!difference.toRelease.empty()) {
        m_grabs.apply(difference);
    }
    updateTargets();
    drain();
    if (auto refused = refusedCombinations(); refused != m_refused) {
        m_refused = std::move(refused);
        Q_EMIT refusalsChanged();
    }
}

std::optional<bool> X11HotkeyService::isRefused(VirtualKey key, quint32 modifiers) const
{
    const KeyCombination combination{key, modifiers & allModifiers};
    const auto found = m_registered.find(combination);
    if (found == m_registered.cend() || !found->second.claims.isLasting())
        return std::nullopt;
    // A combination that was released and registered again in this turn has not been requested
    // anew; the last flush still holds.
    return m_refused.contains(combination);
}

void X11HotkeyService::retryRefused()
{
    // Usually only a few are refused, so probe these; requesting everything anew goes through all
    // registrations.
    if (probe(m_refused) == m_refused)
        return;
    takeKeysOfKeyboard();
    flush();
}

std::set<KeyGrab> X11HotkeyService::grabsOf(const KeyCombination &combination,
                                            const QList<XKeycode> &keys) const
{
    std::set<KeyGrab> grabs;
    if (const auto modifiers = m_keyboard.modifiers(combination.modifiers)) {
        for (const quint16 state : m_keyboard.lockVariants(*modifiers)) {
            for (const XKeycode key : keys)
                grabs.insert({key, state});
        }
    }
    return grabs;
}

std::set<KeyGrab> X11HotkeyService::wantedGrabs() const
{
    std::set<KeyGrab> wanted;
    for (const auto &[combination, registered] : m_registered)
        wanted.merge(grabsOf(combination, registered.keys));
    return wanted;
}

void X11HotkeyService::releaseRefused(const std::set<KeyGrab> &refused)
{
    if (refused.empty())
        return;
    for (auto &[combination, registered] : m_registered) {
        const auto isTaken = [&, &combination = combination](XKeycode key) {
            return containsAny(refused, grabsOf(combination, {key}));
        };
        const auto removed = registered.keys.removeIf(isTaken);
        if (removed > 0)
            registered.isRefused = registered.keys.isEmpty();
    }
    // Release the lock variants that were granted beside a refused one.
    m_grabs.apply(m_grabs.differenceTo(wantedGrabs()));
}

std::set<KeyCombination> X11HotkeyService::refusedCombinations() const
{
    std::set<KeyCombination> refused;
    for (const auto &[combination, registered] : m_registered) {
        if (registered.isRefused)
            refused.insert(combination);
    }
    return refused;
}

std::set<KeyCombination> X11HotkeyService::probe(const std::set<KeyCombination> &combinations)
{
    std::set<KeyGrab> grabs;
    for (const KeyCombination &combination : combinations)
        grabs.merge(grabsOf(combination, m_keyboard.keys(combination.key)));
    const auto refused = m_grabs.probe(grabs);
    drain();

    std::set<KeyCombination> refusedCombinations = combinations;
    std::erase_if(refusedCombinations, [&](const KeyCombination &combination) {
        const auto keys = m_keyboard.keys(combination.key);
        return keys.isEmpty() || std::ranges::any_of(keys, [&](XKeycode key) {
                   return !containsAny(refused, grabsOf(combination, {key}));
               });
    });
    return refusedCombinations;
}

void X11HotkeyService::updateTargets()
{
    m_targets.clear();
    for (const auto &[combination, registered] : m_registered) {
        if (const auto modifiers = m_keyboard.modifiers(combination.modifiers)) {
            for (const XKeycode key : registered.keys)
                m_targets.insert({{key, *modifiers}, registered.claims.live()});
        }
    }
}

void X11HotkeyService::readKeyboard()
{
    m_keyboard = X11Keyboard::read(m_connection);
    takeKeysOfKeyboard();
    flush();
}

/// Takes all keys, so that the next flush requests the refused ones too.
void X11HotkeyService::takeKeysOfKeyboard()
{
    for (auto &[combination, registered] : m_registered) {
        registered.keys = m_keyboard.keys(combination.key);
        registered.isRefused = false;
    }
}

void X11HotkeyService::attachToEventLoop()
{
    m_notifier.emplace(xcb_get_file_descriptor(m_connection.get()), QSocketNotifier::Read);
    connect(&*m_notifier, &QSocketNotifier::activated, this, &X11HotkeyService::drain);
    drain();
}

void X11HotkeyService::ignoreKeysThatAreDown()
{
    std::vector<KeyGrab> ours;
    for (const auto &[keys, id] : m_targets)
        ours.push_back(keys);
    takeKeyMap(xcb_query_keymap(m_connection.get()), std::move(ours));
    drain();
}

void X11HotkeyService::takeKeyMap(xcb_query_keymap_cookie_t request, std::vector<KeyGrab> newGrabs)
{
    const auto reply = owned(xcb_query_keymap_reply(m_connection.get(), request, nullptr));
    if (!reply)
        return;
    KeyMapSnapshot snapshot{request.sequence, {}, std::move(newGrabs)};
    std::ranges::copy(reply->keys, snapshot.map.begin());
    m_snapshots.push_back(std::move(snapshot));
}

void X11HotkeyService::apply(const KeyMapSnapshot &snapshot)
{
    m_repeatFilter.releaseAllUp(snapshot.map);
    for (const KeyGrab &grab : snapshot.grabs) {
        if (m_repeatFilter.markIfDown(grab.key, snapshot.map))
            m_grabs.tellRepeats(grab);
    }
}

/// Empties xcb's queue; to be called after each round trip, which may have queued events for which
/// the notifier does not wake. Handles events and key map snapshots in the server's order.
void X11HotkeyService::drain()
{
    if (!m_notifier)
        return;
    auto snapshot = m_snapshots.cbegin();
    while (const auto event = owned(xcb_poll_for_event(m_connection.get()))) {
        while (snapshot != m_snapshots.cend()
               && static_cast<int>(event->full_sequence - snapshot->sequence) >= 0)
            apply(*snapshot++);
        handle(*event);
    }
    while (snapshot != m_snapshots.cend())
        apply(*snapshot++);
    m_snapshots.clear();

    // Stop watching a closed connection: it is always readable.
    m_notifier->setEnabled(m_connection.isOpen());
    if (!m_repeatFilter.hasHeldKeys())
        m_heldKeysTimer.stop();
    else if (!m_heldKeysTimer.isActive())
        m_heldKeysTimer.start();
}

void X11HotkeyService::handle(const xcb_generic_event_t &event)
{
    const uint8_t type = event.response_type & ~0x80;
    if (const auto keyEvent = X11KeyEvent::read(event)) {
        if (keyEvent->down)
            handleDown(*keyEvent, *keyEvent->down);
        else
            m_repeatFilter.released(keyEvent->key);
    } else if (type == m_xkbEvent || type == XCB_MAPPING_NOTIFY) {
        // Keys or modifiers may have changed; usually they have not.
        m_keyboardTimer.start();
    }
}

void X11HotkeyService::handleDown(const X11KeyEvent &event, KeyDown down)
{
    const auto target = m_targets.find({event.key, m_keyboard.combinationModifiers(event.state)});
    const bool isOurs = target != m_targets.end();
    const bool isRepeat =
        isOurs ? !m_repeatFilter.isFresh(event.key, down) : m_repeatFilter.isHeld(event.key);
    // The active grab stays until the key is released, so that further repeats reach nobody.
    if (isRepeat)
        return;
    releaseKeyboard(event);
    if (isOurs && m_handler) {
        m_activation.happenedAt(event.time);
        m_handler(target->second);
    }
}

/// Releases the keyboard at once instead of at the key's release: the started program could not
/// grab it otherwise.
void X11HotkeyService::releaseKeyboard(const X11KeyEvent &event)
{
    auto *const connection = m_connection.get();
    m_grabs.tellRepeats({event.key, event.grabbedModifiers()});
    if (event.keyboard)
        xcb_input_xi_ungrab_device(connection, XCB_CURRENT_TIME, *event.keyboard);
    else
        xcb_ungrab_keyboard(connection, XCB_CURRENT_TIME);
    xcb_flush(connection);
}

void X11HotkeyService::checkHeldKeys()
{
    takeKeyMap(xcb_query_keymap(m_connection.get()), {});
    drain();
}
