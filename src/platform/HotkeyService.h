// The system's registry of global key combinations.
#pragma once

#include "platform/Registration.h"

#include <QtGlobal>
#include <functional>
#include <optional>

/// Identifies the registration that a press belongs to.
struct HotkeyId {
    quint32 signature;
    quint32 id;

    bool operator==(const HotkeyId &) const = default;
};

class HotkeyService
{
public:
    virtual ~HotkeyService() = default;

    /// Sets the only receiver of presses. It is called on the main thread, once per press however
    /// long the keys are held.
    virtual void installHandler(std::function<void(HotkeyId)> handler) = 0;

    /// Registers a virtual key code with a mask of modifiers (KeyModifier bits) until the
    /// registration is destroyed. Returns nothing if there is no such key. A service that learns of
    /// a refusal only later drops the keys silently and may retry by itself. If the same keys are
    /// registered several times, the earliest registration is live; the others wait for it to end,
    /// in the order in which they were made. Ending a registration and making it again for the same
    /// id in the same turn of the event loop costs nothing, loses no press and keeps its place.
    virtual std::optional<Registration> registerHotkey(quint32 keyCode, quint32 modifiers,
                                                       HotkeyId id) = 0;
};
