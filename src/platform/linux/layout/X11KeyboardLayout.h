// The keyboard layout of the X server.
#pragma once

#include "platform/linux/layout/KeyboardLayout.h"
#include "platform/linux/x11/X11Connection.h"

#include <QSocketNotifier>
#include <QTimer>
#include <optional>

/// Uses its own connection: waiting for an answer on a shared one could delay presses or windows.
class X11KeyboardLayout : public KeyboardLayout
{
public:
    void start() override;

private:
    void selectEvents();
    void readEvents();
    void read();
    void readRepeat();

    std::optional<X11Connection> m_connection;
    std::optional<QSocketNotifier> m_notifier;
    QTimer m_settling;
};
