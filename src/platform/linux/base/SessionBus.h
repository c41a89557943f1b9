// The session bus, as our libraries and the programs that we start find it.
#pragma once

#include <QByteArray>
#include <chrono>

/// A bus that works answers in less than a millisecond, and hot keys are to be live after 3 s.
inline constexpr std::chrono::milliseconds sessionBusPatience(2000);

/// Keeps our libraries away from a session bus that accepts connections and does not answer in
/// time, because they would wait for it without end; they behave as without a bus then, until the
/// program ends. To be called before any of them looks for the bus, and before there are threads.
void avoidHangingSessionBus(std::chrono::milliseconds patience = sessionBusPatience);

/// DBUS_SESSION_BUS_ADDRESS for programs that we start: what we were started with ourselves. Empty
/// if it was not set.
QByteArray sessionBusAddressForPrograms();
