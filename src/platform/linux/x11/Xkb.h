// The XKB header of xcb, which names a member with a keyword of C++.
#pragma once

#define explicit explicit_
#include <xcb/xkb.h>
#undef explicit
