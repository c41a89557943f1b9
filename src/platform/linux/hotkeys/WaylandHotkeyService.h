// Hot keys in Wayland sessions, where the desktop has a way of registering them.
#pragma once

#include "platform/HotkeyService.h"
#include "platform/linux/activation/UserActivation.h"
#include "platform/linux/hotkeys/HotkeyClaims.h"
#include "platform/linux/hotkeys/HotkeyRoute.h"

#include <functional>
#include <map>
#include <memory>
#include <optional>

/// Registrations are only recorded; the route gets all of them at the end of the event loop's turn.
class WaylandHotkeyService final : public HotkeyService
{
    Q_OBJECT

public:
    /// Each press is noted as the user's latest activation.
    WaylandHotkeyService(std::unique_ptr<HotkeyRoute> route, UserActivation &activation);

    void installHandler(std::function<void(HotkeyId)> handler) override;
    std::optional<Registration> registerHotkey(quint32 keyCode, quint32 modifiers, HotkeyId id,
                                               const HotkeyPurpose &purpose) override;
    HotkeyReach reach() const override { return m_route->reach(); }
    std::optional<HotkeyKeys> otherKeys(quint32 keyCode, quint32 modifiers) const override;

    HotkeyRoute &route() { return *m_route; }

    /// Gives all registrations to the route now.
    void flush();

    /// Sends the presses to another receiver, which records them; nothing ends that.
    using Recorder = std::function<void(const KeyCombination &)>;
    void divertPresses(Recorder recorder) { m_recorder = std::move(recorder); }

private:
    void unregister(const KeyCombination &combination, quint64 token);
    void scheduleFlush();
    void handlePress(const KeyCombination &combination, const StartupTokens &tokens);

    const std::unique_ptr<HotkeyRoute> m_route;
    UserActivation &m_activation;
    std::map<KeyCombination, HotkeyClaims> m_claims;
    std::function<void(HotkeyId)> m_handler;
    Recorder m_recorder;
    quint64 m_lastToken = 0;
    bool m_flushIsDue = false;
};
