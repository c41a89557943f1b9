// Icons made from the program's own drawings: one-coloured symbols, and the image of the tray item.
#pragma once

#include <QColor>
#include <QIcon>

/// The drawing with this name in this colour, rendered separately for each size. It is paler when
/// disabled, and has the colour of selected text when selected. Null, with a warning, if there is
/// no such drawing or Qt's SVG plugin is missing.
QIcon systemSymbol(const QString &name, const QColor &color);

enum class StatusEmphasis { Normal, Dimmed };

/// The drawing with this name on a square plate, legible on panels of any colour. Null as above.
QIcon statusImage(const QString &name, StatusEmphasis emphasis);
