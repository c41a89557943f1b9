// The fonts of text, relative to the desktop's font.
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

/// Uses the desktop's current font.
QFont font(TextStyle style);

} // namespace viewkit
