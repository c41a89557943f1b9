// Turns the Exec line of a .desktop file into the arguments of a program.
#pragma once

#include "foundation/Result.h"

#include <QString>
#include <QStringList>

/// What field codes stand for.
struct ExecFields {
    /// %c: the application's displayed name.
    QString name;
    /// %i: the value of the Icon key; empty if there is none.
    QString icon;
    /// %k: where the .desktop file is.
    QString desktopFile;
};

/// The program and its arguments, without files or addresses to open: %f, %F, %u, %U and the
/// deprecated codes stand for nothing. An error if the quoting is broken or nothing is left.
Result<QStringList> parseExecLine(const QString &line, const ExecFields &fields);
