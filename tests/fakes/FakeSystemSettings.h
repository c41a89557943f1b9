// System settings that record which pages were opened.
#pragma once

#include "platform/SystemSettings.h"

#include <QStringList>

class FakeSystemSettings : public SystemSettings
{
public:
    void openNotificationSettings() override { opened << QStringLiteral("notifications"); }
    void openLoginItems() override { opened << QStringLiteral("login items"); }
    void openKeyboardSettings() override { opened << QStringLiteral("keyboard"); }

    QStringList opened;
};
