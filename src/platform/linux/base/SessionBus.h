// The session bus, as our libraries and the programs that we start find it.
#pragma once

#include <QByteArray>

/// Keeps our libraries away from a session bus that accepts connections and does not answer within
/// 2 s, because they would wait for it without end; they behave as without a bus then, until the
/// program ends. To be called before any of them looks for the bus, and before there are threads.
void avoidHangingSessionBus();

/// DBUS_SESSION_BUS_ADDRESS for programs that we start: what we were started with ourselves. Empty
/// if it was not set.
QByteArray sessionBusAddressForPrograms();
