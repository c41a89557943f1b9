#include "platform/linux/layout/PlasmaCodes.h"

#include "platform/KeyModifier.h"

#include <Qt>

namespace
{
/// Control, Alt and F1 to F12 switch consoles, but not with Shift. The keysyms of most key maps say
/// so, not all.
bool isOfConsoles(const KeySymbol &symbol, quint32 modifiers)
{
    constexpr quint32 controlAlt = controlKey | optionKey;
    const int key = qtKey(symbol.keysym);
    return (modifiers & ~quint32(commandKey)) == controlAlt && key >= Qt::Key_F1
        && key <= Qt::Key_F12;
}
} // namespace

QList<int> plasmaCodes(const KeySymbols &symbols, VirtualKey key, quint32 modifiers,
                       PlasmaVersion version)
{
    QList<int> codes;
    const auto add = [&](const KeySymbol &symbol, int extraModifier) {
        const auto code = qtCode(symbol, modifiers);
        if (code && !isOfConsoles(symbol, modifiers) && !codes.contains(*code | extraModifier))
            codes << (*code | extraModifier);
    };
    for (const KeySymbols::Symbols &some : symbols.symbols(key, modifiers)) {
        if (!some.isOnKeypad) {
            add(some.symbol, 0);
        } else if (version == PlasmaVersion::six) {
            // KWin 6 marks the keysyms of the keypad (not tried; its sources of 2026, Xkb::toQtKey
            // and modifiersRelevantForGlobalShortcuts). KWin 5 does not, so the keypad's 1 would be
            // that of the other keys.
            add(some.symbol, Qt::KeypadModifier);
            add(some.withNumLock, Qt::KeypadModifier);
        }
    }
    return codes;
}
