// The X server's clock, which window managers use to order user actions.
#pragma once

#include <QtGlobal>
#include <optional>

/// Asks the server over a separate connection: on a shared one, events read along with the answer
/// would not wake their reader. Nothing without a server.
std::optional<quint32> currentServerTime();
