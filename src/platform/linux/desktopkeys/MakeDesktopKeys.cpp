#include "platform/linux/desktopkeys/MakeDesktopKeys.h"

#include "platform/linux/base/Session.h"
#include "platform/linux/desktopkeys/GSettingsKeys.h"
#include "platform/linux/desktopkeys/KGlobalAccelKeys.h"
#include "platform/linux/desktopkeys/LxqtKeys.h"
#include "platform/linux/desktopkeys/XfconfKeys.h"

std::unique_ptr<DesktopKeys> makeDesktopKeys(const QProcessEnvironment &environment)
{
    const auto desktop = currentDesktop(environment);
    if (!desktop)
        return nullptr;
    switch (*desktop) {
    case Desktop::gnome:
    case Desktop::budgie:
        return std::make_unique<GSettingsKeys>(GSettingsFamily::gnome);
    case Desktop::plasma:
        return std::make_unique<KGlobalAccelKeys>();
    case Desktop::xfce:
        return std::make_unique<XfconfKeys>();
    case Desktop::cinnamon:
        return std::make_unique<GSettingsKeys>(GSettingsFamily::cinnamon);
    case Desktop::mate:
        return std::make_unique<GSettingsKeys>(GSettingsFamily::mate);
    case Desktop::lxqt:
        return std::make_unique<LxqtKeys>();
    }
    Q_UNREACHABLE();
}
