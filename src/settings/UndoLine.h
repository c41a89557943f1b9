// The line that offers to undo a deletion or a reset.
#pragma once

#include "viewkit/Item.h"

class ShortcutStore;

/// The line is shown while the store has something to undo. If it disappears while its button has
/// the focus, the next control gets the focus. The store and that control must outlive the item.
viewkit::Item undoLine(const ShortcutStore &store, viewkit::Action undo, QWidget &next);
