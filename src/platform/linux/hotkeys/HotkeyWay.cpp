#include "platform/linux/hotkeys/HotkeyWay.h"

#include "platform/linux/base/Session.h"

HotkeyWay chooseHotkeyWay(const QProcessEnvironment &environment)
{
    switch (sessionType(environment)) {
    case SessionType::x11:
        return HotkeyWay::x11;
    case SessionType::wayland:
        return currentDesktop(environment) == Desktop::plasma ? HotkeyWay::plasma : HotkeyWay::none;
    case SessionType::none:
        return HotkeyWay::none;
    }
    Q_UNREACHABLE();
}
