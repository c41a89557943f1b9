#include "platform/linux/services/LinuxSystemSettings.h"

#include "platform/linux/base/Session.h"

#include <QHash>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{
/// The command lines of a desktop's pages; the first whose program is there shows the page.
struct Pages {
    QStringList notifications;
    QStringList loginItems;
};

// Only some versions of GNOME's own settings tell what starts at login, so they come last.
const QHash<Desktop, Pages> &knownPages()
{
    static const QHash<Desktop, Pages> pages{
        {
            Desktop::gnome,
            {
                {u"gnome-control-center notifications"_s},
                {
                    u"gnome-session-properties"_s,
                    u"gnome-tweaks"_s,
                    u"gnome-control-center applications"_s,
                },
            },
        },
        {
            Desktop::budgie,
            {
                {u"budgie-control-center notifications"_s, u"gnome-control-center notifications"_s},
                {u"budgie-desktop-settings"_s, u"gnome-session-properties"_s, u"gnome-tweaks"_s},
            },
        },
        {
            Desktop::plasma,
            {
                {u"systemsettings kcm_notifications"_s, u"systemsettings5 kcm_notifications"_s},
                {u"systemsettings kcm_autostart"_s, u"systemsettings5 kcm_autostart"_s},
            },
        },
        {Desktop::xfce, {{u"xfce4-notifyd-config"_s}, {u"xfce4-session-settings"_s}}},
        {
            Desktop::cinnamon,
            {{u"cinnamon-settings notifications"_s}, {u"cinnamon-settings startup"_s}},
        },
        {
            Desktop::mate,
            {{u"mate-notification-properties"_s}, {u"mate-session-properties"_s}},
        },
        {Desktop::lxqt, {{u"lxqt-config-notificationd"_s}, {u"lxqt-config-session"_s}}},
    };
    return pages;
}

/// Those of the running desktop; none if we know it not.
Pages pages(const QProcessEnvironment &environment)
{
    const auto desktop = currentDesktop(environment);
    return desktop ? knownPages().value(*desktop) : Pages();
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
    m_launcher.launchProgram(command, m_activation.issueTokens());
}

QStringList notificationSettingsCommand(const QProcessEnvironment &environment)
{
    return firstThatIsThere(pages(environment).notifications, environment);
}

QStringList loginItemsCommand(const QProcessEnvironment &environment)
{
    return firstThatIsThere(pages(environment).loginItems, environment);
}
