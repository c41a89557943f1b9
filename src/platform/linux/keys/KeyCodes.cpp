#include "platform/linux/keys/KeyCodes.h"

#include <algorithm>

namespace KeyCodes
{

namespace
{
constexpr PhysicalKey key(quint32 virtualKey, quint32 evdevCode, const char *xkbName)
{
    return {VirtualKey(virtualKey), EvdevCode(evdevCode), xkbName};
}

// clang-format off
constexpr PhysicalKey keys[] = {
    key(0, 30, "AC01"), // A
    key(1, 31, "AC02"), // S
    key(2, 32, "AC03"), // D
    key(3, 33, "AC04"), // F
    key(4, 35, "AC06"), // H
    key(5, 34, "AC05"), // G
    key(6, 44, "AB01"), // Z
    key(7, 45, "AB02"), // X
    key(8, 46, "AB03"), // C
    key(9, 47, "AB04"), // V
    key(10, 86, "LSGT"), // ISO 102nd key
    key(11, 48, "AB05"), // B
    key(12, 16, "AD01"), // Q
    key(13, 17, "AD02"), // W
    key(14, 18, "AD03"), // E
    key(15, 19, "AD04"), // R
    key(16, 21, "AD06"), // Y
    key(17, 20, "AD05"), // T
    key(18, 2, "AE01"), // 1
    key(19, 3, "AE02"), // 2
    key(20, 4, "AE03"), // 3
    key(21, 5, "AE04"), // 4
    key(22, 7, "AE06"), // 6
    key(23, 6, "AE05"), // 5
    key(24, 13, "AE12"), // =
    key(25, 10, "AE09"), // 9
    key(26, 8, "AE07"), // 7
    key(27, 12, "AE11"), // -
    key(28, 9, "AE08"), // 8
    key(29, 11, "AE10"), // 0
    key(30, 27, "AD12"), // ]
    key(31, 24, "AD09"), // O
    key(32, 22, "AD07"), // U
    key(33, 26, "AD11"), // [
    key(34, 23, "AD08"), // I
    key(35, 25, "AD10"), // P
    key(36, 28, "RTRN"), // ↩
    key(37, 38, "AC09"), // L
    key(38, 36, "AC07"), // J
    key(39, 40, "AC11"), // '
    key(40, 37, "AC08"), // K
    key(41, 39, "AC10"), // ;
    key(42, 43, "BKSL"), // backslash
    key(43, 51, "AB08"), // ,
    key(44, 53, "AB10"), // /
    key(45, 49, "AB06"), // N
    key(46, 50, "AB07"), // M
    key(47, 52, "AB09"), // .
    key(48, 15, "TAB"), // ⇥
    key(49, 57, "SPCE"), // Space
    key(50, 41, "TLDE"), // `
    key(51, 14, "BKSP"), // ⌫
    key(53, 1, "ESC"), // ⎋
    key(54, 126, "RWIN"), // right Command
    key(55, 125, "LWIN"), // left Command
    key(56, 42, "LFSH"), // left Shift
    key(57, 58, "CAPS"), // Caps Lock
    key(58, 56, "LALT"), // left Option
    key(59, 29, "LCTL"), // left Control
    key(60, 54, "RTSH"), // right Shift
    key(61, 100, "RALT"), // right Option
    key(62, 97, "RCTL"), // right Control
    key(63, 464, "I472"), // Fn
    key(64, 187, "FK17"), // F17
    key(65, 83, "KPDL"), // keypad .
    key(67, 55, "KPMU"), // keypad *
    key(69, 78, "KPAD"), // keypad +
    key(71, 69, "NMLK"), // keypad Clear / Num Lock
    key(72, 115, "VOL+"), // volume up
    key(73, 114, "VOL-"), // volume down
    key(74, 113, "MUTE"), // mute
    key(75, 98, "KPDV"), // keypad /
    key(76, 96, "KPEN"), // keypad Enter
    key(78, 74, "KPSU"), // keypad -
    key(79, 188, "FK18"), // F18
    key(80, 189, "FK19"), // F19
    key(81, 117, "KPEQ"), // keypad =
    key(82, 82, "KP0"), // keypad 0
    key(83, 79, "KP1"), // keypad 1
    key(84, 80, "KP2"), // keypad 2
    key(85, 81, "KP3"), // keypad 3
    key(86, 75, "KP4"), // keypad 4
    key(87, 76, "KP5"), // keypad 5
    key(88, 77, "KP6"), // keypad 6
    key(89, 71, "KP7"), // keypad 7
    key(90, 190, "FK20"), // F20
    key(91, 72, "KP8"), // keypad 8
    key(92, 73, "KP9"), // keypad 9
    key(93, 124, "AE13"), // JIS Yen
    key(94, 89, "AB11"), // JIS underscore / Ro
    key(95, 121, "I129"), // keypad comma; JIS
    key(96, 63, "FK05"), // F5
    key(97, 64, "FK06"), // F6
    key(98, 65, "FK07"), // F7
    key(99, 61, "FK03"), // F3
    key(100, 66, "FK08"), // F8
    key(101, 67, "FK09"), // F9
    key(102, 123, "HJCV"), // JIS Eisu; Linux sends LANG2
    key(103, 87, "FK11"), // F11
    key(104, 122, "HNGL"), // JIS Kana; Linux sends LANG1
    key(105, 183, "FK13"), // F13
    key(106, 186, "FK16"), // F16
    key(107, 184, "FK14"), // F14
    key(109, 68, "FK10"), // F10
    key(110, 127, "COMP"), // context menu
    key(111, 88, "FK12"), // F12
    key(113, 185, "FK15"), // F15
    key(114, 110, "INS"), // Help / Insert
    key(115, 102, "HOME"), // Home
    key(116, 104, "PGUP"), // Page Up
    key(117, 111, "DELE"), // forward Delete
    key(118, 62, "FK04"), // F4
    key(119, 107, "END"), // End
    key(120, 60, "FK02"), // F2
    key(121, 109, "PGDN"), // Page Down
    key(122, 59, "FK01"), // F1
    key(123, 105, "LEFT"), // ←
    key(124, 106, "RGHT"), // →
    key(125, 108, "DOWN"), // ↓
    key(126, 103, "UP"), // ↑
    key(105, 99, "PRSC"), // Print, which shares F13's
    key(107, 70, "SCLK"), // Scroll Lock, which shares F14's
    key(113, 119, "PAUS"), // Pause, which shares F15's
};
// clang-format on
} // namespace

std::span<const PhysicalKey> allKeys()
{
    return keys;
}

QList<PhysicalKey> physicalKeys(VirtualKey virtualKey)
{
    QList<PhysicalKey> found;
    std::ranges::copy_if(keys, std::back_inserter(found), [virtualKey](const PhysicalKey &key) {
        return key.virtualKey == virtualKey;
    });
    return found;
}

std::optional<VirtualKey> virtualKey(EvdevCode code)
{
    const auto *const found = std::ranges::find(keys, code, &PhysicalKey::evdevCode);
    if (found == std::end(keys))
        return std::nullopt;
    return found->virtualKey;
}

} // namespace KeyCodes
