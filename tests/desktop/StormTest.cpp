// Many presses, and many programs that run at the same time.

#include "support/Keyboard.h"
#include "support/ProgramOnTheBus.h"
#include "support/ProgramUnderTest.h"
#include "support/Windows.h"

#include <QCoreApplication>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr StoredKeys controlOptionK{40, 0x1800};
const QList<int> controlAltK{KEY_LEFTCTRL, KEY_LEFTALT, KEY_K};
constexpr quint16 controlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;

/// Counts the started programs that have written to it.
class Pipe
{
public:
    explicit Pipe(const QString &path)
    {
        const QByteArray file = QFile::encodeName(path);
        if (mkfifo(file.constData(), 0600) != 0
            || (m_descriptor = open(file.constData(), O_RDWR | O_NONBLOCK | O_CLOEXEC)) < 0)
            qFatal("cannot make %s", file.constData());
    }
    ~Pipe() { close(m_descriptor); }
    Q_DISABLE_COPY_MOVE(Pipe)

    int starts()
    {
        char bytes[4096];
        for (ssize_t size = 0; (size = read(m_descriptor, bytes, sizeof bytes)) > 0;)
            m_starts += int(size);
        return m_starts;
    }

private:
    int m_descriptor = -1;
    int m_starts = 0;
};

/// Starts a program that may have no more open files than that.
QStringList withDescriptors(int count)
{
    return {u"prlimit"_s, u"--nofile=%1"_s.arg(count)};
}

/// The program with a small application on Control+Option+K.
struct Desk {
    /// The application ends at once if it has a pipe to write to, or else never.
    explicit Desk(const QString &pipe = {}, const QByteArray &furtherLines = {})
    {
        const QString reporter = QCoreApplication::applicationDirPath() + u"/report-start"_s;
        const QString app =
            write(u"app.desktop"_s,
                  "[Desktop Entry]\nType=Application\nName=App\nExec=\"" + reporter.toUtf8() + "\" "
                      + pipe.toUtf8() + '\n' + furtherLines);
        program.addApp(app, controlOptionK);
    }

    /// Writes a program into the home folder; the text is its path.
    QString write(const QString &name, const QByteArray &content) const
    {
        QFile file(program.home.filePath(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()
            || !file.setPermissions(file.permissions() | QFile::ExeOwner))
            qFatal("cannot write %s", qPrintable(file.fileName()));
        return file.fileName();
    }

    void start()
    {
        program.start();
        QTRY_VERIFY(keyboard.isGrabbed(KEY_K, controlAlt));
    }

    /// As fast as the X server takes them.
    void press(int times)
    {
        keyboard.press({KEY_LEFTCTRL, KEY_LEFTALT});
        for (int i = 0; i < times; ++i)
            keyboard.type({KEY_K});
        keyboard.release({KEY_LEFTCTRL, KEY_LEFTALT});
    }

    Keyboard keyboard;
    ProgramUnderTest program;
};
} // namespace

class StormTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runsEveryPress()
    {
        constexpr int presses = 3000;
        const QTemporaryDir folder;
        Pipe pipe(folder.filePath(u"pipe"_s));
        Desk desk(folder.filePath(u"pipe"_s));
        desk.program.starter = withDescriptors(1024);
        desk.start();
        desk.press(presses);
        QTRY_COMPARE_WITH_TIMEOUT(pipe.starts(), presses, 60000);
        QTRY_COMPARE(desk.program.children(), QList<pid_t>());
    }

    void needsNoDescriptorForARunningProgram()
    {
        constexpr int presses = 100;
        Desk desk;
        desk.program.starter = withDescriptors(64);
        desk.start();
        desk.press(presses);
        QTRY_COMPARE(desk.program.children().size(), presses);
        askForSettings();
        QTRY_COMPARE(activeTitle(), u"Corvane"_s);
        for (const pid_t child : desk.program.children())
            kill(child, SIGTERM);
        QTRY_COMPARE(desk.program.children(), QList<pid_t>());
    }

    void leavesNoZombieAfterAProgramInATerminal()
    {
        const QTemporaryDir folder;
        Pipe pipe(folder.filePath(u"pipe"_s));
        Desk desk(folder.filePath(u"pipe"_s), "Terminal=true\n");
        desk.write(u"xterm"_s, "#!/bin/sh\nshift\nexec \"$@\"\n");
        desk.program.environment.insert(
            u"PATH"_s, desk.program.home.path() + u':' + qEnvironmentVariable("PATH"));
        desk.start();
        desk.press(2);
        QTRY_COMPARE(pipe.starts(), 2);
        QTRY_COMPARE(desk.program.children(), QList<pid_t>());
    }

    void leavesNoZombieBehindThatOfSomebodyElse()
    {
        const QTemporaryDir folder;
        Pipe pipe(folder.filePath(u"pipe"_s));
        Desk desk(folder.filePath(u"pipe"_s));
        // The program starts with a child that it knows nothing of.
        desk.program.starter = {u"sh"_s, u"-c"_s, u"true & exec \"$0\""_s};
        desk.start();
        const QList<pid_t> before = desk.program.children();
        QCOMPARE(before.size(), 1);
        desk.press(2);
        QTRY_COMPARE(pipe.starts(), 2);
        QTRY_COMPARE(desk.program.children(), before);
    }
};

QTEST_GUILESS_MAIN(StormTest)
#include "StormTest.moc"
