// The list and the settings outlive whatever happens to the program and to its files.

#include "support/ProgramOnTheBus.h"
#include "support/SettingsDesk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTest>
#include <csignal>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using State = Accessible::State;

namespace
{
const QString noList = u"Your shortcut list could not be loaded."_s;
const QString noSettings = u"Your settings could not be loaded."_s;
const QString renames = u"rename,renameat,renameat2"_s;

mode_t modeOf(const QString &path)
{
    struct stat status = {};
    stat(QFile::encodeName(path).constData(), &status);
    return status.st_mode & ALLPERMS;
}

/// A line of /proc/PID/status.
QByteArray statusOf(pid_t process, const QByteArray &name)
{
    const QByteArray status = SettingsDesk::content(u"/proc/%1/status"_s.arg(process));
    const qsizetype start = status.indexOf('\n' + name + ":\t") + name.size() + 3;
    return status.sliced(start, status.indexOf('\n', start) - start);
}

/// Has the process killed when it is about to put the nth file from now into its place.
void killAtRename(QProcess &killer, pid_t process, int number)
{
    killer.start(u"strace"_s,
                 {u"-f"_s, u"-o"_s, u"/dev/null"_s, u"-p"_s, QString::number(process), u"-e"_s,
                  u"inject=%1:signal=SIGKILL:when=%2"_s.arg(renames).arg(number)});
    QByteArray words;
    QTRY_VERIFY((words += killer.readAllStandardError()).contains("attached"));
}

using Put = std::function<bool(const QByteArray &path)>;
} // namespace

Q_DECLARE_METATYPE(Put)

class NothingLostTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesNoEntryWithoutItsKeysWhenItIsKilled_data()
    {
        QTest::addColumn<int>("rename");
        QTest::addColumn<bool>("isDeleted");
        QTest::newRow("before anything is written") << 1 << false;
        QTest::newRow("between the two files") << 2 << true;
    }
    void leavesNoEntryWithoutItsKeysWhenItIsKilled()
    {
        QFETCH(const int, rename);
        QFETCH(const bool, isDeleted);
        SettingsDesk desk;
        desk.addApp(storedControlAltK);
        desk.open();
        desk.awaitHeld(KEY_K);
        const QByteArray settings = desk.settings();
        QProcess killer;
        killAtRename(killer, desk.program.processId(), rename);
        QVERIFY(desk.row(u"App"_s).find(Role::button, u"Delete"_s).press());
        QTRY_VERIFY(!desk.program.isRunning());
        QCOMPARE(desk.list() == "[]", isDeleted);
        QCOMPARE(desk.settings(), settings);

        desk.program.startAgain();
        desk.show();
        QCOMPARE(desk.hasRow(u"App"_s), !isDeleted);
        if (!isDeleted)
            desk.verifyThatKeysRunTheApp(controlAltK);
    }

    void isOnDiskWhenItIsInItsPlace()
    {
        SettingsDesk desk;
        desk.addApp(storedControlAltK);
        const QString log = desk.program.home.filePath(u"calls"_s);
        desk.program.starter = {u"strace"_s, u"-D"_s,         u"-f"_s,
                                u"-qq"_s,    u"-y"_s,         u"-o"_s,
                                log,         u"-e"_s,         u"trace=fsync,"_s + renames,
                                u"-e"_s,     u"signal=none"_s};
        desk.open();
        QVERIFY(desk.row(u"App"_s).find(Role::button, u"Delete"_s).press());
        QTRY_VERIFY(!desk.settings().contains("hotkey"));
        QCOMPARE(desk.program.stop(), 0);

        const QString calls = QString::fromUtf8(desk.content(log));
        for (const QString &path : {desk.listPath(), desk.settingsPath()}) {
            // The new file, its rename into the place of the old one, the folder.
            const QString name = QRegularExpression::escape(path);
            const QRegularExpression order(
                uR"(fsync\(\d+<(%1\.\w+)>\)\s+= 0\n.*rename\("\1", "%1"\)\s+= 0\n.*fsync\(\d+<%2>\)\s+= 0\n)"_s
                    .arg(name, QRegularExpression::escape(QFileInfo(path).path())));
            QVERIFY2(order.match(calls).hasMatch(), qPrintable(calls));
        }
    }

    void startsWhateverIsInPlaceOfItsFiles_data()
    {
        QTest::addColumn<Put>("put");
        QTest::newRow("pipes") << Put(
            [](const QByteArray &path) { return mkfifo(path.constData(), 0600) == 0; });
        QTest::newRow("links to a device without an end") << Put(
            [](const QByteArray &path) { return symlink("/dev/zero", path.constData()) == 0; });
        QTest::newRow("folders") << Put(
            [](const QByteArray &path) { return mkdir(path.constData(), 0700) == 0; });
    }
    void startsWhateverIsInPlaceOfItsFiles()
    {
        QFETCH(const Put, put);
        SettingsDesk desk;
        desk.addApp(storedControlAltK);
        desk.open();
        QCOMPARE(desk.program.stop(), 0);
        for (const QString &path : {desk.listPath(), desk.settingsPath()})
            QVERIFY(QFile::remove(path) && put(QFile::encodeName(path)));
        desk.program.startAgain();
        desk.all = Accessible::program(desk.program.processId());
        const Accessible first = desk.errorAlert(noList);
        SettingsDesk::press(first, u"OK"_s);
        QTRY_VERIFY(!first.is(State::showing));
        SettingsDesk::press(desk.errorAlert(noSettings), u"OK"_s);
        desk.awaitNoSheet();
        SettingsDesk::press(desk.all, u"Got it"_s);
        QTRY_VERIFY(QFileInfo(desk.settingsPath()).isFile());
        QTRY_COMPARE(desk.settings(), QByteArray("[General]\nhasSeenWelcome=true\n"));
        QCOMPARE(desk.program.stop(), 0);
        QCOMPARE(desk.program.errorOutput(), QByteArray());
    }

    void writesForTheUserAloneWhateverTheUmaskIs()
    {
        SettingsDesk desk;
        desk.addApp(storedControlAltK);
        desk.program.starter = {u"sh"_s, u"-c"_s, u"umask 0; exec \"$0\""_s};
        desk.open();
        QVERIFY(desk.row(u"App"_s).find(Role::checkBox, u"Enabled"_s).toggle());
        QTRY_VERIFY(desk.list().contains("\"isEnabled\":false"));
        desk.toggle(u"Show a small notification when a shortcut runs"_s);
        QTRY_VERIFY(desk.settings().contains("showRunNotification=false"));
        desk.toggle(u"Launch at login"_s);
        const QString autostart = desk.program.configHome() + u"/autostart"_s;
        const QString loginItem = autostart + u"/org.corvane.Corvane.desktop"_s;
        QTRY_VERIFY(QFile::exists(loginItem));
        for (const QString &path : {desk.listPath(), desk.settingsPath(), loginItem})
            QCOMPARE(modeOf(path), mode_t(0600));
        QCOMPARE(modeOf(autostart), mode_t(0700));
        QCOMPARE(desk.program.stop(), 0);
    }

    void staysAliveAtTheLimitOfFileSizes()
    {
        const QTemporaryDir folder;
        const RecordedApp app("--until-gone " + folder.path().toUtf8());
        SettingsDesk desk;
        desk.program.addApp(app.desktopFile(), storedControlAltK);
        desk.addApp(storedControlAltJ);
        // Two blocks of 512 bytes.
        desk.program.addDefault("x=" + QByteArray(1100, 'x'));
        desk.program.starter = {u"sh"_s, u"-c"_s, u"umask 027; ulimit -f 2; exec \"$0\""_s};
        desk.open();
        const QByteArray settings = desk.settings();
        desk.toggle(u"Show a small notification when a shortcut runs"_s);
        SettingsDesk::press(desk.errorAlert(u"Your settings could not be saved."_s), u"OK"_s);
        desk.awaitNoSheet();
        QCOMPARE(desk.settings(), settings);

        // What it starts has the limit's signal and the umask that the user gave to all.
        desk.keyboard.type(controlAltK);
        QTRY_COMPARE(app.starts().size(), 1);
        const auto start = app.starts().constFirst();
        const pid_t process = start[u"process"].toInt();
        QVERIFY(start[u"hasDefaultSignals"].toBool());
        QCOMPARE(statusOf(process, "Umask"), QByteArray("0027"));
        QCOMPARE(desk.program.end(), 0);
        QCOMPARE(kill(process, SIGTERM), 0);
    }
};

QTEST_GUILESS_MAIN(NothingLostTest)
#include "NothingLostTest.moc"
