// The fonts and colours of texts, relative to what the desktop has set.
#pragma once

#include <QColor>
#include <QFont>

class QPalette;

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

enum class Ink {
    secondary,
    warning,
    error,
};

/// The colour of texts and symbols on the palette's backgrounds, light or dark; legible on both.
QColor color(Ink ink, const QPalette &palette);
