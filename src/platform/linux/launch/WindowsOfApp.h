// Tells the windows of an application from those of others.
#pragma once

#include "platform/linux/activation/OpenWindows.h"

#include <QString>
#include <functional>

class DesktopApp;

/// The names by which windows may call an application.
struct AppNames {
    /// StartupWMClass of its .desktop file; often empty.
    QString windowClass;
    /// The name of its .desktop file without the suffix.
    QString id;
    /// The name of the program in its Exec line.
    QString program;

    static AppNames of(const DesktopApp &app);
    static QString idOf(const DesktopApp &app);
};

/// Whether the window is the application's. Several applications may share a program; then
/// isClassOfApp, which tells whether a class is the StartupWMClass of an installed application,
/// decides. It may take long and is asked only about windows that could be the application's.
bool isWindowOf(const AppNames &app, const OpenWindow &window,
                const std::function<bool(const QString &windowClass)> &isClassOfApp);

/// Whether the window is of that program. Both file names are resolved first.
bool isWindowOfProgram(const QString &path, const OpenWindow &window);
