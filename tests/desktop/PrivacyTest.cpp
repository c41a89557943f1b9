// What the program does not do: talk to the network.

#include "support/Keyboard.h"
#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"
#include "support/SettingsDesk.h"

#include <QCoreApplication>
#include <QFile>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// A script that runs the command, and the companion to run it with.
void addShortcut(const ProgramUnderTest &program, const QByteArray &command)
{
    const QString script = program.dataHome() + u"/shortcuts/Tidy Up"_s;
    SettingsDesk::write(script, "#!/bin/sh\n" + command + '\n');
    QVERIFY(QFile::setPermissions(script, QFile::ReadOwner | QFile::ExeOwner));
    const QString companion = QCoreApplication::applicationDirPath() + u"/corvane-shortcuts"_s;
    const QString applications = program.dataHome() + u"/applications"_s;
    SettingsDesk::write(applications + u"/companion.desktop"_s,
                        "[Desktop Entry]\nType=Application\nName=Shortcuts\nExec="
                            + companion.toUtf8() + " %u\nMimeType=x-scheme-handler/shortcuts;\n");
    QCOMPARE(QProcess::execute(u"update-desktop-database"_s, {applications}), 0);
}
} // namespace

class PrivacyTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensNoSocketButLocalOnes()
    {
        const RecordedApp app("%U");
        ProgramUnderTest program;
        const QString log = program.home.filePath(u"sockets"_s);
        program.starter = {
            u"strace"_s, u"-D"_s, u"-f"_s, u"-qq"_s,
            u"-o"_s,     log,     u"-e"_s, u"trace=socket,socketpair,connect,bind,sendto"_s};
        app.openByDefault({"inode/directory", "x-scheme-handler/https"}, program.dataHome(),
                          program.configHome());
        addShortcut(program, "exec " + app.command());
        program.addApp(app.desktopFile(), {0, 0x1800});
        program.addEntry("path", u"/usr"_s, {1, 0x1800});
        program.addEntry("website", u"https://example.com"_s, {2, 0x1800});
        program.addEntry("shortcut", u"Tidy Up"_s, {3, 0x1800});
        program.addApp(u"/nowhere"_s, {5, 0x1800});
        program.start();
        Keyboard keyboard;
        QTRY_VERIFY(keyboard.isGrabbed(KEY_G, controlAlt));
        for (const int key : {KEY_A, KEY_S, KEY_D, KEY_F, KEY_G})
            keyboard.type({KEY_LEFTCTRL, KEY_LEFTALT, key});
        QTRY_COMPARE(app.starts().size(), 4);
        QCOMPARE(program.stop(), 0);

        QFile sockets(log);
        QVERIFY(sockets.open(QIODevice::ReadOnly));
        const QList<QByteArray> lines = sockets.readAll().split('\n');
        int localOnes = 0;
        for (const QByteArray &line : lines) {
            if (line.contains("socket(") || line.contains("socketpair(")) {
                QVERIFY2(line.contains("(AF_UNIX,"), line.constData());
                ++localOnes;
            }
        }
        // The X server and the session bus at the least.
        QVERIFY(localOnes >= 2);
        QVERIFY2(lines.join().contains("/run/systemd/journal/stdout"), "the companion did not run");
    }
};

QTEST_GUILESS_MAIN(PrivacyTest)
#include "PrivacyTest.moc"
