// Refuses all hot keys, in sessions that offer no way to register them.
#pragma once

#include "platform/HotkeyService.h"

class AbsentHotkeyService : public HotkeyService
{
public:
    void installHandler(std::function<void(HotkeyId)>) override { }
    std::optional<Registration> registerHotkey(quint32, quint32, HotkeyId,
                                               const HotkeyPurpose &) override
    {
        return std::nullopt;
    }
    HotkeyReach reach() const override { return HotkeyReach::nowhere; }
    std::optional<HotkeyKeys> otherKeys(quint32, quint32) const override { return std::nullopt; }
};
