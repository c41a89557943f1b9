// Opens the pages of the desktop's own settings that concern the program.
#pragma once

/// Does nothing where the desktop has no such page.
class SystemSettings
{
public:
    virtual ~SystemSettings() = default;

    virtual void openNotificationSettings() = 0;
    virtual void openLoginItems() = 0;
    virtual void openKeyboardSettings() = 0;
};
