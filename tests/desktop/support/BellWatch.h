// Counts the rings of the X server's bell.
#pragma once

#include <QtGlobal>
#include <xcb/xcb.h>

class BellWatch
{
public:
    BellWatch();
    ~BellWatch();
    Q_DISABLE_COPY_MOVE(BellWatch)

    /// Since this was made.
    int rings();

private:
    xcb_connection_t *m_connection;
    int m_rings = 0;
};
