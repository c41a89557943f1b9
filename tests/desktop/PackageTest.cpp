// The Debian package on a clean system: what its user has of it, before and after an upgrade, and
// what stays when it is removed.

#include "platform/linux/services/AutostartLoginItem.h"
#include "support/Accessible.h"
#include "support/Keyboard.h"
#include "support/PrivateBus.h"
#include "support/ProgramOnTheBus.h"
#include "support/ProgramUnderTest.h"
#include "support/SettingsDesk.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QScopeGuard>
#include <QStandardPaths>
#include <QTest>
#include <csignal>

using namespace Qt::StringLiterals;

namespace
{
constexpr int controlOption = 0x1800;

void run(const QStringList &command)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(command.constFirst(), command.sliced(1));
    if (!process.waitForFinished(300000) || process.exitCode() != 0)
        qFatal("%s: %s", qPrintable(command.join(u' ')), process.readAll().constData());
}

QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Puts what desktops have to know into the data folder, as script/run does.
void makeKnown(const QString &data, const QString &programs)
{
    const QString packaging = QStringLiteral(CORVANE_SOURCE_DIR) + u"/packaging"_s;
    run({u"cmake"_s, u"-DDATA="_s + data, u"-DBIN="_s + programs, u"-P"_s,
         packaging + u"/share.cmake"_s});
    run({packaging + u"/tell-desktop"_s, data});
}

void writeScript(const QString &path, const QByteArray &line)
{
    SettingsDesk::write(path, "#!/bin/sh\n" + line + '\n');
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

/// The value behind the first line that begins so.
QString valueOf(const QByteArray &key, const QString &file)
{
    for (const QByteArray &line : read(file).split('\n')) {
        if (line.startsWith(key + '='))
            return QString::fromUtf8(line.sliced(key.size() + 1));
    }
    return {};
}

/// Made of this build.
QString package()
{
    static const QTemporaryDir folder;
    static const QString made = [] {
        run({u"cpack"_s, u"--config"_s,
             QCoreApplication::applicationDirPath() + u"/../CPackConfig.cmake"_s, u"-B"_s,
             folder.path()});
        const QDir packages(folder.path());
        return packages.filePath(packages.entryList({u"*.deb"_s}).value(0));
    }();
    return made;
}

/// A system that has never had the package: an empty one, in which programs find the libraries of
/// this machine; or, if CORVANE_SYSTEM names its root, a complete one for chroot, with this one's
/// /tmp.
class System
{
public:
    System()
    {
        if (isComplete())
            return;
        for (const QString &name : {u"info"_s, u"updates"_s})
            QDir().mkpath(m_folder.filePath(u"var/lib/dpkg/"_s + name));
        SettingsDesk::write(m_folder.filePath(u"var/lib/dpkg/status"_s), "");
    }
    ~System()
    {
        if (isComplete())
            remove();
    }
    Q_DISABLE_COPY_MOVE(System)

    void install() const
    {
        if (isComplete()) {
            run(inRoot({u"apt-get"_s, u"-qq"_s, u"--no-install-recommends"_s, u"--reinstall"_s,
                        u"install"_s, package()}));
            return;
        }
        run(dpkg({u"--install"_s, package()}));
        updateDesktopDatabase();
    }

    void remove() const
    {
        if (isComplete()) {
            run(inRoot({u"dpkg"_s, u"--purge"_s, u"corvane"_s}));
            return;
        }
        run(dpkg({u"--purge"_s, u"corvane"_s}));
        updateDesktopDatabase();
    }

    QString path(const QString &file) const
    {
        return (isComplete() ? qEnvironmentVariable("CORVANE_SYSTEM") : m_folder.path()) + file;
    }

    /// As programs that run in it call the file.
    QString inside(const QString &file) const { return isComplete() ? file : path(file); }

    /// A command that runs this one in it.
    QStringList inRoot(const QStringList &command = {}) const
    {
        return isComplete()
            ? QStringList{QStandardPaths::findExecutable(u"chroot"_s), path({})} + command
            : command;
    }

    /// All but what a package manager keeps of its own, and what the desktop's tools have noted.
    QStringList files() const
    {
        QStringList files;
        QDirIterator found(path(u"/usr"_s), QDir::Files | QDir::Hidden | QDir::System,
                           QDirIterator::Subdirectories);
        while (found.hasNext()) {
            const QString file = found.next();
            if (!file.endsWith(u"/mimeinfo.cache"_s))
                files << file;
        }
        files.sort();
        return files;
    }

    void setUp(ProgramUnderTest &program) const
    {
        program.starter = inRoot();
        program.program = inside(u"/usr/bin/corvane"_s);
        program.environment.insert(u"PATH"_s,
                                   inside(u"/usr/bin"_s) + u':' + qEnvironmentVariable("PATH"));
        program.environment.insert(u"XDG_DATA_DIRS"_s, inside(u"/usr/share"_s) + u":/usr/share"_s);
    }

private:
    static bool isComplete() { return qEnvironmentVariableIsSet("CORVANE_SYSTEM"); }

    QStringList dpkg(const QStringList &arguments) const
    {
        return QStringList{u"dpkg"_s,
                           u"--root="_s + m_folder.path(),
                           u"--log=/dev/null"_s,
                           u"--force-not-root"_s,
                           u"--force-bad-path"_s,
                           u"--force-depends"_s}
        + arguments;
    }

    /// As the triggers of its package do.
    void updateDesktopDatabase() const
    {
        const QString folder = path(u"/usr/share/applications"_s);
        if (QFile::exists(folder))
            run({u"update-desktop-database"_s, folder});
    }

    QTemporaryDir m_folder;
};

/// A user of the program, who has an entry of each kind.
struct User {
    explicit User(const System &system)
        : User()
    {
        system.setUp(program);
    }
    /// Of the build.
    User()
    {
        const QString application = program.dataHome() + u"/applications/recorder.desktop"_s;
        writeScript(program.home.filePath(u"record"_s),
                    "echo \"$*\" >> '" + program.home.filePath(u"opened"_s).toUtf8() + '\'');
        SettingsDesk::write(application,
                            "[Desktop Entry]\nType=Application\nName=Recorder\nExec=\""
                                + program.home.filePath(u"record"_s).toUtf8() + "\" app %u\n");
        SettingsDesk::write(program.configHome() + u"/mimeapps.list"_s,
                            "[Default Applications]\ninode/directory=recorder.desktop\n"
                            "x-scheme-handler/https=recorder.desktop\n");
        writeScript(program.dataHome() + u"/shortcuts/Tidy Up"_s,
                    "exec '" + program.home.filePath(u"record"_s).toUtf8() + "' shortcut");
        idOnK = program.addEntry("app", application, {40, controlOption});
        program.addEntry("path", program.home.path(), {38, controlOption});
        program.addEntry("website", u"https://corvane.test/"_s, {37, controlOption});
        program.addEntry("shortcut", u"Tidy Up"_s, {46, controlOption});
    }

    void startProgram()
    {
        program.start();
        QTRY_VERIFY(keyboard.isGrabbed(KEY_M, controlAlt));
    }

    /// What opened after a press of Control, Alt and that key.
    QByteArray openedBy(int key)
    {
        QFile::remove(program.home.filePath(u"opened"_s));
        keyboard.type({KEY_LEFTCTRL, KEY_LEFTALT, key});
        return opened();
    }
    QByteArray opened() const
    {
        const QString file = program.home.filePath(u"opened"_s);
        const bool isThere = QTest::qWaitFor([&] { return read(file).endsWith('\n'); });
        return isThere ? read(file).trimmed() : QByteArray("nothing");
    }

    void turnOnLaunchAtLogin() const
    {
        askForSettings();
        QVERIFY(Accessible::program(program.processId())
                    .await(u"check box"_s, u"Launch at login"_s)
                    .toggle());
        QTRY_VERIFY(QFile::exists(autostartFile()));
    }
    QString autostart() const { return program.configHome() + u"/autostart"_s; }
    QString autostartFile() const { return autostart() + u"/org.corvane.Corvane.desktop"_s; }

    ProgramUnderTest program;
    Keyboard keyboard;
    QString idOnK;
};
} // namespace

class PackageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isKnownToTheDesktopWhereverItIs_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::newRow("a plain path") << u"bin"_s;
        QTest::newRow("with blanks and letters beyond ASCII") << u"my  prögrams 日本"_s;
        QTest::newRow("with what lines of commands give a meaning")
            << u"it's \"100%u\" $HOME `id` \\n;#@EXEC_CORVANE@"_s;
    }
    void isKnownToTheDesktopWhereverItIs()
    {
        QFETCH(const QString, folder);
        const QTemporaryDir home;
        const QString programs = home.filePath(folder);
        const QString data = home.filePath(u"data"_s);
        for (const QString &name : {u"/corvane"_s, u"/corvane-shortcuts"_s})
            writeScript(programs + name,
                        "printf '%s|' \"$0\" \"$@\" > '" + home.filePath(u"new"_s).toUtf8()
                            + "'; mv '" + home.filePath(u"new"_s).toUtf8() + "' '"
                            + home.filePath(u"started"_s).toUtf8() + '\'');
        const auto started = [&] {
            const QString file = home.filePath(u"started"_s);
            const bool isThere = QTest::qWaitFor([&] { return QFile::exists(file); });
            const QString line = QString::fromUtf8(read(file));
            QFile::remove(file);
            return isThere ? line : u"nothing"_s;
        };
        makeKnown(data, programs);
        for (const QString &name : {u"Corvane"_s, u"Corvane.Shortcuts"_s})
            run({u"desktop-file-validate"_s,
                 data + u"/applications/org.corvane.%1.desktop"_s.arg(name)});
        const QStringList inHome{u"env"_s, u"XDG_DATA_HOME="_s + data};

        run({u"gio"_s, u"launch"_s, data + u"/applications/org.corvane.Corvane.desktop"_s});
        QCOMPARE(started(), programs + u"/corvane|"_s);
        run(inHome + QStringList{u"gio"_s, u"open"_s, u"shortcuts://run-shortcut?name=A%20B"_s});
        QCOMPARE(started(),
                 programs + u"/corvane-shortcuts|shortcuts://run-shortcut?name=A%20B|"_s);
        const PrivateBus bus(
            u"org.corvane.Corvane"_s,
            valueOf("Exec", data + u"/dbus-1/services/org.corvane.Corvane.service"_s));
        auto connection = QDBusConnection::connectToBus(bus.address(), folder);
        connection.send(
            QDBusMessage::createMethodCall(u"org.corvane.Corvane"_s, u"/"_s, {}, u"Call"_s));
        QCOMPARE(started(), programs + u"/corvane|"_s);
        QDBusConnection::disconnectFromBus(connection.name());
    }

    void needsNoInstallation()
    {
        User user;
        user.program.isAccessible = true;
        const QString data = user.program.dataHome();
        makeKnown(data, QCoreApplication::applicationDirPath());
        user.startProgram();
        QCOMPARE(user.openedBy(KEY_M), QByteArray("shortcut"));
        user.turnOnLaunchAtLogin();

        run({u"env"_s, u"XDG_DATA_HOME="_s + data,
             u"XDG_CONFIG_HOME="_s + user.program.configHome(),
             QStringLiteral(CORVANE_SOURCE_DIR) + u"/script/uninstall"_s});
        QCOMPARE(QDir(data).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                 QStringList({u"applications"_s, u"Corvane"_s, u"shortcuts"_s}));
        QCOMPARE(QDir(data + u"/applications"_s).entryList(QDir::Files),
                 QStringList({u"mimeinfo.cache"_s, u"recorder.desktop"_s}));
        QVERIFY(QFile::exists(data + u"/Corvane/entries.json"_s));
        QVERIFY(!QFile::exists(user.autostartFile()));
        QCOMPARE(user.program.stop(), 0);
    }

    void opensWhatTheUserChose()
    {
        const System system;
        system.install();
        User user(system);
        user.startProgram();
        QCOMPARE(user.openedBy(KEY_K), QByteArray("app"));
        QCOMPARE(user.openedBy(KEY_J), "app file://" + user.program.home.path().toUtf8());
        QCOMPARE(user.openedBy(KEY_L), QByteArray("app https://corvane.test/"));
        QCOMPARE(user.openedBy(KEY_M), QByteArray("shortcut"));
        QCOMPARE(user.program.stop(), 0);
        QCOMPARE(user.program.errorOutput(), QByteArray());
    }

    void startsWhenItIsCalledOnTheBus()
    {
        const System system;
        system.install();
        User user(system);
        user.program.writeFiles();
        const QString service =
            system.path(u"/usr/share/dbus-1/services/org.corvane.Corvane.service"_s);
        QCOMPARE(valueOf("Name", service), u"org.corvane.Corvane"_s);
        const QString command = valueOf("Exec", service);
        QCOMPARE(command, u"/usr/bin/corvane"_s);

        const PrivateBus bus(u"org.corvane.Corvane"_s,
                             system.inRoot({system.inside(command)}).join(u' '),
                             user.program.environment);
        auto connection = QDBusConnection::connectToBus(bus.address(), u"caller"_s);
        auto fire =
            QDBusMessage::createMethodCall(u"org.corvane.Corvane"_s, u"/org/corvane/Corvane"_s,
                                           u"org.freedesktop.Application"_s, u"ActivateAction"_s);
        fire << u"fire"_s << QVariant(QVariantList{user.idOnK}) << QVariantMap();
        QCOMPARE(connection.call(fire).errorMessage(), QString());
        const pid_t process = pid_t(connection.interface()->servicePid(fire.service()));
        QVERIFY(process > 0);
        const auto end = qScopeGuard([process] { kill(process, SIGTERM); });
        QCOMPARE(user.opened(), QByteArray("app"));
        QCOMPARE(QFile::symLinkTarget(u"/proc/%1/exe"_s.arg(process)), system.path(command));
        QDBusConnection::disconnectFromBus(connection.name());
    }

    void outlivesItsUpgradeAndLeavesTheUserHisFiles()
    {
        const System system;
        const QStringList filesBefore = system.files();
        system.install();
        User user(system);
        user.program.isAccessible = true;
        user.startProgram();

        system.install();
        QVERIFY(QFile::symLinkTarget(u"/proc/%1/exe"_s.arg(user.program.processId()))
                    .endsWith(u" (deleted)"_s));
        QCOMPARE(user.openedBy(KEY_K), QByteArray("app"));
        QCOMPARE(user.openedBy(KEY_M), QByteArray("shortcut"));
        user.turnOnLaunchAtLogin();
        QCOMPARE(valueOf("TryExec", user.autostartFile()), system.inside(u"/usr/bin/corvane"_s));

        const QByteArray list = read(user.program.dataHome() + u"/Corvane/entries.json"_s);
        system.remove();
        QCOMPARE(user.program.stop(), 0);
        QCOMPARE(system.files(), filesBefore);
        QCOMPARE(read(user.program.dataHome() + u"/Corvane/entries.json"_s), list);
        QVERIFY(!list.isEmpty());
        // Nor does the desktop try to start what has gone.
        QCOMPARE(AutostartLoginItem(user.autostart(), {}).status(), LoginItemStatus::notFound);
    }
};

QTEST_GUILESS_MAIN(PackageTest)
#include "PackageTest.moc"
