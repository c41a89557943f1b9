#include "platform/linux/keys/KeyCodes.h"

#include <algorithm>

namespace KeyCodes
{

namespace
{
// clang-format off
constexpr PhysicalKey keys[] = {
    {0, 30, "AC01"}, // A
    {1, 31, "AC02"}, // S
    {2, 32, "AC03"}, // D
    {3, 33, "AC04"}, // F
    {4, 35, "AC06"}, // H
    {5, 34, "AC05"}, // G
    {6, 44, "AB01"}, // Z
    {7, 45, "AB02"}, // X
    {8, 46, "AB03"}, // C
    {9, 47, "AB04"}, // V
    {10, 86, "LSGT"}, // ISO 102nd key
    {11, 48, "AB05"}, // B
    {12, 16, "AD01"}, // Q
    {13, 17, "AD02"}, // W
    {14, 18, "AD03"}, // E
    {15, 19, "AD04"}, // R
    {16, 21, "AD06"}, // Y
    {17, 20, "AD05"}, // T
    {18, 2, "AE01"}, // 1
    {19, 3, "AE02"}, // 2
    {20, 4, "AE03"}, // 3
    {21, 5, "AE04"}, // 4
    {22, 7, "AE06"}, // 6
    {23, 6, "AE05"}, // 5
    {24, 13, "AE12"}, // =
    {25, 10, "AE09"}, // 9
    {26, 8, "AE07"}, // 7
    {27, 12, "AE11"}, // -
    {28, 9, "AE08"}, // 8
    {29, 11, "AE10"}, // 0
    {30, 27, "AD12"}, // ]
    {31, 24, "AD09"}, // O
    {32, 22, "AD07"}, // U
    {33, 26, "AD11"}, // [
    {34, 23, "AD08"}, // I
    {35, 25, "AD10"}, // P
    {36, 28, "RTRN"}, // ↩
    {37, 38, "AC09"}, // L
    {38, 36, "AC07"}, // J
    {39, 40, "AC11"}, // '
    {40, 37, "AC08"}, // K
    {41, 39, "AC10"}, // ;
    {42, 43, "BKSL"}, // backslash
    {43, 51, "AB08"}, // ,
    {44, 53, "AB10"}, // /
    {45, 49, "AB06"}, // N
    {46, 50, "AB07"}, // M
    {47, 52, "AB09"}, // .
    {48, 15, "TAB"}, // ⇥
    {49, 57, "SPCE"}, // Space
    {50, 41, "TLDE"}, // `
    {51, 14, "BKSP"}, // ⌫
    {53, 1, "ESC"}, // ⎋
    {54, 126, "RWIN"}, // right Command
    {55, 125, "LWIN"}, // left Command
    {56, 42, "LFSH"}, // left Shift
    {57, 58, "CAPS"}, // Caps Lock
    {58, 56, "LALT"}, // left Option
    {59, 29, "LCTL"}, // left Control
    {60, 54, "RTSH"}, // right Shift
    {61, 100, "RALT"}, // right Option
    {62, 97, "RCTL"}, // right Control
    {63, 464, "I472"}, // Fn
    {64, 187, "FK17"}, // F17
    {65, 83, "KPDL"}, // keypad .
    {67, 55, "KPMU"}, // keypad *
    {69, 78, "KPAD"}, // keypad +
    {71, 69, "NMLK"}, // keypad Clear / Num Lock
    {72, 115, "VOL+"}, // volume up
    {73, 114, "VOL-"}, // volume down
    {74, 113, "MUTE"}, // mute
    {75, 98, "KPDV"}, // keypad /
    {76, 96, "KPEN"}, // keypad Enter
    {78, 74, "KPSU"}, // keypad -
    {79, 188, "FK18"}, // F18
    {80, 189, "FK19"}, // F19
    {81, 117, "KPEQ"}, // keypad =
    {82, 82, "KP0"}, // keypad 0
    {83, 79, "KP1"}, // keypad 1
    {84, 80, "KP2"}, // keypad 2
    {85, 81, "KP3"}, // keypad 3
    {86, 75, "KP4"}, // keypad 4
    {87, 76, "KP5"}, // keypad 5
    {88, 77, "KP6"}, // keypad 6
    {89, 71, "KP7"}, // keypad 7
    {90, 190, "FK20"}, // F20
    {91, 72, "KP8"}, // keypad 8
    {92, 73, "KP9"}, // keypad 9
    {93, 124, "AE13"}, // JIS Yen
    {94, 89, "AB11"}, // JIS underscore / Ro
    {95, 121, "I129"}, // keypad comma; JIS
    {96, 63, "FK05"}, // F5
    {97, 64, "FK06"}, // F6
    {98, 65, "FK07"}, // F7
    {99, 61, "FK03"}, // F3
    {100, 66, "FK08"}, // F8
    {101, 67, "FK09"}, // F9
    {102, 123, "HJCV"}, // JIS Eisu; Linux sends LANG2
    {103, 87, "FK11"}, // F11
    {104, 122, "HNGL"}, // JIS Kana; Linux sends LANG1
    {105, 183, "FK13"}, // F13
    {106, 186, "FK16"}, // F16
    {107, 184, "FK14"}, // F14
    {109, 68, "FK10"}, // F10
    {110, 127, "COMP"}, // context menu
    {111, 88, "FK12"}, // F12
    {113, 185, "FK15"}, // F15
    {114, 110, "INS"}, // Help / Insert
    {115, 102, "HOME"}, // Home
    {116, 104, "PGUP"}, // Page Up
    {117, 111, "DELE"}, // forward Delete
    {118, 62, "FK04"}, // F4
    {119, 107, "END"}, // End
    {120, 60, "FK02"}, // F2
    {121, 109, "PGDN"}, // Page Down
    {122, 59, "FK01"}, // F1
    {123, 105, "LEFT"}, // ←
    {124, 106, "RGHT"}, // →
    {125, 108, "DOWN"}, // ↓
    {126, 103, "UP"}, // ↑
    {105, 99, "PRSC"}, // Print, which shares F13's
    {107, 70, "SCLK"}, // Scroll Lock, which shares F14's
    {113, 119, "PAUS"}, // Pause, which shares F15's
};
// clang-format on
} // namespace

std::span<const PhysicalKey> allKeys()
{
    return keys;
}

QList<PhysicalKey> physicalKeys(quint32 keyCode)
{
    QList<PhysicalKey> found;
    std::ranges::copy_if(keys, std::back_inserter(found),
                         [keyCode](const PhysicalKey &key) { return key.keyCode == keyCode; });
    return found;
}

std::optional<quint16> keyCode(quint32 evdevCode)
{
    const auto *const found = std::ranges::find(keys, evdevCode, &PhysicalKey::evdevCode);
    if (found == std::end(keys))
        return std::nullopt;
    return quint16(found->keyCode);
}

} // namespace KeyCodes
