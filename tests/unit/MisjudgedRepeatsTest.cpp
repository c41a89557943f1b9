// What windows see of held keys whose repeats Qt takes for releases and presses.

#include "platform/linux/x11/MisjudgedRepeats.h"

#include <QKeyEvent>
#include <QTest>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace
{
constexpr XKeycode k{45};
constexpr XKeycode j{44};

/// A key event as Qt sends it to a window.
struct Sent {
    QEvent::Type type;
    quint64 time;
    /// Whether the key is down on the server when Qt handles the event.
    bool isDown = false;
    XKeycode key = k;
    bool isAutoRepeat = false;
};

Sent press(quint64 time, XKeycode key = k)
{
    return {QEvent::KeyPress, time, true, key};
}

Sent release(quint64 time)
{
    return {QEvent::KeyRelease, time};
}

/// Of a key that is down by then.
Sent lateRelease(quint64 time)
{
    return {QEvent::KeyRelease, time, true};
}

Sent autoRepeat(QEvent::Type type, quint64 time)
{
    return {type, time, true, k, true};
}

class Window : public QWindow
{
public:
    QStringList seen;

protected:
    void keyPressEvent(QKeyEvent *event) override { see(u"press"_s, *event); }
    void keyReleaseEvent(QKeyEvent *event) override { see(u"release"_s, *event); }

private:
    void see(const QString &what, const QKeyEvent &event)
    {
        seen << u"%1 %2"_s.arg(what).arg(event.timestamp());
    }
};

/// A window behind the filter, on a server with one key.
struct Desk {
    Desk() { qApp->installEventFilter(&repeats); }

    /// Whether somebody has accepted the event.
    bool send(const Sent &sent)
    {
        isDown = sent.isDown;
        QKeyEvent event(sent.type, Qt::Key_K, Qt::NoModifier, quint32(sent.key), 0, 0, {},
                        sent.isAutoRepeat);
        event.setTimestamp(sent.time);
        event.ignore();
        QCoreApplication::sendEvent(&window, &event);
        return event.isAccepted();
    }

    bool isDown = false;
    Window window;
    MisjudgedRepeats repeats{[this](XKeycode key) { return key == k && isDown; }};
};
} // namespace
Q_DECLARE_METATYPE(Sent)

class MisjudgedRepeatsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsThemFromWindows_data()
    {
        QTest::addColumn<QList<Sent>>("sent");
        QTest::addColumn<QStringList>("seen");
        const auto add = [](const char *row, const QList<Sent> &sent, const QStringList &seen) {
            QTest::newRow(row) << sent << seen;
        };
        add("a held key",
            {press(1), lateRelease(5), press(5), lateRelease(6), press(6), release(9)},
            {u"press 1"_s, u"release 9"_s});
        add("a repeat that is handled when the key is up",
            {press(1), release(5), press(5), release(9)},
            {u"press 1"_s, u"release 5"_s, u"release 9"_s});
        add("two presses, of which the second comes before the release is handled",
            {press(1), lateRelease(5), press(8), release(9)},
            {u"press 1"_s, u"release 5"_s, u"press 8"_s, u"release 9"_s});
        add("a press of another key at the time of the release",
            {press(1), release(5), press(5, j)}, {u"press 1"_s, u"release 5"_s, u"press 5"_s});
        add("a repeat that Qt recognizes",
            {press(1), autoRepeat(QEvent::KeyRelease, 5), autoRepeat(QEvent::KeyPress, 5),
             release(9)},
            {u"press 1"_s, u"release 5"_s, u"press 5"_s, u"release 9"_s});
        add("events without a time", {press(0), release(0), press(0), release(0)},
            {u"press 0"_s, u"release 0"_s, u"press 0"_s, u"release 0"_s});
    }
    void keepsThemFromWindows()
    {
        QFETCH(const QList<Sent>, sent);
        Desk desk;
        for (const Sent &event : sent)
            desk.send(event);
        QTEST(desk.window.seen, "seen");
    }

    void keepsThemFromShortcuts()
    {
        Desk desk;
        desk.send(release(5));
        QVERIFY(!desk.send({QEvent::ShortcutOverride, 6}));
        // Qt looks for no shortcut if the event is accepted.
        QVERIFY(desk.send({QEvent::ShortcutOverride, 5}));
    }

    void forgetsAWindowThatIsGone()
    {
        Desk desk;
        {
            Window gone;
            QKeyEvent event(QEvent::KeyRelease, Qt::Key_K, Qt::NoModifier, quint32(k), 0, 0);
            event.setTimestamp(5);
            desk.isDown = true;
            QCoreApplication::sendEvent(&gone, &event);
            QCOMPARE(gone.seen, QStringList());
        }
        desk.send(press(8));
        QCOMPARE(desk.window.seen, QStringList({u"press 8"_s}));
    }
};

QTEST_MAIN(MisjudgedRepeatsTest)
#include "MisjudgedRepeatsTest.moc"
