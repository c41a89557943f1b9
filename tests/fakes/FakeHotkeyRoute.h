// A desktop's way of registering key combinations, which notes what it is to hold.
#pragma once

#include "platform/linux/hotkeys/HotkeyRoute.h"

#include <QList>

class FakeHotkeyRoute : public HotkeyRoute
{
public:
    void start() override { }
    void hold(const WantedHotkeys &wanted) override { holds << wanted; }
    void letGo() override { }
    HotkeyReach reach() const override { return HotkeyReach::registered; }
    std::optional<KeyCombination> otherKeys(const KeyCombination &) const override { return used; }
    bool isHeldElsewhere(VirtualKey, quint32) override { return false; }
    void invalidate() override { }

    QList<WantedHotkeys> holds;
    std::optional<KeyCombination> used;
};
