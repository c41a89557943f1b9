// The name by which the desktop knows the program.
#pragma once

#include <QString>

/// The base name of the .desktop file, the icon name and the name on the session bus.
inline const QString applicationId = QStringLiteral("org.corvane.Corvane");
