#include "platform/EventFlag.h"
#include "platform/linux/keys/Accelerator.h"

#include <QByteArray>
#include <QString>
#include <algorithm>
#include <iterator>
#include <xkbcommon/xkbcommon.h>

using namespace Qt::StringLiterals;

namespace
{
/// The X key code of the key above Tab, which desktops do not name by a keysym.
constexpr XKeycode aboveTab{49};

constexpr struct {
    QLatin1StringView name;
    quint32 flag;
} modifierNames[] = {
    {"Primary"_L1, controlEventFlag},
    {"Control"_L1, controlEventFlag},
    {"Ctrl"_L1, controlEventFlag},
    {"Ctl"_L1, controlEventFlag},
    {"Alt"_L1, optionEventFlag},
    {"Meta"_L1, optionEventFlag},
    {"Mod1"_L1, optionEventFlag},
    {"Super"_L1, commandEventFlag},
    {"Hyper"_L1, commandEventFlag},
    {"Mod4"_L1, commandEventFlag},
    {"Shift"_L1, shiftEventFlag},
    {"Shft"_L1, shiftEventFlag},
    // Desktops ignore these modifiers when they match presses.
    {"Mod2"_L1, 0},
    {"Lock"_L1, 0},
    {"Release"_L1, 0},
};

std::optional<quint32> modifierFlag(QStringView name)
{
    const auto *const found = std::ranges::find_if(modifierNames, [name](const auto &modifier) {
        return name.compare(modifier.name, Qt::CaseInsensitive) == 0;
    });
    if (found == std::end(modifierNames))
        return std::nullopt;
    return found->flag;
}

/// Also rejects a NUL inside the name, which would end the C string.
bool couldBeName(const QByteArray &text)
{
    return std::ranges::all_of(text, [](char letter) {
        return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z')
            || (letter >= '0' && letter <= '9') || letter == '_';
    });
}

quint32 keysymNamed(const QByteArray &name)
{
    // Match the case first: two keysyms, such as those of large and small kana, may differ in case
    // alone.
    auto keysym = xkb_keysym_from_name(name.constData(), XKB_KEYSYM_NO_FLAGS);
    if (keysym == XKB_KEY_NoSymbol)
        keysym = xkb_keysym_from_name(name.constData(), XKB_KEYSYM_CASE_INSENSITIVE);
    if (keysym == XKB_KEY_NoSymbol)
        keysym = xkb_keysym_from_name(("XF86" + name).constData(), XKB_KEYSYM_CASE_INSENSITIVE);
    return keysym == XKB_KEY_VoidSymbol ? 0 : xkb_keysym_to_lower(keysym);
}

/// Parses a key code; nothing if the text is not one.
std::optional<XKeycode> keycodeNamed(const QByteArray &name)
{
    bool isNumber = false;
    const uint number = name.toUInt(&isNumber, 16);
    if (!isNumber || number == 0 || number > 255)
        return std::nullopt;
    return XKeycode(number);
}
} // namespace

std::optional<Accelerator> gtkAccelerator(const QString &text)
{
    Accelerator accelerator;
    QStringView rest = text;
    while (rest.startsWith(u'<')) {
        const auto end = rest.indexOf(u'>');
        const auto flag = end < 0 ? std::nullopt : modifierFlag(rest.sliced(1, end - 1));
        if (!flag)
            return std::nullopt;
        accelerator.modifiers |= *flag;
        rest = rest.sliced(end + 1);
    }

    const QByteArray name = rest.toUtf8();
    if (!couldBeName(name))
        return std::nullopt;
    if (name == "Above_Tab")
        accelerator.keycode = aboveTab;
    else if (name.startsWith("0x") || name.startsWith("0X"))
        accelerator.keycode = keycodeNamed(name);
    else
        accelerator.keysym = keysymNamed(name);
    if (!accelerator.keycode && !accelerator.keysym)
        return std::nullopt;
    return accelerator;
}
