// The keyboard shortcuts of XFCE and of its window manager, from its settings.
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
