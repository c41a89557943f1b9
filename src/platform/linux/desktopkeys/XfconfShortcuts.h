// The keyboard shortcuts of XFCE and of its window manager, from its settings.
#pragma once

#include "platform/linux/desktopkeys/DBusShortcuts.h"

class XfconfShortcuts : public DBusShortcuts
{
    Q_OBJECT

public:
    XfconfShortcuts();
    void start() override;

private:
    void read() override;
};
