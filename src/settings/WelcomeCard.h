// The card that greets a new user.
#pragma once

#include "viewkit/Item.h"

class UserDefaults;

/// Shown until the user dismisses it, which the defaults remember. They must outlive the item.
viewkit::Item welcomeCard(UserDefaults &defaults);
