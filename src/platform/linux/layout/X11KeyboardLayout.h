// The keyboard layout of the X server.
#pragma once

#include "platform/linux/layout/KeyboardLayout.h"
#include "platform/linux/x11/X11Connection.h"

#include <QSocketNotifier>
#include <QTimer>
#include <optional>

/// Has a connection of its own, because who waits for an answer on another one may keep presses or
/// windows waiting.
class X11KeyboardLayout : public KeyboardLayout
{
public:
    void start() override;

private:
    void selectEvents();
    void readEvents();
    void read();

    std::optional<X11Connection> m_connection;
    std::optional<QSocketNotifier> m_notifier;
    QTimer m_settling;
};
