// The colours of the program on a dark desktop that does not say which.
#pragma once

#include <QPalette>

QPalette darkPalette();
