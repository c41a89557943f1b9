// A desktop's way of registering key combinations, in Wayland sessions.
#pragma once

#include "platform/HotkeyService.h"
#include "platform/linux/base/StartupTokens.h"
#include "platform/linux/hotkeys/KeyCombination.h"
#include "platform/linux/hotkeys/TakenKeys.h"

#include <map>
#include <optional>

/// The combinations that are wanted.
using WantedHotkeys = std::map<KeyCombination, HotkeyPurpose>;

/// Main thread only. Nothing waits for the desktop, except for the end.
class HotkeyRoute : public TakenKeys
{
    Q_OBJECT

public:
    /// To be called once, when QApplication exists.
    virtual void start() = 0;

    /// Makes the desktop match the whole set. What it refused before is tried again.
    virtual void hold(const WantedHotkeys &wanted) = 0;

    /// Gives everything up, before the program ends. Waits for the desktop, but not for long.
    virtual void letGo() = 0;

    virtual HotkeyReach reach() const = 0;

    /// The combination that the desktop uses in place of the wanted one; nothing as a rule.
    virtual std::optional<KeyCombination> otherKeys(const KeyCombination &combination) const = 0;

Q_SIGNALS:
    /// Emitted once for each press, however long the keys are held.
    void pressed(const KeyCombination &combination, const StartupTokens &tokens);

    /// Emitted when reach() or an answer of otherKeys() has changed.
    void outcomesChanged();
};
