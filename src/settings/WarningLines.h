// Why key combinations may not work, as lines of a view.
#pragma once

#include "viewkit/Item.h"

/// A line for each warning, with a drawing before it.
viewkit::Item warningLines(viewkit::TextStyle style, std::function<QStringList()> warnings);

/// The same, where screen readers are to say each when it appears.
viewkit::Item announcedWarningLines(viewkit::TextStyle style,
                                    std::function<QStringList()> warnings);
