// The program's own drawings as icons: one-coloured symbols, and the image of its tray item.
#pragma once

#include <QColor>
#include <QIcon>

/// The drawing of this name in this colour, drawn anew for each size; paler where disabled, and in
/// the colour of selected texts where selected.
/// A null icon, with a warning, if there is no such drawing or Qt lacks its SVG plugin.
QIcon systemSymbol(const QString &name, const QColor &color);

enum class StatusEmphasis { Normal, Dimmed };

/// The drawing of this name, framed by a square, for panels of any colour. Null as above.
QIcon statusImage(const QString &name, StatusEmphasis emphasis);
