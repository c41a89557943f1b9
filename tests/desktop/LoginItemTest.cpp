// What a session starts at login, by the autostart files that it finds.

#include "platform/linux/services/AutostartLoginItem.h"
#include "support/Keyboard.h"
#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTest>
#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
/// Where distributions have what is not to be called by users.
QString autostartRunner()
{
    QStringList folders{u"/usr/libexec"_s, u"/usr/lib"_s};
    const QDir libraries(u"/usr/lib"_s);
    for (const QString &name :
         libraries.entryList({u"*-linux-*"_s, u"openbox"_s}, QDir::Dirs | QDir::NoDotAndDotDot))
        folders << libraries.filePath(name);
    return QStandardPaths::findExecutable(u"openbox-xdg-autostart"_s, folders);
}

/// What a desktop does at login. All that it starts ends with this.
class Login
{
public:
    explicit Login(const QProcessEnvironment &environment)
    {
        m_runner.setProcessEnvironment(environment);
        m_runner.setProcessChannelMode(QProcess::ForwardedChannels);
        m_runner.setChildProcessModifier([] { setpgid(0, 0); });
        m_runner.start(autostartRunner(), QStringList());
        m_runner.waitForStarted();
        m_group = pid_t(m_runner.processId());
        m_runner.waitForFinished();
    }
    ~Login()
    {
        if (m_group > 0 && isRunning())
            kill(-m_group, SIGKILL);
        while (m_group > 0 && waitpid(-m_group, nullptr, 0) > 0) { }
    }
    Q_DISABLE_COPY_MOVE(Login)

    bool hasWorked() const
    {
        return m_runner.error() == QProcess::UnknownError && m_runner.exitCode() == 0;
    }

    /// Whether something that it started has not ended.
    bool isRunning() const
    {
        // What it left behind is ours now.
        pid_t ended = 0;
        while ((ended = waitpid(-m_group, nullptr, WNOHANG)) > 0) { }
        return ended == 0;
    }

private:
    QProcess m_runner;
    pid_t m_group = 0;
};

/// How systemd, where it starts the session, would start the program; empty if it would not.
QByteArray startBySystemd(const QProcessEnvironment &environment)
{
    const QTemporaryDir units;
    QProcess generator;
    generator.setProcessEnvironment(environment);
    generator.start(u"/usr/lib/systemd/user-generators/systemd-xdg-autostart-generator"_s,
                    {units.path(), units.path(), units.path()});
    [&] { QVERIFY(generator.waitForFinished() && generator.exitCode() == 0); }();
    QFile unit(units.filePath(u"app-org.corvane.Corvane@autostart.service"_s));
    if (!unit.open(QIODevice::ReadOnly))
        return {};
    for (const QByteArray &line : unit.readAll().split('\n')) {
        if (line.startsWith("ExecStart="))
            return line;
    }
    return {};
}

/// A home with a program whose path has a blank, and nothing in it that the session starts.
struct Home {
    Home()
    {
        // Nor of what the system starts in every session.
        program.environment.insert(u"XDG_CONFIG_DIRS"_s, program.home.filePath(u"nothing"_s));
        QDir().mkpath(program.home.filePath(u"my programs"_s));
        if (!QFile::copy(QCoreApplication::applicationDirPath() + u"/corvane"_s, path))
            qFatal("cannot copy the program");
    }

    void append(const QString &autostartFile, const QByteArray &text) const
    {
        QFile file(autostartFolder + u'/' + autostartFile);
        QVERIFY(file.open(QIODevice::Append));
        file.write(text);
    }

    ProgramUnderTest program;
    QString path = program.home.filePath(u"my programs/corvane"_s);
    QString autostartFolder = program.configHome() + u"/autostart"_s;
    AutostartLoginItem loginItem{autostartFolder, path};
};

/// The program that has our name on the bus; empty if there is none.
QString pathOnTheBus()
{
    const auto process =
        QDBusConnection::sessionBus().interface()->servicePid(u"org.corvane.Corvane"_s);
    return process.isValid() ? QFile::symLinkTarget(u"/proc/%1/exe"_s.arg(process)) : QString();
}
} // namespace

class LoginItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsAtLoginWithItsKeys()
    {
        const RecordedApp app;
        Home home;
        home.program.addApp(app.desktopFile(), {40, 0x1800});
        home.program.writeFiles();
        QVERIFY(!home.loginItem.registerItem());
        const Login login(home.program.environment);
        QVERIFY(login.hasWorked());
        Keyboard keyboard;
        QTRY_VERIFY(keyboard.isGrabbed(KEY_K, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1));
        QTRY_COMPARE(pathOnTheBus(), home.path);
        keyboard.type({KEY_LEFTCTRL, KEY_LEFTALT, KEY_K});
        QTRY_COMPARE(app.starts().size(), 1);
    }

    void isAUnitOfSystemdAsLongAsTheProgramIsThere()
    {
        Home home;
        QVERIFY(!home.loginItem.registerItem());
        QCOMPARE(startBySystemd(home.program.environment),
                 "ExecStart=:\"" + home.path.toUtf8() + '"');
        QVERIFY(QFile::remove(home.path));
        QCOMPARE(startBySystemd(home.program.environment), QByteArray());
    }

    void doesNotStartAtLogin_data()
    {
        QTest::addColumn<std::function<void(Home &)>>("change");
        const auto add = [](const char *row, const std::function<void(Home &)> &change) {
            QTest::newRow(row) << change;
        };
        add("after the user has switched it off in the desktop's settings", [](Home &home) {
            home.append(u"org.corvane.Corvane.desktop"_s, "Hidden=true\n");
            QCOMPARE(home.loginItem.status(), LoginItemStatus::requiresApproval);
        });
        add("after the program was removed", [](Home &home) { QVERIFY(QFile::remove(home.path)); });
        add("after it was unregistered",
            [](Home &home) { QVERIFY(!home.loginItem.unregisterItem()); });
    }
    void doesNotStartAtLogin()
    {
        QFETCH(const std::function<void(Home &)>, change);
        const RecordedApp other;
        Home home;
        QVERIFY(!home.loginItem.registerItem());
        change(home);
        home.append(u"other.desktop"_s, other.content());
        const Login login(home.program.environment);
        QVERIFY(login.hasWorked());
        QTRY_COMPARE(other.starts().size(), 1);
        // The other one ends by itself, and the program would not.
        QTRY_VERIFY(!login.isRunning());
        QCOMPARE(pathOnTheBus(), QString());
    }
};

QTEST_GUILESS_MAIN(LoginItemTest)
#include "LoginItemTest.moc"
