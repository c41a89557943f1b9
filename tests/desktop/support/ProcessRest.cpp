#include "support/ProcessRest.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// The number behind each of these words in a file of /proc, summed up.
qint64 sumOf(const QString &path, const QList<QByteArray> &words)
{
    QFile file(path);
    // It may have gone with its thread.
    if (!file.open(QIODevice::ReadOnly))
        return 0;
    qint64 sum = 0;
    for (const QByteArray &line : file.readAll().split('\n')) {
        const auto parts = line.simplified().split(' ');
        if (parts.size() > 1 && words.contains(parts[0]))
            sum += parts[1].toLongLong();
    }
    return sum;
}

QString procFile(pid_t process, const QString &name)
{
    return u"/proc/%1/%2"_s.arg(process).arg(name);
}

qint64 contextSwitches(pid_t process)
{
    const QDir tasks(procFile(process, u"task"_s));
    qint64 sum = 0;
    for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        sum += sumOf(tasks.filePath(task + u"/status"_s),
                     {"voluntary_ctxt_switches:", "nonvoluntary_ctxt_switches:"});
    return sum;
}
} // namespace

void awaitRest(pid_t process)
{
    // Once is enough, and is asked for more than once.
    bool isAtRest = false;
    QTRY_VERIFY(isAtRest || (isAtRest = isAtRestFor(process, 400)));
}

bool isAtRestFor(pid_t process, int milliseconds)
{
    const qint64 before = contextSwitches(process);
    QTest::qWait(milliseconds);
    return contextSwitches(process) == before;
}

qint64 ownKilobytes(pid_t process)
{
    return sumOf(procFile(process, u"smaps_rollup"_s), {"Private_Dirty:"});
}
