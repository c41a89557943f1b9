#include "platform/linux/x11/PressFilter.h"

#include <QTest>
#include <variant>

using namespace std::chrono_literals;

namespace
{
constexpr PressFilter::Key k = 45;
constexpr PressFilter::Key j = 44;

// What can happen to a key, in the words of the server.
struct Press {
    quint32 time;
    PressFilter::Key key = k;
};
struct Release {
    PressFilter::Key key = k;
};
struct SeenDown {
    QList<PressFilter::Key> keys;
    int times = 1;
};
struct GrabbedWhileDown {
    PressFilter::Key key = k;
};
using Event = std::variant<Press, Release, SeenDown, GrabbedWhileDown>;

PressFilter::KeyMap keyMap(const QList<PressFilter::Key> &keys)
{
    PressFilter::KeyMap map{};
    for (const auto key : keys)
        map[key / 8] = quint8(map[key / 8] | (1 << (key % 8)));
    return map;
}

/// Plays the events and tells the presses that were fresh.
struct Player {
    PressFilter filter;
    QList<quint32> fresh;

    void operator()(const Press &press)
    {
        if (filter.isFresh(press.key, press.time))
            fresh << press.time;
    }
    void operator()(const Release &release) { filter.released(release.key); }
    void operator()(const SeenDown &seen)
    {
        for (int i = 0; i < seen.times; ++i)
            filter.releaseAllUp(keyMap(seen.keys));
    }
    void operator()(const GrabbedWhileDown &grab)
    {
        filter.markIfDown(grab.key, keyMap({grab.key}));
    }
};
} // namespace

class PressFilterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsPressesNotRepeats_data()
    {
        QTest::addColumn<QList<Event>>("events");
        QTest::addColumn<QList<quint32>>("fresh");
        const auto add = [](const char *row, const QList<Event> &events,
                            const QList<quint32> &fresh) { QTest::newRow(row) << events << fresh; };
        add("one press is fresh", {Press{1000}}, {1000});
        add("the repeats of a held key are not",
            {Press{1000}, SeenDown{{k}}, Press{1660}, Press{1700}, Press{1740}}, {1000});
        add("a repeat whose time was rounded down is not",
            {Press{1000}, SeenDown{{}}, Press{1100}, SeenDown{{k}}, Press{1759}}, {1000, 1100});
        add("a press sooner than any repeat is fresh", {Press{1000}, Press{1010}, Press{1020}},
            {1000, 1010, 1020});
        add("a press after the key was seen up is fresh", {Press{1000}, SeenDown{{}}, Press{1660}},
            {1000, 1660});
        add("a press after a release is fresh", {Press{1000}, Press{1660}, Release{}, Press{1690}},
            {1000, 1690});
        add("the first repeat of a hold that began unseen counts, further ones do not",
            {Press{1000}, SeenDown{{k}}, Press{1040}, SeenDown{{k}}, Press{1080}, Press{1120}},
            {1000});
        add("so it is where no key map was taken in between",
            {Press{1000}, Press{1040}, Press{1080}}, {1000});
        add("so it is for a hold that began while another program had the keyboard",
            {Press{1000}, SeenDown{{}}, Press{5000}, Press{5040}, Press{5080}}, {1000, 5000});
        add("so it is after short presses without a key map in between",
            {Press{1000}, Press{1010}, Press{2000}, Press{2040}, Press{2080}}, {1000, 1010});
        add("a press sooner than the delay after a certain press is fresh",
            {Press{1000}, SeenDown{{}}, Press{1100}, SeenDown{{k}}, Press{1300}},
            {1000, 1100, 1300});
        add("a press at a time at which no repeat is due is fresh",
            {Press{1000}, SeenDown{{k}}, Press{1100}}, {1000, 1100});
        add("a press at the time of the second repeat of an unseen hold is lost",
            {Press{1000}, SeenDown{{k}}, Press{1045}}, {1000});
        add("a press after that one is fresh",
            {Press{1000}, SeenDown{{k}}, Press{1045}, Release{}, Press{1200}, Press{1300}},
            {1000, 1200, 1300});
        add("a later repeat of an unseen hold that was watched does not count",
            {Press{1000}, SeenDown{{k}, 40}, Press{1240}}, {1000});
        add("further repeats do not count, however soon they come",
            {Press{1000}, Press{1660}, Press{1690}, Press{1700}}, {1000});
        add("a press during the hold of another key is fresh",
            {Press{1000, k}, SeenDown{{k}}, Press{2000, j}}, {1000, 2000});
        add("the release of another key changes nothing",
            {Press{1000, k}, Release{j}, Press{1660, k}}, {1000});
        add("a key that was down before its grab does not fire",
            {GrabbedWhileDown{}, Press{1000}, Press{1040}}, {});
        add("a key that was down before its grab fires when pressed again",
            {GrabbedWhileDown{}, Press{1000}, SeenDown{{}}, Press{1100}}, {1100});
        add("a grab that is made while a known press lasts keeps its time",
            {Press{1000}, GrabbedWhileDown{}, Press{1010}}, {1000, 1010});
        add("a key that is down again before its next grab does not fire",
            {Press{1000}, SeenDown{{}}, GrabbedWhileDown{}, Press{1100}, Press{1140}}, {1000});
        add("the server's clock may wrap", {Press{4294967290}, Press{5}}, {4294967290, 5});
        add("the server's clock may wrap during a hold",
            {Press{4294967290}, SeenDown{{k}}, Press{700}}, {4294967290});
    }
    void countsPressesNotRepeats()
    {
        QFETCH(const QList<Event>, events);
        Player player;
        player.filter.setAutoRepeat({.delay = 660ms, .interval = 40ms});
        for (const Event &event : events)
            std::visit(player, event);
        QTEST(player.fresh, "fresh");
    }

    void followsTheRepeatDelay()
    {
        PressFilter filter;
        filter.setAutoRepeat({.delay = 200ms, .interval = 40ms});
        QVERIFY(filter.isFresh(k, 1000));
        filter.releaseAllUp(keyMap({}));
        QVERIFY(filter.isFresh(k, 1100));
        QVERIFY(!filter.isFresh(k, 1300));
    }

    void followsTheRepeatInterval()
    {
        PressFilter filter;
        filter.setAutoRepeat({.delay = 200ms, .interval = 10ms});
        QVERIFY(filter.isFresh(k, 1000));
        QVERIFY(filter.isFresh(k, 1007));
        QVERIFY(!filter.isFresh(k, 1017));
    }

    void marksNoKeyThatIsUp()
    {
        PressFilter filter;
        filter.markIfDown(k, keyMap({j}));
        QVERIFY(!filter.hasHeldKeys());
    }

    void knowsWhetherKeysAreHeld()
    {
        PressFilter filter;
        QVERIFY(filter.isFresh(k, 1000));
        QVERIFY(filter.isHeld(k));
        QVERIFY(!filter.isHeld(j));
        filter.releaseAllUp(keyMap({j}));
        QVERIFY(!filter.hasHeldKeys());
    }
};

QTEST_APPLESS_MAIN(PressFilterTest)
#include "PressFilterTest.moc"
