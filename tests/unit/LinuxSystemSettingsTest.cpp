#include "platform/linux/services/LinuxSystemSettings.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// A session of that desktop with these programs.
class Session
{
public:
    Session(const QString &desktop, const QStringList &programs)
    {
        environment.insert(u"XDG_CURRENT_DESKTOP"_s, desktop);
        environment.insert(u"PATH"_s, u"/no/such:"_s + m_folder.path());
        for (const QString &program : programs) {
            QFile file(m_folder.filePath(program));
            if (!file.open(QFile::WriteOnly))
                qFatal("cannot write %s", qPrintable(file.fileName()));
            file.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
        }
    }

    /// A command line whose program is in this session's folder.
    QString shortened(const QStringList &command) const
    {
        return command.join(u' ').remove(m_folder.path() + u'/');
    }

    QProcessEnvironment environment;

private:
    QTemporaryDir m_folder;
};

const QStringList allPrograms{
    u"budgie-control-center"_s,
    u"budgie-desktop-settings"_s,
    u"cinnamon-settings"_s,
    u"gnome-control-center"_s,
    u"gnome-session-properties"_s,
    u"gnome-tweaks"_s,
    u"lxqt-config-globalkeyshortcuts"_s,
    u"lxqt-config-notificationd"_s,
    u"lxqt-config-session"_s,
    u"mate-keybinding-properties"_s,
    u"mate-notification-properties"_s,
    u"mate-session-properties"_s,
    u"systemsettings"_s,
    u"systemsettings5"_s,
    u"xfce4-keyboard-settings"_s,
    u"xfce4-notifyd-config"_s,
    u"xfce4-session-settings"_s,
};

const QString gnomeNotifications = u"gnome-control-center notifications"_s;
const QString gnomeKeyboard = u"gnome-control-center keyboard"_s;
const QString gnomeSession = u"gnome-session-properties"_s;
} // namespace

class LinuxSystemSettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsThePagesOfTheRunningDesktop_data()
    {
        QTest::addColumn<QString>("desktop");
        QTest::addColumn<QString>("notifications");
        QTest::addColumn<QString>("loginItems");
        QTest::addColumn<QString>("keyboard");
        const auto add = [](const char *row, const QString &desktop, const QString &notifications,
                            const QString &loginItems, const QString &keyboard) {
            QTest::newRow(row) << desktop << notifications << loginItems << keyboard;
        };
        add("GNOME", u"GNOME"_s, gnomeNotifications, gnomeSession, gnomeKeyboard);
        add("Ubuntu's GNOME", u"ubuntu:GNOME"_s, gnomeNotifications, gnomeSession, gnomeKeyboard);
        add("GNOME in its classic shape", u"GNOME-Classic:GNOME"_s, gnomeNotifications,
            gnomeSession, gnomeKeyboard);
        add("Unity", u"Unity:Unity7:ubuntu"_s, gnomeNotifications, gnomeSession, gnomeKeyboard);
        add("Pantheon", u"Pantheon"_s, gnomeNotifications, gnomeSession, gnomeKeyboard);
        add("Budgie, which names GNOME second", u"Budgie:GNOME"_s,
            u"budgie-control-center notifications"_s, u"budgie-desktop-settings"_s,
            u"budgie-control-center keyboard"_s);
        add("Plasma", u"KDE"_s, u"systemsettings kcm_notifications"_s,
            u"systemsettings kcm_autostart"_s, u"systemsettings kcm_keys"_s);
        add("XFCE", u"XFCE"_s, u"xfce4-notifyd-config"_s, u"xfce4-session-settings"_s,
            u"xfce4-keyboard-settings"_s);
        add("Cinnamon", u"X-Cinnamon"_s, u"cinnamon-settings notifications"_s,
            u"cinnamon-settings startup"_s, u"cinnamon-settings keyboard"_s);
        add("Cinnamon by its plain name", u"Cinnamon"_s, u"cinnamon-settings notifications"_s,
            u"cinnamon-settings startup"_s, u"cinnamon-settings keyboard"_s);
        add("MATE", u"MATE"_s, u"mate-notification-properties"_s, u"mate-session-properties"_s,
            u"mate-keybinding-properties"_s);
        add("LXQt", u"LXQt"_s, u"lxqt-config-notificationd"_s, u"lxqt-config-session"_s,
            u"lxqt-config-globalkeyshortcuts"_s);
        add("another case", u"lxqt"_s, u"lxqt-config-notificationd"_s, u"lxqt-config-session"_s,
            u"lxqt-config-globalkeyshortcuts"_s);
        add("one that we do not know", u"sway"_s, {}, {}, {});
        add("one whose name begins like another's", u"GNOMEISH"_s, {}, {}, {});
        add("none", {}, {}, {}, {});
    }
    void knowsThePagesOfTheRunningDesktop()
    {
        QFETCH(const QString, desktop);
        const Session session(desktop, allPrograms);
        QTEST(session.shortened(notificationSettingsCommand(session.environment)), "notifications");
        QTEST(session.shortened(loginItemsCommand(session.environment)), "loginItems");
        QTEST(session.shortened(keyboardSettingsCommand(session.environment)), "keyboard");
    }

    void takesTheFirstProgramThatIsThere_data()
    {
        QTest::addColumn<QString>("desktop");
        QTest::addColumn<QStringList>("programs");
        QTest::addColumn<QString>("notifications");
        QTest::addColumn<QString>("loginItems");
        QTest::addColumn<QString>("keyboard");
        const auto add = [](const char *row, const QString &desktop, const QStringList &programs,
                            const QString &notifications, const QString &loginItems,
                            const QString &keyboard) {
            QTest::newRow(row) << desktop << programs << notifications << loginItems << keyboard;
        };
        add("an older Plasma", u"KDE"_s, {u"systemsettings5"_s},
            u"systemsettings5 kcm_notifications"_s, u"systemsettings5 kcm_autostart"_s,
            u"systemsettings5 kcm_keys"_s);
        add("GNOME with tweaks", u"GNOME"_s, {u"gnome-control-center"_s, u"gnome-tweaks"_s},
            gnomeNotifications, u"gnome-tweaks"_s, gnomeKeyboard);
        add("GNOME alone", u"GNOME"_s, {u"gnome-control-center"_s}, gnomeNotifications,
            u"gnome-control-center applications"_s, gnomeKeyboard);
        add("Budgie with GNOME's programs", u"Budgie:GNOME"_s,
            {u"gnome-control-center"_s, u"gnome-tweaks"_s}, gnomeNotifications, u"gnome-tweaks"_s,
            gnomeKeyboard);
        add("programs of another desktop only", u"XFCE"_s, {u"gnome-control-center"_s}, {}, {}, {});
        add("one of two pages", u"XFCE"_s, {u"xfce4-session-settings"_s}, {},
            u"xfce4-session-settings"_s, {});
        add("no programs", u"GNOME"_s, {}, {}, {}, {});
    }
    void takesTheFirstProgramThatIsThere()
    {
        QFETCH(const QString, desktop);
        QFETCH(const QStringList, programs);
        const Session session(desktop, programs);
        QTEST(session.shortened(notificationSettingsCommand(session.environment)), "notifications");
        QTEST(session.shortened(loginItemsCommand(session.environment)), "loginItems");
        QTEST(session.shortened(keyboardSettingsCommand(session.environment)), "keyboard");
    }

    void namesTheArgumentsOneByOne()
    {
        const Session session(u"KDE"_s, allPrograms);
        const QStringList command = loginItemsCommand(session.environment);
        QVERIFY(command.constFirst().startsWith(u'/'));
        QCOMPARE(command.sliced(1), QStringList(u"kcm_autostart"_s));
    }
};

QTEST_APPLESS_MAIN(LinuxSystemSettingsTest)
#include "LinuxSystemSettingsTest.moc"
