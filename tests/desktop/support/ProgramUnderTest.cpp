#include "support/ProgramUnderTest.h"

#include "support/WriteFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSet>
#include <QUuid>
#include <algorithm>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
QByteArray read(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QList<pid_t> childrenOf(qint64 process)
{
    QList<pid_t> children;
    for (const QByteArray &number :
         read(u"/proc/%1/task/%1/children"_s.arg(process)).simplified().split(' ')) {
        if (!number.isEmpty())
            children << number.toInt();
    }
    return children;
}

/// Programs under test that were started and not stopped, and what else the test has started
/// before.
QSet<pid_t> ours;

/// Awaits the end of the processes that programs under test have left to us.
void awaitOrphans()
{
    for (const pid_t child : childrenOf(getpid())) {
        if (!ours.contains(child))
            waitpid(child, nullptr, 0);
    }
}
} // namespace

ProgramUnderTest::ProgramUnderTest()
    : environment(QProcessEnvironment::systemEnvironment())
    , program(qEnvironmentVariable("CORVANE_PROGRAM",
                                   QCoreApplication::applicationDirPath() + u"/corvane"_s))
{
    // What the program started becomes ours when it ends, so that its end can be awaited.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    environment.insert(u"HOME"_s, home.path());
    // No sound card, whatever this machine has.
    environment.insert(u"CANBERRA_DRIVER"_s, u"alsa"_s);
    writeFile(home.filePath(u".asoundrc"_s), "pcm.!default { type hw, card 99 }\n");
    environment.insert(u"XDG_DATA_HOME"_s, dataHome());
    environment.insert(u"XDG_CONFIG_HOME"_s, configHome());
}

ProgramUnderTest::~ProgramUnderTest()
{
    ours.remove(processId());
    m_process.kill();
    m_process.waitForFinished();
}

QString ProgramUnderTest::addEntry(const QByteArray &kind, const QString &target)
{
    const QString id = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
    m_records << R"({"id":")" + id.toUtf8() + R"(","name":"App","kind":")" + kind
            + R"(","target":")" + target.toUtf8() + R"(","isEnabled":)"
            + (entriesAreEnabled ? "true" : "false") + '}';
    return id;
}

QString ProgramUnderTest::addEntry(const QByteArray &kind, const QString &target, StoredKeys keys)
{
    const QString id = addEntry(kind, target);
    addKeys(id.toUtf8(), keys);
    return id;
}

void ProgramUnderTest::addKeys(const QByteArray &id, StoredKeys keys)
{
    addDefault("hotkey.corvane-" + id + R"(="@ByteArray({\"carbonKeyCode\":)"
               + QByteArray::number(keys.keyCode) + R"(,\"carbonModifiers\":)"
               + QByteArray::number(keys.modifiers) + "})\"");
}

void ProgramUnderTest::writeFiles() const
{
    if (!m_records.isEmpty())
        writeFile(dataHome() + u"/Corvane/entries.json"_s, "[" + m_records.join(',') + "]");
    const QByteArray welcome = isUserNew ? "" : "hasSeenWelcome=true\n";
    writeFile(configHome() + u"/Corvane/Corvane.conf"_s,
              "[General]\n" + welcome + m_defaults.join('\n') + "\n");
}

void ProgramUnderTest::start()
{
    writeFiles();
    if (isAccessible)
        environment.insert(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);
    m_process.setProcessEnvironment(environment);
    startAgain();
}

void ProgramUnderTest::startAgain()
{
    const QStringList command = starter + QStringList(program);
    m_process.start(command.constFirst(), command.sliced(1));
    if (!m_process.waitForStarted())
        qFatal("cannot start the program: %s", qPrintable(m_process.errorString()));
    for (const pid_t child : childrenOf(getpid()))
        ours.insert(child);
}

double ProgramUnderTest::cpuMilliseconds() const
{
    clockid_t clock = 0;
    timespec time = {};
    if (clock_getcpuclockid(processId(), &clock) != 0 || clock_gettime(clock, &time) != 0)
        qFatal("the program's processor time cannot be read");
    return 1e3 * double(time.tv_sec) + 1e-6 * double(time.tv_nsec);
}

QList<pid_t> ProgramUnderTest::children() const
{
    return childrenOf(m_process.processId());
}

bool ProgramUnderTest::hasThread(const QByteArray &name) const
{
    const QDir threads(u"/proc/%1/task"_s.arg(processId()));
    const QStringList numbers = threads.entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    return std::ranges::any_of(numbers, [&](const QString &number) {
        return read(threads.filePath(number + u"/comm"_s)).trimmed() == name;
    });
}

int ProgramUnderTest::end()
{
    ours.remove(processId());
    m_process.terminate();
    return exitStatus();
}

int ProgramUnderTest::stop()
{
    const int status = end();
    awaitOrphans();
    return status;
}

int ProgramUnderTest::exitStatus()
{
    const bool ended =
        m_process.state() == QProcess::NotRunning || m_process.waitForFinished(10000);
    return ended && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
}

QByteArray ProgramUnderTest::errorOutput()
{
    m_errorOutput += m_process.readAllStandardError();
    return m_errorOutput;
}
