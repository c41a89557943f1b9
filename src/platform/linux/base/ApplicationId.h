// The name by which the desktop knows the program.
#pragma once

#include <QString>

/// Of its .desktop file, its icon and its name on the session bus.
inline const QString applicationId = QStringLiteral("org.corvane.Corvane");
