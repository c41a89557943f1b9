// A key combination as desktops keep it in their settings.
#pragma once

#include "platform/linux/keys/KeyNumbers.h"

#include <QtGlobal>
#include <optional>

class QString;

/// Names its key by a keysym, which the current layout puts on one key or another, or by its key
/// code.
struct Accelerator {
    /// An OR of EventFlag bits.
    quint32 modifiers = 0;
    /// A keysym of XKB in its lower case; 0 if there is a key code.
    quint32 keysym = 0;
    /// Nothing if there is a keysym.
    std::optional<XKeycode> keycode = {};
    /// Whether Shift goes without saying where a layout has the keysym on a key's second level.
    bool impliesShift = false;

    bool operator==(const Accelerator &) const = default;
};

/// In the form of GTK, such as "<Primary><Alt>t" or "<Super>0x2e". Nothing if it names no
/// combination that could be pressed on one key, as "" and "disabled" do, or if it needs a modifier
/// that no combination of ours has.
std::optional<Accelerator> gtkAccelerator(const QString &text);

/// In the form of Qt, modifiers and key in one number. Nothing as above.
std::optional<Accelerator> qtAccelerator(int code);

/// In the form of LXQt, such as "Control+Alt+T". Nothing as above.
std::optional<Accelerator> lxqtAccelerator(const QString &text);
