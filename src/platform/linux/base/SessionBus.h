// Controls which session bus our libraries and started programs use.
#pragma once

#include <QByteArray>
#include <chrono>

/// Hides a session bus that accepts connections but does not answer in time from our libraries:
/// they would wait for it forever. Until the program exits, they behave as if there were no bus. To
/// be called before any of them looks for the bus and before threads exist. A working bus answers
/// in less than a millisecond, and hot keys must be live after 3 s.
void avoidHangingSessionBus(std::chrono::milliseconds patience = std::chrono::seconds(2));

/// The DBUS_SESSION_BUS_ADDRESS for programs that we start: the value that we were started with.
/// Empty if it was not set.
QByteArray sessionBusAddressForPrograms();
