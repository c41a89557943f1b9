#include "platform/linux/instance/RepeatFilter.h"

#include <QTest>
#include <array>

using namespace std::chrono_literals;

namespace
{
using Times = QList<int>;
const QUuid files = QUuid::createUuid();
const QUuid mail = QUuid::createUuid();
/// A hit that comes soon after another is decided after 90 ms.
constexpr KeyRepeat usual{600ms, 40ms};

/// Hears hits in the order of their times, and is woken exactly when it asks for it.
struct Player {
    RepeatFilter filter;
    KeyRepeat keyRepeat = usual;
    QHash<QUuid, Times> runs;

    void hit(const QUuid &entry, int time)
    {
        wakeUpUntil(time);
        if (filter.hit(entry, RepeatFilter::Time(time), keyRepeat) == RepeatFilter::Hit::press)
            runs[entry] << time;
    }
    void wakeUpUntil(int time)
    {
        for (auto next = filter.nextWakeUp(); next && next->count() <= time;
             next = filter.nextWakeUp()) {
            for (const QUuid &entry : filter.wakeUp(*next))
                runs[entry] << int(next->count());
        }
    }
};

Times runsOf(const Times &hits, const KeyRepeat &keyRepeat)
{
    Player player{.filter = {}, .keyRepeat = keyRepeat, .runs = {}};
    for (const int time : hits)
        player.hit(files, time);
    player.wakeUpUntil(100000);
    return player.runs.value(files);
}

/// How late each hit comes, again and again.
using Lateness = std::array<int, 6>;

/// The hits of keys that are pressed at a time and held for so many repeats.
Times held(int pressed, int repeats, const KeyRepeat &keyRepeat, const Lateness &lateness = {})
{
    Times hits{pressed};
    for (int i = 0; i < repeats; ++i) {
        const auto due = keyRepeat.delay + i * keyRepeat.interval;
        hits << pressed + int(due.count()) + lateness[size_t(i) % lateness.size()];
    }
    return hits;
}

Times evenly(int pause, int count)
{
    Times hits;
    for (int i = 0; i < count; ++i)
        hits << i * pause;
    return hits;
}
} // namespace

class RepeatFilterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runsOnceForKeysThatAreHeld_data()
    {
        QTest::addColumn<int>("delay");
        QTest::addColumn<int>("interval");
        for (const int delay : {250, 500, 660, 1000, 1500}) {
            for (const int interval : {20, 33, 40, 65, 100, 125})
                QTest::addRow("delay %d ms, interval %d ms", delay, interval) << delay << interval;
        }
    }
    void runsOnceForKeysThatAreHeld()
    {
        QFETCH(const int, delay);
        QFETCH(const int, interval);
        const KeyRepeat keyRepeat{std::chrono::milliseconds(delay),
                                  std::chrono::milliseconds(interval)};
        for (const Lateness &lateness :
             {Lateness{}, Lateness{0, 7, 3, 15, 1, 10}, Lateness{45, 30, 40, 25, 45, 30}}) {
            QCOMPARE(runsOf(held(0, 40, keyRepeat, lateness), keyRepeat), Times({0}));
            const int later = 2 * delay + 40 * interval + 300;
            QCOMPARE(runsOf(held(0, 40, keyRepeat, lateness) + held(later, 2, keyRepeat, lateness),
                            keyRepeat),
                     Times({0, later}));
        }
    }

    void tellsPressesFromRepeats_data()
    {
        QTest::addColumn<Times>("hits");
        QTest::addColumn<Times>("runs");
        const auto add = [](const char *row, const Times &hits, const Times &runs) {
            QTest::newRow(row) << hits << runs;
        };
        add("no hit", {}, {});
        add("one hit", {5000}, {5000});
        add("a clock that starts now", {0}, {0});
        add("a hit after the first repeat is due", {0, 801}, {0, 801});
        add("a lone hit within that time", {0, 800}, {0, 890});
        add("two presses 120 ms apart", {0, 120}, {0, 210});
        add("presses 120 ms apart", evenly(120, 6), {0, 210, 330, 450, 570, 690});
        add("presses a second apart", evenly(1000, 4), evenly(1000, 4));
        add("two hits at the same time", {0, 0}, {0, 90});
        add("three hits at the same time", {0, 0, 0}, {0});
        add("two hits at the same time amid repeats", {0, 600, 640, 640, 680}, {0});
        add("a hit just before the end of the gap", {0, 600, 689}, {0});
        const Times hold = held(0, 10, usual);
        QCOMPARE(hold.constLast(), 960);
        add("a press 60 ms after a hold", hold + Times({960 + 60}), {0});
        add("a press 100 ms after a hold", hold + Times({960 + 100}), {0, 960 + 190});
        add("a press long after a hold", hold + Times({960 + 801}), {0, 960 + 801});
        add("a second hold soon after the first", hold + held(960 + 200, 10, usual),
            {0, 960 + 290});
        add("repeats that pause for 300 ms", {0, 600, 640, 680, 980, 1020, 1060, 1100}, {0});
    }
    void tellsPressesFromRepeats()
    {
        QFETCH(const Times, hits);
        QFETCH(const Times, runs);
        QCOMPARE(runsOf(hits, usual), runs);
    }

    void judgesEachEntryByItself()
    {
        Player player;
        const Times hold = held(0, 20, usual);
        for (const int time : hold) {
            player.hit(files, time);
            player.hit(mail, time + 20);
        }
        player.hit(mail, 5000);
        player.hit(files, 5001);
        player.hit(mail, 5120);
        player.wakeUpUntil(100000);
        QCOMPARE(player.runs[files], Times({0, 5001}));
        QCOMPARE(player.runs[mail], Times({20, 5000, 5210}));
    }

    void countsWhatIsHeardBeforeALateWakeUp()
    {
        using Hit = RepeatFilter::Hit;
        RepeatFilter filter;
        QCOMPARE(filter.hit(files, 0ms, usual), Hit::press);
        QCOMPARE(filter.hit(files, 600ms, usual), Hit::undecided);
        QCOMPARE(filter.nextWakeUp(), 690ms);
        QCOMPARE(filter.hit(files, 750ms, usual), Hit::repeat);
        QCOMPARE(filter.wakeUp(760ms), QList<QUuid>());
        QCOMPARE(filter.nextWakeUp(), 840ms);
        QCOMPARE(filter.wakeUp(840ms), QList<QUuid>());
        QVERIFY(!filter.nextWakeUp());
    }

    void asksForNoWakeUpAtRest()
    {
        RepeatFilter filter;
        QVERIFY(!filter.nextWakeUp());
        filter.hit(files, 0ms, usual);
        QVERIFY(!filter.nextWakeUp());
        filter.hit(files, 120ms, usual);
        QCOMPARE(filter.nextWakeUp(), 210ms);
        QCOMPARE(filter.wakeUp(300ms), QList<QUuid>({files}));
        QVERIFY(!filter.nextWakeUp());
    }
};

QTEST_GUILESS_MAIN(RepeatFilterTest)
#include "RepeatFilterTest.moc"
