// Includes xcb's XKB header, which uses a C++ keyword as a member name.
#pragma once

#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
