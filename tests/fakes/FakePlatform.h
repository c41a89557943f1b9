// A platform of recording fakes, with a folder of its own.
#pragma once

#include "fakes/FakeAlertSound.h"
#include "fakes/FakeAppearance.h"
#include "fakes/FakeEventMonitor.h"
#include "fakes/FakeHotkeyService.h"
#include "fakes/FakeInstalledApplications.h"
#include "fakes/FakeLoginItem.h"
#include "fakes/FakeSharedApplication.h"
#include "fakes/FakeShortcutLibrary.h"
#include "fakes/FakeStatusBar.h"
#include "fakes/FakeSymbolicHotkeys.h"
#include "fakes/FakeSystemSettings.h"
#include "fakes/FakeUserDefaults.h"
#include "fakes/FakeUserNotificationCenter.h"
#include "fakes/FakeWording.h"
#include "fakes/FakeWorkspace.h"
#include "platform/Platform.h"

#include <QTemporaryDir>

class FakePlatform
{
public:
    FakePlatform();
    ~FakePlatform();

    QStringList calls;
    FakeHotkeyService hotkeys{CallLog(&calls)};
    FakeSymbolicHotkeys symbolicHotkeys;
    FakeUserDefaults userDefaults{CallLog(&calls)};
    FakeWorkspace workspace;
    FakeUserNotificationCenter notifications{CallLog(&calls)};
    FakeAlertSound alertSound{CallLog(&calls)};
    FakeStatusBar statusBar;
    FakeSharedApplication application;
    FakeEventMonitor eventMonitor;
    FakeInstalledApplications installedApplications;
    FakeShortcutLibrary shortcutLibrary;
    FakeLoginItem loginItem;
    FakeSystemSettings systemSettings;
    FakeAppearance appearance;
    FakeWording wording;
    QTemporaryDir applicationSupport;
    Platform services{
        .hotkeys = hotkeys,
        .symbolicHotkeys = symbolicHotkeys,
        .userDefaults = userDefaults,
        .workspace = workspace,
        .notifications = notifications,
        .alertSound = alertSound,
        .statusBar = statusBar,
        .application = application,
        .eventMonitor = eventMonitor,
        .installedApplications = installedApplications,
        .shortcutLibrary = shortcutLibrary,
        .loginItem = loginItem,
        .systemSettings = systemSettings,
        .appearance = appearance,
        .wording = wording,
        .applicationSupport = applicationSupport.path(),
        .bundleIdentifier = QStringLiteral("org.corvane.Corvane"),
    };
};
