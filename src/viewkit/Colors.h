// The colours of texts, lines and frames, relative to what the desktop has set.
#pragma once

#include <QColor>
#include <QPalette>

namespace viewkit
{

enum class TextColor {
    secondary,
    disabled,
    /// Of lines that divide.
    line,
    /// Of frames that tell where a control is.
    frame,
    warning,
    error,
};

/// Whether texts are lighter than what they stand on.
bool isDark(const QPalette &palette);

bool isLegible(const QColor &text, const QColor &back);

/// What is written on.
enum class Surface {
    window,
    button,
};

/// Light or dark, so that texts and symbols are legible on that surface of the palette.
QColor color(TextColor textColor, const QPalette &palette, Surface surface = Surface::window,
             QPalette::ColorGroup group = QPalette::Active);

} // namespace viewkit
