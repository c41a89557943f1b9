// The fonts of texts, relative to what the desktop has set.
#pragma once

#include <QFont>

namespace viewkit
{

enum class TextStyle {
    body,
    headline,
    callout,
    caption,
    captionBold,
    captionMonospaced,
    title2,
    title3,
};

/// In the desktop's font as it is now.
QFont font(TextStyle style);

} // namespace viewkit
