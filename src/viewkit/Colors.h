// The colours of text, lines and frames, derived from the desktop's palette.
#pragma once

#include <QColor>
#include <QPalette>

namespace viewkit
{

enum class TextColor {
    secondary,
    disabled,
    /// Dividing lines.
    line,
    /// Frames around controls.
    frame,
    warning,
    error,
};

/// Whether text is lighter than its background.
bool isDark(const QPalette &palette);

bool isLegible(const QColor &text, const QColor &back);

/// The background of a text or symbol.
enum class Surface {
    window,
    button,
};

/// Returns a light or dark variant, so that text and symbols are legible on this surface of the
/// palette. Lines and frames are not adjusted.
QColor color(TextColor textColor, const QPalette &palette, Surface surface = Surface::window,
             QPalette::ColorGroup group = QPalette::Active);

} // namespace viewkit
