// How the pages of the desktop's own settings are opened.

#include "platform/linux/activation/ServerTime.h"
#include "platform/linux/activation/StartupNotification.h"
#include "platform/linux/services/LinuxSystemSettings.h"
#include "support/RecordedApp.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// A session of that desktop with one program.
class Session
{
public:
    Session(const QString &desktop, const QString &program, const QByteArray &content)
    {
        m_environment.insert(u"XDG_CURRENT_DESKTOP"_s, desktop);
        m_environment.insert(u"PATH"_s, m_folder.path());
        QFile file(m_folder.filePath(program));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(file.fileName()));
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    LinuxSystemSettings settings() { return {m_activation, m_environment}; }

private:
    QTemporaryDir m_folder;
    QProcessEnvironment m_environment;
    // Of a press long ago.
    UserActivation m_activation{.x11Time = 1};
};

QByteArray recording(const RecordedApp &app)
{
    return "#!/bin/sh\nexec " + app.command() + " \"$@\"\n";
}
} // namespace

class SystemSettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensThePageOfTheRunningDesktop_data()
    {
        QTest::addColumn<QString>("desktop");
        QTest::addColumn<QString>("program");
        QTest::addColumn<std::function<void(SystemSettings &)>>("open");
        QTest::addColumn<QString>("arguments");
        const auto add = [](const char *row, const QString &desktop, const QString &program,
                            const std::function<void(SystemSettings &)> &open,
                            const QString &arguments) {
            QTest::newRow(row) << desktop << program << open << arguments;
        };
        add("a program for the page alone", u"XFCE"_s, u"xfce4-notifyd-config"_s,
            &SystemSettings::openNotificationSettings, u"[]"_s);
        add("notifications among others", u"KDE"_s, u"systemsettings"_s,
            &SystemSettings::openNotificationSettings, u"[\"kcm_notifications\"]"_s);
        add("login items among others", u"KDE"_s, u"systemsettings"_s,
            &SystemSettings::openLoginItems, u"[\"kcm_autostart\"]"_s);
        add("keys among others", u"GNOME"_s, u"gnome-control-center"_s,
            &SystemSettings::openKeyboardSettings, u"[\"keyboard\"]"_s);
    }
    void opensThePageOfTheRunningDesktop()
    {
        QFETCH(const QString, desktop);
        QFETCH(const QString, program);
        QFETCH(const std::function<void(SystemSettings &)>, open);
        const RecordedApp app;
        Session session(desktop, program, recording(app));
        auto settings = session.settings();
        open(settings);
        QTRY_COMPARE(app.starts().size(), 1);
        QTEST(QString::fromUtf8(text(app.starts().constFirst()[u"arguments"])), "arguments");
    }

    void opensThePageOnBehalfOfTheUsersActionOfThisMoment()
    {
        const RecordedApp app;
        Session session(u"XFCE"_s, u"xfce4-notifyd-config"_s, recording(app));
        auto settings = session.settings();
        const auto before = currentServerTime();
        settings.openNotificationSettings();
        const auto after = currentServerTime();
        QTRY_COMPARE(app.starts().size(), 1);
        const auto id = app.starts().constFirst()[u"startupId"].toString();
        const auto time = StartupNotification::userTime(id.toUtf8());
        QVERIFY(before && before <= time && time <= after);
    }

    void saysNothingWhereThePageCannotBeOpened_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("no program for it") << u"other"_s << QByteArray("#!/bin/sh\n");
        QTest::newRow("one that cannot be started")
            << u"xfce4-notifyd-config"_s << QByteArray("#!/no/such\n");
    }
    void saysNothingWhereThePageCannotBeOpened()
    {
        QFETCH(const QString, program);
        QFETCH(const QByteArray, content);
        QTest::failOnWarning(QRegularExpression(u"."_s));
        Session session(u"XFCE"_s, program, content);
        session.settings().openNotificationSettings();
    }
};

QTEST_GUILESS_MAIN(SystemSettingsTest)
#include "SystemSettingsTest.moc"
