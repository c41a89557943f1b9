// The check boxes for what the user prefers, which the user defaults record.
#pragma once

#include "viewkit/Item.h"

class ShortcutStore;
struct Platform;

/// The platform and the store must outlive the item.
viewkit::Item preferences(const Platform &platform, ShortcutStore &store);
