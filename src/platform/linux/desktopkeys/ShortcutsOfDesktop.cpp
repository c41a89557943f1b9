#include "platform/linux/desktopkeys/ShortcutsOfDesktop.h"

#include "platform/linux/base/Session.h"
#include "platform/linux/desktopkeys/GSettingsShortcuts.h"
#include "platform/linux/desktopkeys/KGlobalAccelShortcuts.h"
#include "platform/linux/desktopkeys/LxqtShortcuts.h"
#include "platform/linux/desktopkeys/XfconfShortcuts.h"

std::unique_ptr<DesktopShortcuts> shortcutsOfDesktop(const QProcessEnvironment &environment)
{
    const auto desktop = currentDesktop(environment);
    if (!desktop)
        return nullptr;
    switch (*desktop) {
    case Desktop::gnome:
    case Desktop::budgie:
        return std::make_unique<GSettingsShortcuts>(GSettingsFamily::gnome);
    case Desktop::plasma:
        return std::make_unique<KGlobalAccelShortcuts>();
    case Desktop::xfce:
        return std::make_unique<XfconfShortcuts>();
    case Desktop::cinnamon:
        return std::make_unique<GSettingsShortcuts>(GSettingsFamily::cinnamon);
    case Desktop::mate:
        return std::make_unique<GSettingsShortcuts>(GSettingsFamily::mate);
    case Desktop::lxqt:
        return std::make_unique<LxqtShortcuts>();
    }
    Q_UNREACHABLE();
}
