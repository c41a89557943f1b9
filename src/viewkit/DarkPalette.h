// The colours of the program on a dark desktop that does not say which.
#pragma once

#include <QPalette>

namespace viewkit
{

QPalette darkPalette();

} // namespace viewkit
