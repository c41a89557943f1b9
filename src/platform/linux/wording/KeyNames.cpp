#include "platform/linux/wording/KeyNames.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace
{
// A PC has Print, Scroll Lock and Pause on the keys 105, 107 and 113, which others call F13 to F15.
constexpr struct {
    qint64 keyCode;
    QLatin1StringView name;
} names[] = {
    {36, "Return"_L1},       {48, "Tab"_L1},         {49, "Space"_L1},      {51, "Backspace"_L1},
    {53, "Esc"_L1},          {54, "Right Super"_L1}, {55, "Left Super"_L1}, {56, "Left Shift"_L1},
    {57, "Caps Lock"_L1},    {58, "Left Alt"_L1},    {59, "Left Ctrl"_L1},  {60, "Right Shift"_L1},
    {61, "Right Alt"_L1},    {62, "Right Ctrl"_L1},  {63, "Fn"_L1},         {64, "F17"_L1},
    {65, "Num ."_L1},        {67, "Num *"_L1},       {69, "Num +"_L1},      {71, "Num Lock"_L1},
    {72, "Volume Up"_L1},    {73, "Volume Down"_L1}, {74, "Mute"_L1},       {75, "Num /"_L1},
    {76, "Num Enter"_L1},    {78, "Num -"_L1},       {79, "F18"_L1},        {80, "F19"_L1},
    {81, "Num ="_L1},        {82, "Num 0"_L1},       {83, "Num 1"_L1},      {84, "Num 2"_L1},
    {85, "Num 3"_L1},        {86, "Num 4"_L1},       {87, "Num 5"_L1},      {88, "Num 6"_L1},
    {89, "Num 7"_L1},        {90, "F20"_L1},         {91, "Num 8"_L1},      {92, "Num 9"_L1},
    {95, "Num ,"_L1},        {96, "F5"_L1},          {97, "F6"_L1},         {98, "F7"_L1},
    {99, "F3"_L1},           {100, "F8"_L1},         {101, "F9"_L1},        {102, "Eisu"_L1},
    {103, "F11"_L1},         {104, "Kana"_L1},       {105, "Print"_L1},     {106, "F16"_L1},
    {107, "Scroll Lock"_L1}, {109, "F10"_L1},        {110, "Menu"_L1},      {111, "F12"_L1},
    {113, "Pause"_L1},       {114, "Insert"_L1},     {115, "Home"_L1},      {116, "Page Up"_L1},
    {117, "Delete"_L1},      {118, "F4"_L1},         {119, "End"_L1},       {120, "F2"_L1},
    {121, "Page Down"_L1},   {122, "F1"_L1},         {123, "Left"_L1},      {124, "Right"_L1},
    {125, "Down"_L1},        {126, "Up"_L1},
};
} // namespace

QString keyName(qint64 keyCode)
{
    const auto *const found =
        std::ranges::find(names, keyCode, [](const auto &key) { return key.keyCode; });
    return found == std::end(names) ? u"Key %1"_s.arg(keyCode) : QString(found->name);
}
