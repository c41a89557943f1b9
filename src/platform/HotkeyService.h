// The system's registry of key combinations that reach us wherever they are pressed.
#pragma once

#include "platform/Registration.h"

#include <QtGlobal>
#include <functional>
#include <optional>

/// What a press carries, so that its receiver knows which registration it belongs to.
struct HotkeyId {
    quint32 signature;
    quint32 id;

    bool operator==(const HotkeyId &) const = default;
};

class HotkeyService
{
public:
    virtual ~HotkeyService() = default;

    /// Sets the one receiver of all presses. It is called on the main thread, once for each press
    /// however long the keys are held.
    virtual void installHandler(std::function<void(HotkeyId)> handler) = 0;

    /// Registers a virtual key code with a mask of modifiers (KeyModifier bits), until the
    /// registration is destroyed. Nothing if there is no such key. A service that learns of a
    /// refusal later drops the keys silently, and may try again by itself. Of several registrations
    /// of the same keys the earliest is live; the others wait for it to end, in the order in which
    /// they were made. Ending a registration and making it again for the same id in one turn of the
    /// event loop costs nothing, loses no press and keeps its place.
    virtual std::optional<Registration> registerHotkey(quint32 keyCode, quint32 modifiers,
                                                       HotkeyId id) = 0;
};
