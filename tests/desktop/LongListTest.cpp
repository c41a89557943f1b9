// The settings window with lists of any length: it opens as quickly, is as usable, and leaves the
// machine alone once it is closed.

#include "support/Mouse.h"
#include "support/ProgramOnTheBus.h"
#include "support/SettingsDesk.h"
#include "support/Windows.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <algorithm>
#include <array>
#include <ctime>

using namespace Qt::StringLiterals;
using State = Accessible::State;

namespace
{
const QString title = u"Corvane"_s;

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

/// As many entries as that, with Control+Option+K for the first and Control+Option+J for the last;
/// of the others, those of a thousand share no keys.
struct Desk : SettingsDesk {
    explicit Desk(int count)
    {
        constexpr std::array modifiers{0x1900, 0x1a00, 0x1100, 0x1200, 0x0900, 0x0a00,
                                       0x1b00, 0x1300, 0x0b00, 0x0300, 0x1000, 0x0800};
        constexpr int keys = 100;
        m_first = addApp(storedControlAltK);
        for (int index = 0; index < count - 2; ++index)
            program.addEntry("website", u"https://example.com/%1"_s.arg(index),
                             {index % keys, modifiers[size_t(index / keys) % modifiers.size()]});
        addApp(storedControlAltJ);
    }

    void start()
    {
        program.start();
        // Obeyed only when the start is over; keys are held long before.
        askToFire(m_first);
        QTRY_COMPARE(app.starts().size(), 1);
        awaitRest();
    }

    void openWindow()
    {
        askForSettings();
        awaitInFront(title);
    }
    static void awaitInFront(const QString &window) { QTRY_COMPARE(activeTitle(), window); }

    void awaitRest() const
    {
        // Once is enough, and is asked for more than once.
        bool isAtRest = false;
        QTRY_VERIFY(isAtRest || (isAtRest = isAtRestFor(400)));
    }
    bool isAtRestFor(int milliseconds) const
    {
        const qint64 before = contextSwitches();
        QTest::qWait(milliseconds);
        return contextSwitches() == before;
    }

    qint64 contextSwitches() const
    {
        const QDir tasks(procFile(u"task"_s));
        qint64 sum = 0;
        for (const QString &task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
            sum += sumOf(tasks.filePath(task + u"/status"_s),
                         {"voluntary_ctxt_switches:", "nonvoluntary_ctxt_switches:"});
        return sum;
    }

    /// Memory that nobody else uses and that is not in a file.
    qint64 ownKilobytes() const { return sumOf(procFile(u"smaps_rollup"_s), {"Private_Dirty:"}); }

    /// Of all processors, since its start.
    double cpuMilliseconds() const
    {
        clockid_t clock = 0;
        timespec time = {};
        if (clock_getcpuclockid(program.processId(), &clock) != 0
            || clock_gettime(clock, &time) != 0)
            qFatal("the program's time cannot be read");
        return 1e3 * double(time.tv_sec) + 1e-6 * double(time.tv_nsec);
    }

    Mouse mouse;

private:
    QString procFile(const QString &name) const
    {
        return u"/proc/%1/%2"_s.arg(program.processId()).arg(name);
    }

    QString m_first;
};

/// How much work the first opening of the window is.
double workOfOpening(int count)
{
    Desk desk(count);
    // Those who look at its parts would have it work for them.
    desk.program.isAccessible = false;
    desk.start();
    const double before = desk.cpuMilliseconds();
    desk.openWindow();
    desk.awaitRest();
    return desk.cpuMilliseconds() - before;
}
} // namespace

class LongListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensAThousandEntriesNearlyAsQuicklyAsTen()
    {
        double few = workOfOpening(10);
        double many = workOfOpening(1000);
        // A busy machine makes work longer, but never shorter.
        for (int times = 1; times < 16 && many > 1.5 * few; ++times) {
            few = std::min(few, workOfOpening(10));
            many = std::min(many, workOfOpening(1000));
        }
        qInfo("10 entries took %.1f ms, 1000 took %.1f ms", few, many);
        QVERIFY(many <= 1.5 * few);
    }

    void usesTheLastOfTenThousand()
    {
        Desk desk(10000);
        desk.start();
        desk.show();
        QVERIFY(desk.shows(Role::label, u"⌃⌥K"_s));
        const QRect bar = desk.all.find(u"scroll bar"_s, {}).geometry();
        QVERIFY(bar.isValid());
        desk.mouse.drag({bar.center().x(), bar.top() + bar.width() + 4}, bar.bottomRight());
        QTRY_VERIFY(desk.shows(Role::label, u"⌃⌥J"_s));
        QVERIFY(!desk.shows(Role::label, u"⌃⌥K"_s));
        desk.awaitRest();

        const Accessible row = desk.all.findAll(Role::row).constLast();
        desk.mouse.click(row.find(Role::checkBox, u"Enabled"_s).geometry().center());
        desk.awaitFree(KEY_J);
        desk.mouse.click(row.find(Role::button, u"Edit"_s).geometry().center());
        const Accessible sheet = desk.sheet(u"Edit shortcut"_s);
        QVERIFY(sheet.await(Role::button, u"⌃⌥J"_s).isThere());
    }

    void leavesTheMachineAloneOnceItIsClosed_data()
    {
        QTest::addColumn<int>("count");
        QTest::newRow("with few entries") << 10;
        QTest::newRow("with many") << 1000;
    }
    void leavesTheMachineAloneOnceItIsClosed()
    {
        QFETCH(const int, count);
        Desk desk(count);
        desk.program.isAccessible = false;
        // The desktop tells the program when a notification has gone.
        desk.program.addDefault("showRunNotification=false");
        desk.start();
        const qint64 before = desk.ownKilobytes();
        desk.openWindow();
        // By way of Add, the new entry's name and its kind.
        desk.keyboard.type({KEY_SPACE});
        Desk::awaitInFront(u"New shortcut"_s);
        desk.keyboard.type({KEY_TAB});
        desk.keyboard.type({KEY_TAB});
        desk.keyboard.type({KEY_SPACE});
        Desk::awaitInFront(u"Choose App"_s);
        desk.keyboard.type({KEY_ESC});
        Desk::awaitInFront(u"New shortcut"_s);
        desk.keyboard.type({KEY_ESC});
        Desk::awaitInFront(title);
        closeWindow(*windowOnScreen(title));
        QTRY_VERIFY(!windowOnScreen(title));
        desk.awaitRest();
        // Qt ends threads and clears its cache of images after 30 s without use.
        QVERIFY(desk.isAtRestFor(32000));
        const qint64 grown = desk.ownKilobytes() - before;
        qInfo("it has grown by %lld KB, from %lld KB", grown, before);
        QVERIFY(grown <= 8 * 1024);
    }
};

QTEST_MAIN(LongListTest)
#include "LongListTest.moc"
