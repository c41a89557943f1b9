// Reads configuration files of desktops: groups of keys with values.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QStringList>

/// The values by "group/key", as they are in the file, without the white space around them.
using IniSettings = QHash<QByteArray, QByteArray>;

/// Reads several files; an earlier one takes precedence over later ones. Leaves out what cannot be
/// read, and files that are longer than any real configuration.
IniSettings readIniFiles(const QStringList &paths);
