#include "platform/linux/LinuxSystemSettings.h"

#include <QStandardPaths>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
/// The command lines of its pages; the first whose program is there shows the page.
struct Desktop {
    /// As XDG_CURRENT_DESKTOP has it.
    QStringList names;
    QStringList notifications;
    QStringList loginItems;
};

// Only some versions of GNOME's own settings tell what starts at login, so they come last.
const QList<Desktop> &knownDesktops()
{
    static const QList<Desktop> desktops{
        {
            {u"GNOME"_s, u"ubuntu"_s, u"Unity"_s, u"Pantheon"_s},
            {u"gnome-control-center notifications"_s},
            {
                u"gnome-session-properties"_s,
                u"gnome-tweaks"_s,
                u"gnome-control-center applications"_s,
            },
        },
        {
            {u"Budgie"_s},
            {u"budgie-control-center notifications"_s, u"gnome-control-center notifications"_s},
            {u"budgie-desktop-settings"_s, u"gnome-session-properties"_s, u"gnome-tweaks"_s},
        },
        {
            {u"KDE"_s},
            {u"systemsettings kcm_notifications"_s, u"systemsettings5 kcm_notifications"_s},
            {u"systemsettings kcm_autostart"_s, u"systemsettings5 kcm_autostart"_s},
        },
        {
            {u"XFCE"_s},
            {u"xfce4-notifyd-config"_s},
            {u"xfce4-session-settings"_s},
        },
        {
            {u"X-Cinnamon"_s, u"Cinnamon"_s},
            {u"cinnamon-settings notifications"_s},
            {u"cinnamon-settings startup"_s},
        },
        {
            {u"MATE"_s},
            {u"mate-notification-properties"_s},
            {u"mate-session-properties"_s},
        },
        {
            {u"LXQt"_s},
            {u"lxqt-config-notificationd"_s},
            {u"lxqt-config-session"_s},
        },
    };
    return desktops;
}

/// The first that we know of those that the session calls itself; null if we know none.
const Desktop *currentDesktop(const QProcessEnvironment &environment)
{
    for (const QString &name : environment.value(u"XDG_CURRENT_DESKTOP"_s).split(u':')) {
        const auto &desktops = knownDesktops();
        const auto found = std::ranges::find_if(desktops, [&name](const Desktop &desktop) {
            return desktop.names.contains(name, Qt::CaseInsensitive);
        });
        if (found != desktops.end())
            return &*found;
    }
    return nullptr;
}

QStringList firstThatIsThere(const QStringList &commands, const QProcessEnvironment &environment)
{
    const QStringList folders = environment.value(u"PATH"_s).split(u':', Qt::SkipEmptyParts);
    // Else those of our own environment would be searched.
    if (folders.isEmpty())
        return {};
    for (const QString &command : commands) {
        QStringList words = command.split(u' ');
        words.first() = QStandardPaths::findExecutable(words.constFirst(), folders);
        if (!words.constFirst().isEmpty())
            return words;
    }
    return {};
}
} // namespace

LinuxSystemSettings::LinuxSystemSettings(UserActivation &activation,
                                         const QProcessEnvironment &environment)
    : m_activation(activation)
    , m_environment(environment)
{
}

void LinuxSystemSettings::openNotificationSettings()
{
    open(notificationSettingsCommand(m_environment));
}

void LinuxSystemSettings::openLoginItems()
{
    open(loginItemsCommand(m_environment));
}

void LinuxSystemSettings::open(const QStringList &command)
{
    if (command.isEmpty())
        return;
    // The click in our own window, by which the page may come before it.
    m_activation.happenedNow();
    m_launcher.launchProgram(command);
}

QStringList notificationSettingsCommand(const QProcessEnvironment &environment)
{
    const Desktop *const desktop = currentDesktop(environment);
    return desktop ? firstThatIsThere(desktop->notifications, environment) : QStringList();
}

QStringList loginItemsCommand(const QProcessEnvironment &environment)
{
    const Desktop *const desktop = currentDesktop(environment);
    return desktop ? firstThatIsThere(desktop->loginItems, environment) : QStringList();
}
