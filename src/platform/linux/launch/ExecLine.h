// Turns the Exec line of a .desktop file into the arguments of a program.
#pragma once

#include "foundation/Result.h"

#include <QString>
#include <QStringList>
#include <QUrl>

/// What field codes stand for.
struct ExecFields {
    /// %c: the application's displayed name.
    QString name;
    /// %i: the value of the Icon key; empty if there is none.
    QString icon;
    /// %k: where the .desktop file is.
    QString desktopFile;
    /// %f, %F, %u, %U: the file, folder or address to open; empty if there is none.
    QUrl target;
};

/// The program and its arguments; a target that no code asks for comes last. Deprecated codes, and
/// %f where the target is no file, stand for nothing. An error if the quoting is broken or nothing
/// is left.
Result<QStringList> parseExecLine(const QString &line, const ExecFields &fields);
