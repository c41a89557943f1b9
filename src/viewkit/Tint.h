// The rule by which widgets follow the colours of the program.
#pragma once

#include "viewkit/Item.h"

namespace viewkit
{

/// Keeps what the widget shows in that role in that colour, legible in its palette of the moment.
Rule tint(QWidget *widget, QPalette::ColorRole role, TextColor textColor);

} // namespace viewkit
