#include "platform/linux/hotkeys/AutoRepeatFilter.h"

#include <QTest>
#include <variant>

namespace
{
constexpr XKeycode k{45};
constexpr XKeycode j{44};

// What can happen to a key, in the words of the server. Each "down" has a number.
struct Down {
    int number;
    KeyDown down = KeyDown::pressOrRepeat;
    XKeycode key = k;
};
Down press(int number)
{
    return {number, KeyDown::press};
}
Down repeat(int number)
{
    return {number, KeyDown::repeat};
}
struct Release {
    XKeycode key = k;
};
struct SeenDown {
    QList<XKeycode> keys;
};
struct GrabbedWhileDown {
    XKeycode key = k;
};
using Event = std::variant<Down, Release, SeenDown, GrabbedWhileDown>;

AutoRepeatFilter::KeyMap keyMap(const QList<XKeycode> &keys)
{
    AutoRepeatFilter::KeyMap map{};
    for (const auto key : keys) {
        const auto bit = quint8(key);
        map[bit / 8] = quint8(map[bit / 8] | (1 << (bit % 8)));
    }
    return map;
}

/// Plays the events and tells the numbers of the fresh ones.
struct Player {
    AutoRepeatFilter filter;
    QList<int> fresh;

    void operator()(const Down &down)
    {
        if (filter.isFresh(down.key, down.down))
            fresh << down.number;
    }
    void operator()(const Release &release) { filter.released(release.key); }
    void operator()(const SeenDown &seen) { filter.releaseAllUp(keyMap(seen.keys)); }
    void operator()(const GrabbedWhileDown &grab)
    {
        filter.markIfDown(grab.key, keyMap({grab.key}));
    }
};
} // namespace

class AutoRepeatFilterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsPressesNotRepeats_data()
    {
        QTest::addColumn<QList<Event>>("events");
        QTest::addColumn<QList<int>>("fresh");
        const auto add = [](const char *row, const QList<Event> &events, const QList<int> &fresh) {
            QTest::newRow(row) << events << fresh;
        };
        add("one press", {Down{1}}, {1});
        add("a held key", {Down{1}, SeenDown{{k}}, repeat(2), repeat(3)}, {1});
        add("presses between which the key was not seen up", {Down{1}, press(2), press(3)},
            {1, 2, 3});
        add("a press and its repeats, after one that was not seen up",
            {Down{1}, press(2), repeat(3), repeat(4)}, {1, 2});
        add("a hold that began unseen", {repeat(1), repeat(2), SeenDown{{k}}, repeat(3)}, {1});
        add("a hold that began unseen after a press that was seen up",
            {press(1), SeenDown{{}}, repeat(2), repeat(3)}, {1, 2});
        add("a hold that began unseen after a press that was released",
            {press(1), Release{}, repeat(2), repeat(3)}, {1, 2});
        add("a hold of which the server does not tell the repeats",
            {Down{1}, Down{2}, SeenDown{{k}}, Down{3}}, {1});
        add("such a press after the key was seen up", {Down{1}, SeenDown{{}}, Down{2}}, {1, 2});
        add("such a press after a release", {Down{1}, Down{2}, Release{}, Down{3}}, {1, 3});
        add("a press during the hold of another key",
            {press(1), SeenDown{{k}}, Down{2, KeyDown::press, j}, Down{3, KeyDown::repeat, j}},
            {1, 2});
        add("the release of another key during a hold", {Down{1}, Release{j}, Down{2}}, {1});
        add("a key that was down before its grab", {GrabbedWhileDown{}, Down{1}, repeat(2)}, {});
        add("a key that was down before its grab, pressed again",
            {GrabbedWhileDown{}, repeat(1), press(2)}, {2});
        add("a key that was down before its grab and then seen up",
            {GrabbedWhileDown{}, Down{1}, SeenDown{{}}, Down{2}}, {2});
        add("a key that is down again before its next grab",
            {Down{1}, SeenDown{{}}, GrabbedWhileDown{}, Down{2}, repeat(3)}, {1});
    }
    void countsPressesNotRepeats()
    {
        QFETCH(const QList<Event>, events);
        Player player;
        for (const Event &event : events)
            std::visit(player, event);
        QTEST(player.fresh, "fresh");
    }

    void marksNoKeyThatIsUp()
    {
        AutoRepeatFilter filter;
        QVERIFY(!filter.markIfDown(k, keyMap({j})));
        QVERIFY(!filter.hasHeldKeys());
        QVERIFY(filter.markIfDown(k, keyMap({k})));
        QVERIFY(filter.hasHeldKeys());
    }

    void knowsWhetherKeysAreHeld()
    {
        AutoRepeatFilter filter;
        QVERIFY(filter.isFresh(k, KeyDown::press));
        QVERIFY(filter.isHeld(k));
        QVERIFY(!filter.isHeld(j));
        filter.releaseAllUp(keyMap({j}));
        QVERIFY(!filter.hasHeldKeys());
    }
};

QTEST_APPLESS_MAIN(AutoRepeatFilterTest)
#include "AutoRepeatFilterTest.moc"
