// Parses the Exec line of a .desktop file into a program's arguments.
#pragma once

#include "foundation/Result.h"

#include <QString>
#include <QStringList>
#include <QUrl>

/// The values of the field codes.
struct ExecFields {
    /// %c: the application's displayed name.
    QString name;
    /// %i: the value of the Icon key; empty if there is none.
    QString icon;
    /// %k: the path of the .desktop file.
    QString desktopFile;
    /// %f, %F, %u, %U: the file, folder or address to open; empty if there is none.
    QUrl target;
};

/// Returns the program and its arguments; a target that no code asks for is appended. Deprecated
/// codes, and %f if the target is not a file, expand to nothing. An error if the quoting is broken
/// or nothing is left.
Result<QStringList> parseExecLine(const QString &line, const ExecFields &fields);
