#include "hotkeys/KeyboardShortcuts.h"

#include "foundation/Json.h"
#include "hotkeys/HotkeyCenter.h"
#include "platform/KeyModifier.h"
#include "platform/UserDefaults.h"

#include <nlohmann/json.hpp>

using namespace Qt::StringLiterals;

namespace KeyboardShortcuts
{

namespace
{
QByteArray encoded(const Shortcut &shortcut)
{
    return JsonCoding::write(OrderedJson{
        {"carbonKeyCode", shortcut.carbonKeyCode},
        {"carbonModifiers", shortcut.carbonModifiers},
    });
}

std::optional<Shortcut> decoded(const QByteArray &data)
{
    const auto json = JsonCoding::parse(data);
    if (!json)
        return std::nullopt;
    const auto keyCode = JsonCoding::integerMember(*json, "carbonKeyCode");
    const auto modifiers = JsonCoding::integerMember(*json, "carbonModifiers");
    if (!keyCode || !modifiers)
        return std::nullopt;
    return Shortcut{*keyCode, *modifiers};
}
} // namespace

QString Shortcut::description() const
{
    QString text;
    if (carbonModifiers & controlKey)
        text += u'⌃';
    if (carbonModifiers & optionKey)
        text += u'⌥';
    if (carbonModifiers & shiftKey)
        text += u'⇧';
    if (carbonModifiers & commandKey)
        text += u'⌘';
    const auto name = keyNames().constFind(carbonKeyCode);
    return text + (name == keyNames().cend() ? u"Key %1"_s.arg(carbonKeyCode) : *name);
}

size_t qHash(const Shortcut &shortcut, size_t seed)
{
    return qHashMulti(seed, shortcut.carbonKeyCode, shortcut.carbonModifiers);
}

size_t qHash(const Name &name, size_t seed)
{
    return ::qHash(name.rawValue, seed);
}

// clang-format off
const QHash<qint64, QString> &keyNames()
{
    static const QHash<qint64, QString> names{
        {0, u"A"_s},   {1, u"S"_s},   {2, u"D"_s},   {3, u"F"_s},   {4, u"H"_s},   {5, u"G"_s},
        {6, u"Z"_s},   {7, u"X"_s},   {8, u"C"_s},   {9, u"V"_s},   {11, u"B"_s},  {12, u"Q"_s},
        {13, u"W"_s},  {14, u"E"_s},  {15, u"R"_s},  {16, u"Y"_s},  {17, u"T"_s},  {18, u"1"_s},
        {19, u"2"_s},  {20, u"3"_s},  {21, u"4"_s},  {22, u"6"_s},  {23, u"5"_s},  {24, u"="_s},
        {25, u"9"_s},  {26, u"7"_s},  {27, u"-"_s},  {28, u"8"_s},  {29, u"0"_s},  {30, u"]"_s},
        {31, u"O"_s},  {32, u"U"_s},  {33, u"["_s},  {34, u"I"_s},  {35, u"P"_s},  {36, u"↩"_s},
        {37, u"L"_s},  {38, u"J"_s},  {39, u"'"_s},  {40, u"K"_s},  {41, u";"_s},  {42, u"\\"_s},
        {43, u","_s},  {44, u"/"_s},  {45, u"N"_s},  {46, u"M"_s},  {47, u"."_s},  {48, u"⇥"_s},
        {49, u"Space"_s}, {50, u"`"_s}, {51, u"⌫"_s}, {53, u"⎋"_s},
        {96, u"F5"_s},   {97, u"F6"_s},   {98, u"F7"_s},   {99, u"F3"_s},
        {100, u"F8"_s},  {101, u"F9"_s},  {103, u"F11"_s}, {109, u"F10"_s},
        {111, u"F12"_s}, {118, u"F4"_s},  {120, u"F2"_s},  {122, u"F1"_s},
        {123, u"←"_s},   {124, u"→"_s},   {125, u"↓"_s},   {126, u"↑"_s},
    };
    return names;
}
// clang-format on

QString defaultsKey(const Name &name)
{
    return u"hotkey."_s + name.rawValue;
}

std::optional<Shortcut> getShortcut(const Name &name, const UserDefaults &defaults)
{
    const auto data = defaults.data(defaultsKey(name));
    return data ? decoded(*data) : std::nullopt;
}

void setShortcut(const std::optional<Shortcut> &shortcut, const Name &name, UserDefaults &defaults,
                 HotkeyCenter &center)
{
    if (shortcut)
        defaults.setData(defaultsKey(name), encoded(*shortcut));
    else
        defaults.remove(defaultsKey(name));
    center.sync(name);
}

} // namespace KeyboardShortcuts
