#include "platform/linux/services/LinuxSystemSettings.h"

#include "platform/linux/base/Session.h"

#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{
/// The command lines for a desktop's pages; the first whose program is installed is used.
struct Pages {
    QStringList notifications;
    QStringList loginItems;
    /// The page of the desktop's own key combinations.
    QStringList keyboard;
};

Pages pagesOf(Desktop desktop)
{
    switch (desktop) {
    case Desktop::gnome:
        // Only some versions of GNOME's own settings show login items, so they come last.
        return {
            {u"gnome-control-center notifications"_s},
            {u"gnome-session-properties"_s, u"gnome-tweaks"_s,
             u"gnome-control-center applications"_s},
            {u"gnome-control-center keyboard"_s},
        };
    case Desktop::budgie:
        return {
            {u"budgie-control-center notifications"_s, u"gnome-control-center notifications"_s},
            {u"budgie-desktop-settings"_s, u"gnome-session-properties"_s, u"gnome-tweaks"_s},
            {u"budgie-control-center keyboard"_s, u"gnome-control-center keyboard"_s},
        };
    case Desktop::plasma:
        return {
            {u"systemsettings kcm_notifications"_s, u"systemsettings5 kcm_notifications"_s},
            {u"systemsettings kcm_autostart"_s, u"systemsettings5 kcm_autostart"_s},
            {u"systemsettings kcm_keys"_s, u"systemsettings5 kcm_keys"_s},
        };
    case Desktop::xfce:
        return {{u"xfce4-notifyd-config"_s},
                {u"xfce4-session-settings"_s},
                {u"xfce4-keyboard-settings"_s}};
    case Desktop::cinnamon:
        return {{u"cinnamon-settings notifications"_s},
                {u"cinnamon-settings startup"_s},
                {u"cinnamon-settings keyboard"_s}};
    case Desktop::mate:
        return {{u"mate-notification-properties"_s},
                {u"mate-session-properties"_s},
                {u"mate-keybinding-properties"_s}};
    case Desktop::lxqt:
        return {{u"lxqt-config-notificationd"_s},
                {u"lxqt-config-session"_s},
                {u"lxqt-config-globalkeyshortcuts"_s}};
    }
    Q_UNREACHABLE();
}

/// The pages of the current desktop; empty if it is unknown.
Pages pages(const QProcessEnvironment &environment)
{
    const auto desktop = currentDesktop(environment);
    return desktop ? pagesOf(*desktop) : Pages();
}

QStringList firstThatIsThere(const QStringList &commands, const QProcessEnvironment &environment)
{
    const QStringList folders = environment.value(u"PATH"_s).split(u':', Qt::SkipEmptyParts);
    // An empty list would search the folders of our own environment.
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

void LinuxSystemSettings::openKeyboardSettings()
{
    open(keyboardSettingsCommand(m_environment));
}

void LinuxSystemSettings::open(const QStringList &command)
{
    if (command.isEmpty())
        return;
    // Notes the click in our window, so that the page may come to the front.
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

QStringList keyboardSettingsCommand(const QProcessEnvironment &environment)
{
    return firstThatIsThere(pages(environment).keyboard, environment);
}
