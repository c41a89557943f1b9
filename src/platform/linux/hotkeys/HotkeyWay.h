// The choice of how key combinations are registered in this session.
#pragma once

#include <QProcessEnvironment>

enum class HotkeyWay {
    /// Grabs at the X server.
    x11,
    /// Plasma's service for global shortcuts.
    plasma,
    /// Not at all: the desktop's own key bindings must call the program.
    none,
};

/// Made once, at the start, from the session's own variables. A desktop's service may come later.
HotkeyWay chooseHotkeyWay(const QProcessEnvironment &environment);
