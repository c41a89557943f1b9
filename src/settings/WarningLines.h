// Views that list why key combinations may not work.
#pragma once

#include "viewkit/Item.h"

/// One line for each warning, with a symbol in front.
viewkit::Item warningLines(viewkit::TextStyle style, std::function<QStringList()> warnings);

/// Like the above, but screen readers announce each warning when it appears.
viewkit::Item announcedWarningLines(viewkit::TextStyle style,
                                    std::function<QStringList()> warnings);
