#include "platform/linux/base/ProcessSignals.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
/// Fills every event descriptor of this process, so that writing to one fails.
void fillEventDescriptors()
{
    int filled = 0;
    for (const QString &descriptor :
         QDir(u"/proc/self/fd"_s).entryList(QDir::Files | QDir::System)) {
        if (!QFile::symLinkTarget(u"/proc/self/fd/"_s + descriptor).endsWith(u"[eventfd]"_s))
            continue;
        const std::uint64_t most = std::numeric_limits<std::uint64_t>::max() - 1;
        filled += int(write(descriptor.toInt(), &most, sizeof most) == sizeof most);
    }
    QVERIFY(filled > 0);
}
} // namespace

class ProcessSignalsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesTheErrorOfWhatASignalInterrupts()
    {
        const ProcessSignals signals;
        fillEventDescriptors();
        errno = ENOENT;
        // Not raised: what the thread sends to itself is ignored.
        kill(getpid(), activationSignal);
        const int error = errno;
        QCOMPARE(error, ENOENT);
    }
};

QTEST_APPLESS_MAIN(ProcessSignalsTest)
#include "ProcessSignalsTest.moc"
