// A key combination as desktops store it in their settings.
#pragma once

#include "platform/linux/keys/KeyNumbers.h"

#include <QtGlobal>
#include <optional>

class QString;

/// Names its key either by a keysym, whose key depends on the current layout, or by a key code.
struct Accelerator {
    /// An OR of EventFlag bits.
    quint32 modifiers = 0;
    /// An XKB keysym in lower case; 0 if there is a key code.
    quint32 keysym = 0;
    /// The X key code; nothing if there is a keysym.
    std::optional<XKeycode> keycode = {};
    /// Whether Shift is implied where the layout has the keysym on the second level of a key.
    bool impliesShift = false;

    bool operator==(const Accelerator &) const = default;
};

/// Parses GTK's form, such as "<Primary><Alt>t" or "<Super>0x2e". Nothing if the text names no
/// combination that could be pressed on one key, as "" and "disabled" do, or if it needs a modifier
/// that our combinations lack.
std::optional<Accelerator> gtkAccelerator(const QString &text);

/// Parses Qt's form, with modifiers and key in one number. Nothing as for gtkAccelerator().
std::optional<Accelerator> qtAccelerator(int code);

/// Qt's key for a keysym, as Plasma's compositor finds it; 0 if Qt has none.
int qtKey(quint32 keysym);

/// What a key gives while some modifiers are held.
struct KeySymbol {
    /// 0 if the key gives nothing, or nothing on its own, as dead keys do.
    quint32 keysym = 0;
    /// Those of the held modifiers that made the keysym, as a mask of KeyModifier bits.
    quint32 consumedModifiers = 0;

    bool operator==(const KeySymbol &) const = default;
};

/// Qt's form of a press, with these KeyModifier bits held, as Plasma's compositor sees it. Nothing
/// if there is none.
std::optional<int> qtCode(const KeySymbol &symbol, quint32 modifiers);

/// Parses LXQt's form, such as "Control+Alt+T". Nothing as for gtkAccelerator().
std::optional<Accelerator> lxqtAccelerator(const QString &text);
