#include "platform/linux/hotkeys/WaylandHotkeyService.h"

#include "platform/KeyModifier.h"
#include "platform/linux/keys/KeyCodes.h"

#include <utility>

WaylandHotkeyService::WaylandHotkeyService(std::unique_ptr<HotkeyRoute> route,
                                           UserActivation &activation)
    : m_route(std::move(route))
    , m_activation(activation)
{
    connect(m_route.get(), &HotkeyRoute::pressed, this, &WaylandHotkeyService::handlePress);
    connect(m_route.get(), &HotkeyRoute::outcomesChanged, this, &HotkeyService::changed);
}

void WaylandHotkeyService::installHandler(std::function<void(HotkeyId)> handler)
{
    m_handler = std::move(handler);
}

std::optional<Registration> WaylandHotkeyService::registerHotkey(quint32 keyCode, quint32 modifiers,
                                                                 HotkeyId id,
                                                                 const HotkeyPurpose &purpose)
{
    const VirtualKey key{keyCode};
    if (KeyCodes::physicalKeys(key).isEmpty())
        return std::nullopt;
    const KeyCombination combination{key, modifiers & allModifiers};
    const quint64 token = ++m_lastToken;
    m_claims[combination].add(id, purpose, token);
    scheduleFlush();
    return Registration([this, combination, token] { unregister(combination, token); });
}

std::optional<HotkeyKeys> WaylandHotkeyService::otherKeys(quint32 keyCode, quint32 modifiers) const
{
    const auto keys = m_route->otherKeys({VirtualKey(keyCode), modifiers & allModifiers});
    return keys ? std::optional(HotkeyKeys{quint32(keys->key), keys->modifiers}) : std::nullopt;
}

void WaylandHotkeyService::unregister(const KeyCombination &combination, quint64 token)
{
    m_claims.at(combination).end(token);
    scheduleFlush();
}

void WaylandHotkeyService::scheduleFlush()
{
    if (std::exchange(m_flushIsDue, true))
        return;
    const auto flushIfDue = [this] {
        if (m_flushIsDue)
            flush();
    };
    QMetaObject::invokeMethod(this, flushIfDue, Qt::QueuedConnection);
}

void WaylandHotkeyService::flush()
{
    m_flushIsDue = false;
    WantedHotkeys wanted;
    for (auto &[combination, claims] : m_claims) {
        claims.dropEnded();
        if (!claims.isEmpty())
            wanted.insert({combination, claims.purpose()});
    }
    std::erase_if(m_claims, [](const auto &item) { return item.second.isEmpty(); });
    m_route->hold(wanted);
}

void WaylandHotkeyService::handlePress(const KeyCombination &combination,
                                       const StartupTokens &tokens)
{
    if (m_recorder) {
        // Copy the receiver: it may end itself.
        const Recorder recorder = m_recorder;
        return recorder(combination);
    }
    const auto claims = m_claims.find(combination);
    if (claims == m_claims.end() || !m_handler)
        return;
    m_activation.accept(tokens);
    m_handler(claims->second.live());
}
