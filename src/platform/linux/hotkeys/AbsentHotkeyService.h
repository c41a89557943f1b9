// Stands where the session offers no way to register key combinations.
#pragma once

#include "platform/HotkeyService.h"

class AbsentHotkeyService : public HotkeyService
{
public:
    void installHandler(std::function<void(HotkeyId)>) override { }
    std::optional<Registration> registerHotkey(quint32, quint32, HotkeyId) override
    {
        return std::nullopt;
    }
};
