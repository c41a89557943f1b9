// Bundles all system services that the program uses.
#pragma once

#include <QString>

class AlertSound;
class Appearance;
class EventMonitor;
class HotkeyService;
class InstalledApplications;
class LoginItem;
class SharedApplication;
class ShortcutLibrary;
class StatusBar;
class SymbolicHotkeys;
class SystemSettings;
class UserDefaults;
class UserNotificationCenter;
class Wording;
class Workspace;

struct Platform {
    HotkeyService &hotkeys;
    SymbolicHotkeys &symbolicHotkeys;
    UserDefaults &userDefaults;
    Workspace &workspace;
    UserNotificationCenter &notifications;
    AlertSound &alertSound;
    StatusBar &statusBar;
    SharedApplication &application;
    EventMonitor &eventMonitor;
    InstalledApplications &installedApplications;
    ShortcutLibrary &shortcutLibrary;
    LoginItem &loginItem;
    SystemSettings &systemSettings;
    Appearance &appearance;
    const Wording &wording;
    /// The folder in which programs keep the user's data; empty if there is none.
    QString applicationSupport;
    /// The id by which the desktop knows the program; empty if it knows none.
    QString bundleIdentifier;
};
