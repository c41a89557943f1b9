// The colours that style sheets of GTK define.
#pragma once

#include <QDir>
#include <QRgb>
#include <optional>

/// The background of windows by the style sheet with this path in the folder of a theme, and by
/// the files of that folder that it imports. Nothing if it defines none.
std::optional<QRgb> gtkWindowColor(const QDir &theme, const QString &styleSheet);
