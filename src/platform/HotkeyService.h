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

    /// Registers a virtual key code with a mask of modifiers (KeyModifier bits), until
    /// the registration is destroyed. Nothing when it is refused at once: keys that we have
    /// registered already, a key that does not exist. A service that learns of a refusal only
    /// later does so in silence, and may try again by itself. Ending a registration and making
    /// it again in one turn of the event loop costs nothing and loses no press.
    virtual std::optional<Registration> registerHotkey(quint32 keyCode, quint32 modifiers,
                                                       HotkeyId id) = 0;
};
