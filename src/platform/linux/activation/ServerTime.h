// The X server's clock, by which window managers compare what the user did.
#pragma once

#include <QtGlobal>
#include <optional>

/// Asks the server, over a connection of its own: one that others read would wake nobody for what
/// comes with the answer. Nothing without a server.
std::optional<quint32> currentServerTime();
