// The name by which the desktop knows the program.
#pragma once

#include <QString>

/// The id in the name of the .desktop file, of the icon and on the session bus.
inline const QString applicationId = QStringLiteral("org.corvane.Corvane");
