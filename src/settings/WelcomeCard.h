// The card that greets a new user.
#pragma once

#include "viewkit/Item.h"

class UserDefaults;
class Wording;

/// The card is shown until the user dismisses it, which the user defaults record. They must outlive
/// the item.
viewkit::Item welcomeCard(UserDefaults &defaults, const Wording &wording);
