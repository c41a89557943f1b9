// Translates key combinations to what Plasma's shortcuts service must be asked for.
#pragma once

#include "platform/linux/layout/KeySymbols.h"

enum class PlasmaVersion { five, six };

/// The codes, in Qt's form, that the compositor sees when the keys of a virtual key code are
/// pressed with these KeyModifier bits held, in the layout in use. Usually one. None if no code
/// would work: for dead keys, keys without a symbol, the combinations of the consoles, and the
/// keypad on Plasma 5.
QList<int> plasmaCodes(const KeySymbols &symbols, VirtualKey key, quint32 modifiers,
                       PlasmaVersion version);
