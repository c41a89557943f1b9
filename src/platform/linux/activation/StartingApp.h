// Describes a starting application to the desktop.
#pragma once

#include <QString>

struct StartingApp {
    QString name;
    QString icon;
    QString program;
    /// The class of its future window, if known.
    QString windowClass;
};
