// The keyboard shortcuts of XFCE and of its window manager, from the Xfconf service.
#pragma once

#include "platform/linux/desktopkeys/DBusDesktopKeys.h"

class XfconfKeys : public DBusDesktopKeys
{
    Q_OBJECT

public:
    XfconfKeys();
    void start() override;

private:
    void read() override;
};
