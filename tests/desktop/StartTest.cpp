// How the program starts and ends where something is not as usual.

#include "support/Keyboard.h"
#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <sys/wait.h>

using namespace Qt::StringLiterals;

namespace
{
/// Starts the program with that app in its list, and presses the app's keys.
void startByItsKeys(const RecordedApp &app, ProgramUnderTest &program)
{
    program.addApp(app.desktopFile(), {40, 0x1800});
    program.start();
    Keyboard keyboard;
    QTRY_VERIFY(keyboard.isGrabbed(KEY_K, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1));
    keyboard.type({KEY_LEFTCTRL, KEY_LEFTALT, KEY_K});
    QTRY_COMPARE(app.starts().size(), 1);
}
} // namespace

class StartTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void endsWithStatus0WhenAskedTo()
    {
        RecordedApp app;
        ProgramUnderTest program;
        program.addApp(app.desktopFile(), {40, 0x1800});
        program.start();
        const Keyboard keyboard;
        QTRY_VERIFY(keyboard.isGrabbed(KEY_K, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1));
        QCOMPARE(program.stop(), 0);
        QCOMPARE(program.errorOutput(), QByteArray());
    }

    void saysThatItHasNoDisplay_data()
    {
        QTest::addColumn<QString>("variable");
        QTest::addColumn<QString>("value");
        QTest::addColumn<QByteArray>("line");
        QTest::newRow("none at all")
            << u"DISPLAY"_s << QString()
            << QByteArray("corvane: there is no display; start it in a desktop session\n");
        QTest::newRow("an X server that is not there")
            << u"DISPLAY"_s << u":9999"_s
            << QByteArray("corvane: cannot connect to the X display :9999\n");
        QTest::newRow("a compositor that is not there")
            << u"WAYLAND_DISPLAY"_s << u"/nowhere/wayland-0"_s
            << QByteArray("corvane: cannot connect to the Wayland compositor at "
                          "/nowhere/wayland-0\n");
    }
    void saysThatItHasNoDisplay()
    {
        QFETCH(const QString, variable);
        QFETCH(const QString, value);
        QFETCH(const QByteArray, line);
        ProgramUnderTest program;
        program.environment.insert(variable, value);
        program.start();
        QCOMPARE(program.exitStatus(), 1);
        QCOMPARE(program.errorOutput(), line);
    }

    void runsWithoutAHomeFolder()
    {
        const RecordedApp app;
        ProgramUnderTest program;
        program.environment.insert(u"HOME"_s, u"/dev/null"_s);
        startByItsKeys(app, program);
        QCOMPARE(program.stop(), 0);
        QCOMPARE(program.errorOutput(), QByteArray());
    }

    void leavesWhatItStartedBehind()
    {
        const QTemporaryDir folder;
        const RecordedApp app("--until-gone " + folder.path().toUtf8());
        ProgramUnderTest program;
        startByItsKeys(app, program);
        QCOMPARE(app.starts().size(), 1);
        const pid_t process = app.starts().constFirst()[u"process"].toInt();
        QCOMPARE(program.children(), QList({process}));
        QCOMPARE(program.end(), 0);
        QCOMPARE(kill(process, SIGTERM), 0);
        int status = 0;
        QCOMPARE(waitpid(process, &status, 0), process);
        QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGTERM);
    }
};

QTEST_GUILESS_MAIN(StartTest)
#include "StartTest.moc"
