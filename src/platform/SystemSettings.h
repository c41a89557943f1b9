// The pages of the desktop's own settings that have to do with us.
#pragma once

/// Nothing happens where the desktop has no such page.
class SystemSettings
{
public:
    virtual ~SystemSettings() = default;

    virtual void openNotificationSettings() = 0;
    virtual void openLoginItems() = 0;
};
