// What files can be targets of entries, and how such entries are named at first.
#pragma once

#include "model/ActionKind.h"

class InstalledApplications;
class QString;

/// Whether the file can be the target of an app entry: a .desktop file that starts an application,
/// or an executable file. Reads the disk.
bool isApplication(const QString &path, InstalledApplications &applications);

/// The application's displayed name, or the path's last component without its extension.
QString nameOfTarget(ActionKind kind, const QString &path, InstalledApplications &applications);
