// All services of the system that the program uses, as one value to hand around.
#pragma once

#include <QString>

class HotkeyService;
class UserDefaults;
class Workspace;

struct Platform {
    HotkeyService &hotkeys;
    UserDefaults &userDefaults;
    Workspace &workspace;
    /// The folder in which programs keep the user's data; empty if there is none.
    QString applicationSupport;

    /// The services of the system that we run on. Each platform library defines it.
    static const Platform &system();
};
