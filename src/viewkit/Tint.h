// The rule that keeps widgets in the program's colours.
#pragma once

#include "viewkit/Item.h"

namespace viewkit
{

/// Keeps the widget's palette role in this colour, legible in its current palette.
Rule tint(QWidget *widget, QPalette::ColorRole role, TextColor textColor);

} // namespace viewkit
