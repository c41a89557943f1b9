// The user's latest action, on whose behalf a started program may come to the front.
#pragma once

#include <QtGlobal>
#include <optional>

struct UserActivation {
    /// When it was, in the X server's time; nothing before the first one, or without an X server.
    std::optional<quint32> x11Time;
};
