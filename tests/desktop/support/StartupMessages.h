// Listens to what programs tell the X11 desktop about the start of others.
#pragma once

#include <QByteArray>
#include <QList>
#include <xcb/xcb.h>

class StartupMessages
{
public:
    StartupMessages();
    ~StartupMessages();
    Q_DISABLE_COPY_MOVE(StartupMessages)

    /// Since this was made. Of messages that are sent at the same time, each would spoil the other.
    QList<QByteArray> soFar();

private:
    xcb_connection_t *m_connection;
    QByteArray m_bytes;
};
