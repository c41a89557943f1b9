// A platform of recording fakes, with a folder of its own.
#pragma once

#include "fakes/FakeHotkeyService.h"
#include "fakes/FakeUserDefaults.h"
#include "fakes/FakeWorkspace.h"
#include "platform/Platform.h"

#include <QTemporaryDir>

class FakePlatform
{
public:
    /// The one behind Platform::system(), and so behind every shared().
    static FakePlatform &system();

    FakeHotkeyService hotkeys;
    FakeUserDefaults userDefaults;
    FakeWorkspace workspace;
    QTemporaryDir applicationSupport;
    Platform services{hotkeys, userDefaults, workspace, applicationSupport.path()};
};
