// What a desktop is told of an application that is on its way.
#pragma once

#include <QString>

struct StartingApp {
    QString name;
    QString icon;
    QString program;
    /// The class of the window to come, as far as it is known.
    QString windowClass;
};
