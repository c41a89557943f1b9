// The program's palette on a dark desktop that provides none.
#pragma once

#include <QPalette>

namespace viewkit
{

QPalette darkPalette();

} // namespace viewkit
