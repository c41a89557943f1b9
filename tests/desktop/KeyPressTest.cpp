// Real keys on a real X server: from the press to the started application.

#include "support/Keyboard.h"
#include "support/PrivateBus.h"
#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"

#include <QFile>
#include <QHash>
#include <QKeyEvent>
#include <QProcess>
#include <QRasterWindow>
#include <QTest>
#include <csignal>
#include <functional>

using namespace Qt::StringLiterals;

namespace
{
// Control, Option and the keys labelled K, J and L, as stored, as evdev codes, and as X modifier
// bits.
constexpr StoredKeys controlOptionK{40, 0x1800};
constexpr StoredKeys controlOptionJ{38, 0x1800};
constexpr StoredKeys controlOptionL{37, 0x1800};
const QList<int> controlAltK{KEY_LEFTCTRL, KEY_LEFTALT, KEY_K};
const QList<int> controlAltJ{KEY_LEFTCTRL, KEY_LEFTALT, KEY_J};
const QList<int> controlAltL{KEY_LEFTCTRL, KEY_LEFTALT, KEY_L};
constexpr quint16 controlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;

/// A window of another program, which has the focus and counts the keys that reach it.
class FocusedWindow : public QRasterWindow
{
public:
    FocusedWindow()
    {
        resize(300, 200);
        show();
        requestActivate();
    }

    /// How often a key of Qt::Key was pressed; repeats of a held key count as well.
    QHash<int, int> presses;

protected:
    void keyPressEvent(QKeyEvent *event) override { ++presses[event->key()]; }
};

/// The program with one application on Control+Option+K, ready to be pressed.
struct Desk {
    explicit Desk(StoredKeys keys = controlOptionK,
                  const QByteArray &arguments = R"(--new "two words" 100%% %U)")
        : app(arguments)
    {
        program.addApp(app.desktopFile(), keys);
        program.start();
    }

    Keyboard keyboard;
    RecordedApp app;
    ProgramUnderTest program;
};

QByteArray text(const nlohmann::json &value)
{
    return QByteArray::fromStdString(value.dump());
}

/// Runs a tool of the X server.
void run(const QString &command)
{
    QCOMPARE(QProcess::execute(u"sh"_s, {u"-c"_s, command}), 0);
}

bool isKeyboardChanged = false;

/// Makes the server's keyboard another one until the end of the test.
void changeKeyboard(const QString &command)
{
    isKeyboardChanged = true;
    run(command);
}

/// Gives two keys of the server, known by their names, each other's code.
void swapCodes(const QString &name, int code, const QString &otherName, int otherCode)
{
    changeKeyboard(u"xkbcomp -w0 $DISPLAY - | sed 's/<%1> = %2;/<%1> = %4;/; t; "
                   "s/<%3> = %4;/<%3> = %2;/' | xkbcomp -w0 - $DISPLAY"_s.arg(name)
                       .arg(code)
                       .arg(otherName)
                       .arg(otherCode));
}

/// Longer than it takes a held key to repeat.
constexpr int longHold = 1000;

/// The program with an application on each of Control+Option+K, J and L, and a window of another
/// program that has the focus.
struct Typing {
    explicit Typing(const QByteArray &argumentsOfK)
        : onK(argumentsOfK)
    {
        program.addApp(onK.desktopFile(), controlOptionK);
        program.addApp(onJ.desktopFile(), controlOptionJ);
        program.addApp(onL.desktopFile(), controlOptionL);
    }

    Keyboard keyboard;
    FocusedWindow window;
    RecordedApp onK;
    RecordedApp onJ;
    RecordedApp onL;
    ProgramUnderTest program;

    /// Lets that many ms of the rhythm pass.
    void wait(int duration) { QTest::qWait(duration); }

    void hold(const QList<int> &keys, int duration)
    {
        keyboard.press(keys);
        wait(duration);
        keyboard.release(keys);
    }

    /// Presses the combinations one after the other, again and again, 10 ms apart.
    void alternate(const QList<QList<int>> &combinations, int times)
    {
        for (int i = 0; i < times; ++i) {
            for (const QList<int> &keys : combinations) {
                hold(keys, 5);
                wait(5);
            }
        }
    }

    /// Has J run once. A key that is down before the program has taken its keys does not count.
    void awaitStart()
    {
        keyboard.type(controlAltJ);
        QTRY_COMPARE(onJ.starts().size(), 1);
    }

    /// What K's application keeps the keyboard for, if it was told to.
    QFile reasonToGrab{program.home.filePath(u"reason"_s)};

    void awaitGrabByApplication()
    {
        QTRY_COMPARE(onK.starts().size(), 1);
        QCOMPARE(text(onK.starts().constFirst()["keyboardGrab"]), QByteArray("0"));
    }

    void endGrabByApplication()
    {
        QVERIFY(reasonToGrab.remove());
        QTRY_COMPARE(program.children(), QList<pid_t>());
    }

    /// Presses K once and awaits the end of its application, which may take the keyboard.
    void typeToTheEnd()
    {
        const auto runs = onK.starts().size();
        keyboard.type(controlAltK);
        QTRY_COMPARE(onK.starts().size(), runs + 1);
        QTRY_COMPARE(program.children(), QList<pid_t>());
    }
};

/// What is done to the keys, and what comes of it.
struct Rhythm {
    /// Begins as soon as K is grabbed. All keys are up in the end.
    std::function<void(Typing &)> keys;
    int runsOfK = 0;
    int runsOfJ = 0;
    /// Before the program starts.
    std::function<void(Typing &)> before = [](Typing &) {};
    QByteArray argumentsOfK = {};
    quint16 locks = 0;
    /// What is pressed before the start or without the modifiers is not ours.
    bool reachesTheWindow = false;
};

const QByteArray untilItsReasonIsGone = "--grab-keyboard --until-gone reason";

void giveReasonToGrab(Typing &typing)
{
    QVERIFY(typing.reasonToGrab.open(QIODevice::WriteOnly));
}

using AddRow = std::function<void(const QByteArray &, const Rhythm &)>;

/// The delay before the first repeat, in ms, and the repeats in a second.
struct RepeatRate {
    int delay;
    int repeats;

    void set() const { changeKeyboard(u"xset r rate %1 %2"_s.arg(delay).arg(repeats)); }
    QByteArray inWords() const
    {
        return " with " + QByteArray::number(repeats) + " repeats a second after "
            + QByteArray::number(delay) + " ms";
    }
    /// Long enough for several repeats.
    int longHold() const { return delay + 300; }
};
constexpr RepeatRate repeatRates[] = {{660, 25}, {250, 33}, {200, 100}};

void addPressesAndHolds(const AddRow &add)
{
    add("pressed once",
        {.keys = [](Typing &typing) { typing.keyboard.type(controlAltK); }, .runsOfK = 1});
    add("held for two seconds",
        {.keys = [](Typing &typing) { typing.hold(controlAltK, 2000); }, .runsOfK = 1});
    for (const auto &[hold, pause] :
         {std::pair(5, 660), {longHold, 30}, {longHold, 660}, {longHold, 5000}}) {
        add("held for " + QByteArray::number(hold) + " ms and pressed again "
                + QByteArray::number(pause) + " ms later",
            {.keys =
                 [hold = hold, pause = pause](Typing &typing) {
                     typing.hold(controlAltK, hold);
                     typing.wait(pause);
                     typing.keyboard.type(controlAltK);
                 },
             .runsOfK = 2});
    }
    add("held for long twice, with a moment in between",
        {.keys =
             [](Typing &typing) {
                 typing.hold(controlAltK, longHold);
                 typing.wait(30);
                 typing.hold(controlAltK, longHold);
             },
         .runsOfK = 2});
    add("pressed 500 times, 10 ms apart",
        {.keys = [](Typing &typing) { typing.alternate({controlAltK}, 500); }, .runsOfK = 500});
    add("let go and pressed again while the program cannot run",
        {.keys =
             [](Typing &typing) {
                 typing.keyboard.press(controlAltK);
                 QTRY_COMPARE(typing.onK.starts().size(), 1);
                 QCOMPARE(kill(typing.program.processId(), SIGSTOP), 0);
                 typing.keyboard.release(controlAltK);
                 // As long as it would take a held key to repeat.
                 typing.wait(longHold);
                 typing.keyboard.press(controlAltK);
                 QCOMPARE(kill(typing.program.processId(), SIGCONT), 0);
                 typing.wait(longHold);
                 typing.keyboard.release(controlAltK);
             },
         .runsOfK = 2});
    add("two combinations that are pressed in turn",
        {.keys =
             [](Typing &typing) {
                 typing.alternate({controlAltK, controlAltJ}, 100);
             },
         .runsOfK = 100,
         .runsOfJ = 100});
    add("a second combination while the key of the first is held",
        {.keys =
             [](Typing &typing) {
                 typing.keyboard.press(controlAltK);
                 typing.wait(longHold);
                 typing.keyboard.type({KEY_J});
                 typing.keyboard.release(controlAltK);
             },
         .runsOfK = 1,
         .runsOfJ = 1});
}

void addOrdersOfRelease(const AddRow &add)
{
    add("the modifiers are let go first",
        {.keys =
             [](Typing &typing) {
                 typing.keyboard.press(controlAltK);
                 typing.keyboard.release({KEY_LEFTCTRL, KEY_LEFTALT});
                 typing.wait(longHold);
                 typing.keyboard.release({KEY_K});
             },
         .runsOfK = 1,
         .reachesTheWindow = true});
    add("the modifiers are let go and come back while the key is held",
        {.keys =
             [](Typing &typing) {
                 typing.keyboard.press(controlAltK);
                 typing.wait(longHold);
                 typing.keyboard.release({KEY_LEFTCTRL, KEY_LEFTALT});
                 typing.wait(longHold);
                 typing.keyboard.press({KEY_LEFTCTRL, KEY_LEFTALT});
                 typing.wait(longHold);
                 typing.keyboard.release(controlAltK);
             },
         .runsOfK = 1,
         .reachesTheWindow = true});
    for (const int duration : {5, longHold}) {
        add("the key is let go after " + QByteArray::number(duration)
                + " ms and pressed again while the modifiers are held",
            {.keys =
                 [duration](Typing &typing) {
                     typing.keyboard.press({KEY_LEFTCTRL, KEY_LEFTALT});
                     typing.hold({KEY_K}, duration);
                     typing.wait(30);
                     typing.hold({KEY_K}, duration);
                     typing.keyboard.release({KEY_LEFTCTRL, KEY_LEFTALT});
                 },
             .runsOfK = 2});
    }
}

void addEarlierPresses(const AddRow &add)
{
    add("held since before the start of the program, and pressed again",
        {.keys =
             [](Typing &typing) {
                 typing.wait(longHold);
                 typing.keyboard.release(controlAltK);
                 typing.wait(30);
                 typing.keyboard.type(controlAltK);
             },
         .runsOfK = 1,
         .before = [](Typing &typing) { typing.keyboard.press(controlAltK); },
         .reachesTheWindow = true});
    add("pressed while the program starts and takes 400 further combinations",
        {.keys =
             [](Typing &typing) {
                 for (int i = 0; i < 20; ++i) {
                     typing.hold(controlAltK, 10);
                     typing.wait(10);
                 }
             },
         .runsOfK = 20,
         .before =
             [](Typing &typing) {
                 // Each mix of modifiers with keys whose codes are above K's, which is
                 // grabbed early therefore.
                 for (const int key : {6,  7,  8,  9,  11, 45, 46, 43, 47, 44, 41, 39, 42, 65,
                                       67, 69, 78, 82, 83, 84, 85, 86, 87, 88, 89, 91, 92}) {
                     for (int modifiers = 0x100; modifiers <= 0x1f00; modifiers += 0x100) {
                         if (!(modifiers & 0x400))
                             typing.program.addApp(typing.onL.desktopFile(), {key, modifiers});
                     }
                 }
             }});
}

void addHoldsThatBeganUnseen(const AddRow &add)
{
    const auto holdModifiers = [](Typing &typing, int duration) {
        typing.keyboard.press({KEY_LEFTCTRL, KEY_LEFTALT});
        typing.wait(duration);
        typing.keyboard.release(controlAltK);
    };
    for (const RepeatRate rate : repeatRates) {
        for (const int lead : {30, rate.longHold()}) {
            add("the key goes down " + QByteArray::number(lead) + " ms before the modifiers"
                    + rate.inWords(),
                {.keys =
                     [=](Typing &typing) {
                         typing.awaitStart();
                         typing.keyboard.press({KEY_K});
                         typing.wait(lead);
                         holdModifiers(typing, rate.longHold());
                     },
                 .runsOfK = 1,
                 .runsOfJ = 1,
                 .before = [rate](Typing &) { rate.set(); },
                 .reachesTheWindow = true});
        }
        add("the second modifier goes down after the key" + rate.inWords(),
            {.keys =
                 [rate](Typing &typing) {
                     typing.awaitStart();
                     typing.keyboard.press({KEY_LEFTCTRL, KEY_K});
                     typing.wait(rate.longHold());
                     typing.keyboard.press({KEY_LEFTALT});
                     typing.wait(rate.longHold());
                     typing.keyboard.release(controlAltK);
                 },
             .runsOfK = 1,
             .runsOfJ = 1,
             .before = [rate](Typing &) { rate.set(); },
             .reachesTheWindow = true});
        add("held while another program has the keyboard and gives it back" + rate.inWords(),
            {.keys =
                 [rate](Typing &typing) {
                     typing.awaitStart();
                     Keyboard locker;
                     QVERIFY(locker.grabAll());
                     typing.keyboard.press(controlAltK);
                     typing.wait(rate.longHold());
                     locker.ungrabAll();
                     typing.wait(rate.longHold());
                     typing.keyboard.release(controlAltK);
                 },
             .runsOfK = 1,
             .runsOfJ = 1,
             .before = [rate](Typing &) { rate.set(); }});
    }
    add("the modifiers are pressed twice while the key is held",
        {.keys =
             [=](Typing &typing) {
                 typing.awaitStart();
                 typing.keyboard.press({KEY_K});
                 typing.wait(longHold);
                 typing.keyboard.press({KEY_LEFTCTRL, KEY_LEFTALT});
                 typing.wait(30);
                 typing.keyboard.release({KEY_LEFTCTRL, KEY_LEFTALT});
                 typing.wait(200);
                 holdModifiers(typing, longHold);
             },
         .runsOfK = 1,
         .runsOfJ = 1,
         .reachesTheWindow = true});
    add("held since before the modifiers, and pressed again",
        {.keys =
             [=](Typing &typing) {
                 typing.awaitStart();
                 typing.keyboard.press({KEY_K});
                 typing.wait(longHold);
                 holdModifiers(typing, longHold);
                 typing.wait(30);
                 typing.keyboard.type(controlAltK);
             },
         .runsOfK = 2,
         .runsOfJ = 1,
         .reachesTheWindow = true});
}

void addQuickPresses(const AddRow &add)
{
    constexpr int presses = 20;
    for (const RepeatRate rate : repeatRates) {
        for (const int pause : {30, 50, 80}) {
            add("pressed 20 times, " + QByteArray::number(pause) + " ms apart" + rate.inWords(),
                {.keys =
                     [pause](Typing &typing) {
                         for (int i = 0; i < presses; ++i) {
                             typing.hold(controlAltK, pause / 2);
                             typing.wait(pause - pause / 2);
                         }
                     },
                 .runsOfK = presses,
                 .before = [rate](Typing &) { rate.set(); }});
        }
    }
}

void addGrabsByTheApplication(const AddRow &add)
{
    add("the application takes the keyboard until after the keys' release",
        {.keys =
             [](Typing &typing) {
                 typing.keyboard.press(controlAltK);
                 typing.awaitGrabByApplication();
                 typing.keyboard.release(controlAltK);
                 typing.endGrabByApplication();
                 typing.typeToTheEnd();
             },
         .runsOfK = 2,
         .before = giveReasonToGrab,
         .argumentsOfK = untilItsReasonIsGone});
    add("the application takes the keyboard and gives it back while the keys are held",
        {.keys =
             [](Typing &typing) {
                 typing.keyboard.press(controlAltK);
                 typing.awaitGrabByApplication();
                 typing.wait(longHold);
                 typing.endGrabByApplication();
                 typing.wait(longHold);
                 typing.keyboard.release(controlAltK);
                 typing.wait(30);
                 typing.typeToTheEnd();
             },
         .runsOfK = 2,
         .before = giveReasonToGrab,
         .argumentsOfK = untilItsReasonIsGone});
    add("pressed for the application that has taken the keyboard",
        {.keys =
             [](Typing &typing) {
                 typing.hold(controlAltK, longHold);
                 typing.awaitGrabByApplication();
                 typing.keyboard.type(controlAltK);
                 typing.endGrabByApplication();
             },
         .runsOfK = 1,
         .before = giveReasonToGrab,
         .argumentsOfK = untilItsReasonIsGone});
}

void addLocks(const AddRow &add)
{
    constexpr std::pair<const char *, quint16> allLocks[] = {
        {"Caps Lock", XCB_MOD_MASK_LOCK},
        {"Num Lock", XCB_MOD_MASK_2},
        // By itself it has no modifier.
        {"Scroll Lock", XCB_MOD_MASK_3},
    };
    for (int mix = 0; mix < 8; ++mix) {
        QByteArrayList names;
        quint16 locks = 0;
        for (int i = 0; i < 3; ++i) {
            if (mix & (1 << i)) {
                names << allLocks[i].first;
                locks |= allLocks[i].second;
            }
        }
        add("pressed with " + (names.isEmpty() ? "no lock" : names.join(" and ")),
            {.keys = [](Typing &typing) { typing.keyboard.type(controlAltK); },
             .runsOfK = 1,
             .before = [](Typing &) { changeKeyboard(u"xmodmap -e 'add mod3 = Scroll_Lock'"_s); },
             .locks = locks});
    }
}

void addOtherKeyboards(const AddRow &add)
{
    add("pressed ever after the layout was switched",
        {.keys =
             [](Typing &typing) {
                 changeKeyboard(u"setxkbmap fr"_s);
                 typing.alternate({controlAltK}, 30);
             },
         .runsOfK = 30});
    add("pressed in each group of the layout",
        {.keys =
             [](Typing &typing) {
                 for (const bool isSecond : {true, false}) {
                     typing.keyboard.setGroup(isSecond ? 1 : 0);
                     typing.hold(controlAltK, longHold);
                 }
             },
         .runsOfK = 2,
         .before = [](Typing &) { changeKeyboard(u"setxkbmap us,de"_s); }});
    add("pressed where a new keyboard has the key, and where the old one had it",
        {.keys =
             [](Typing &typing) {
                 swapCodes(u"AC08"_s, 45, u"AB07"_s, 58);
                 QTRY_VERIFY(typing.keyboard.isGrabbed(KEY_M, controlAlt));
                 QTRY_VERIFY(!typing.keyboard.isGrabbed(KEY_K, controlAlt));
                 typing.keyboard.type({KEY_LEFTCTRL, KEY_LEFTALT, KEY_M});
                 typing.keyboard.type(controlAltK);
             },
         .runsOfK = 1});
}
} // namespace
Q_DECLARE_METATYPE(Rhythm)

class KeyPressTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        Keyboard keyboard;
        keyboard.setLocks(0);
        keyboard.setGroup(0);
        if (std::exchange(isKeyboardChanged, false))
            run(u"setxkbmap us && xset r rate 660 25"_s);
    }

    void givesTheApplicationAStartOfItsOwn()
    {
        Desk desk;
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_K, controlAlt));
        desk.keyboard.type(controlAltK);
        QTRY_COMPARE(desk.app.starts().size(), 1);

        const nlohmann::json start = desk.app.starts().constFirst();
        QCOMPARE(text(start["arguments"]), QByteArray(R"(["--new","two words","100%"])"));
        QCOMPARE(text(start["folder"]), '"' + desk.program.home.path().toUtf8() + '"');
        QCOMPARE(text(start["input"]), QByteArray(R"("/dev/null")"));
        QCOMPARE(text(start["descriptors"]), QByteArray("[0,1,2]"));
        QCOMPARE(text(start["leadsItsSession"]), QByteArray("true"));
        QCOMPARE(text(start["hasDefaultSignals"]), QByteArray("true"));
    }

    void leavesNoZombie()
    {
        Desk desk;
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_K, controlAlt));
        desk.keyboard.type(controlAltK);
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QTRY_COMPARE(desk.program.children(), QList<pid_t>());
    }

    void leavesTheKeyboardToTheApplicationWhileTheKeysAreDown()
    {
        Desk desk(controlOptionK, "--grab-keyboard");
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_K, controlAlt));
        desk.keyboard.press(controlAltK);
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QVERIFY(desk.keyboard.isDown(KEY_K));
        desk.keyboard.release(controlAltK);
        QCOMPARE(text(desk.app.starts().constFirst()["keyboardGrab"]), QByteArray("0"));
    }

    void followsNumLockWhereverItIs()
    {
        changeKeyboard(u"xmodmap -e 'remove mod2 = Num_Lock' -e 'add mod3 = Num_Lock'"_s);
        Desk desk;
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_K, controlAlt | XCB_MOD_MASK_3));
        QVERIFY(!desk.keyboard.isGrabbed(KEY_K, controlAlt | XCB_MOD_MASK_2));
    }

    void runsOncePerPress_data()
    {
        QTest::addColumn<Rhythm>("rhythm");
        const auto add = [](const QByteArray &row, const Rhythm &rhythm) {
            QTest::newRow(row.constData()) << rhythm;
        };
        addPressesAndHolds(add);
        addOrdersOfRelease(add);
        addEarlierPresses(add);
        addHoldsThatBeganUnseen(add);
        addQuickPresses(add);
        addGrabsByTheApplication(add);
        addLocks(add);
        addOtherKeyboards(add);
    }
    void runsOncePerPress()
    {
        QFETCH(const Rhythm, rhythm);
        Typing typing(rhythm.argumentsOfK);
        QVERIFY(QTest::qWaitForWindowActive(&typing.window));
        rhythm.before(typing);
        typing.keyboard.setLocks(rhythm.locks);
        typing.program.start();
        const quint16 modifiers = controlAlt | rhythm.locks;
        QVERIFY(QTest::qWaitFor([&] { return typing.keyboard.isGrabbed(KEY_K, modifiers); }));

        rhythm.keys(typing);
        if (QTest::currentTestFailed())
            return;
        // When L's application runs, all presses before it have been dealt with.
        QTRY_VERIFY(typing.keyboard.isGrabbed(KEY_L, modifiers));
        typing.keyboard.type(controlAltL);
        QTRY_COMPARE(typing.onL.starts().size(), 1);
        QCOMPARE(typing.program.stop(), 0);
        QCOMPARE(typing.onK.starts().size(), rhythm.runsOfK);
        QCOMPARE(typing.onJ.starts().size(), rhythm.runsOfJ);

        // When F9 has come to the window, so has everything before it.
        typing.keyboard.type({KEY_F9});
        QTRY_COMPARE(typing.window.presses[Qt::Key_F9], 1);
        QVERIFY(rhythm.reachesTheWindow || typing.window.presses[Qt::Key_K] == 0);
    }

    void findsKeysByTheirPlaceNotTheirLetter()
    {
        changeKeyboard(u"setxkbmap fr"_s);
        // The key labelled A on a US layout, which types Q here.
        Desk desk({0, 0x1800});
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_A, controlAlt));
        desk.keyboard.type({KEY_LEFTCTRL, KEY_LEFTALT, KEY_A});
        QTRY_COMPARE(desk.app.starts().size(), 1);
    }

    void findsKeysByTheirNameNotTheirCode()
    {
        swapCodes(u"AC07"_s, 44, u"AC08"_s, 45);
        Desk desk;
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_J, controlAlt));
        desk.keyboard.type(controlAltJ);
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QVERIFY(!desk.keyboard.isGrabbed(KEY_K, controlAlt));
    }

    void leavesKeysToTheProgramThatHasThem()
    {
        Desk first;
        QTRY_VERIFY(first.keyboard.isGrabbed(KEY_K, controlAlt));

        // On a bus of its own, since there is one instance on each.
        const PrivateBus otherBus;
        RecordedApp other;
        ProgramUnderTest second;
        second.environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, otherBus.address());
        second.addApp(first.app.desktopFile(), controlOptionK);
        second.addApp(other.desktopFile(), controlOptionJ);
        second.start();
        QTRY_VERIFY(first.keyboard.isGrabbed(KEY_J, controlAlt));

        first.keyboard.type(controlAltK);
        first.keyboard.type(controlAltJ);
        QTRY_COMPARE(other.starts().size(), 1);
        QCOMPARE(second.stop(), 0);
        QCOMPARE(first.app.starts().size(), 1);
        QCOMPARE(second.errorOutput(), QByteArray());
    }

    void holdsNoLockVariantOfKeysThatItWasRefused()
    {
        // Another program holds the keys with Num Lock only.
        Keyboard other;
        other.grab(KEY_K, controlAlt | XCB_MOD_MASK_2);

        RecordedApp witness;
        ProgramUnderTest program;
        program.addApp(witness.desktopFile(), controlOptionK);
        program.addApp(witness.desktopFile(), controlOptionJ);
        program.start();
        const Keyboard keyboard;
        QTRY_VERIFY(keyboard.isGrabbed(KEY_J, controlAlt));
        QTRY_VERIFY(!keyboard.isGrabbed(KEY_K, controlAlt));
        QVERIFY(keyboard.isGrabbed(KEY_K, controlAlt | XCB_MOD_MASK_2));
    }

    void letsGoOfItsKeysWhenItEnds()
    {
        Desk desk;
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_K, controlAlt));
        QCOMPARE(desk.program.stop(), 0);
        QTRY_VERIFY(!desk.keyboard.isGrabbed(KEY_K, controlAlt));
    }

    void followsAModifierThatMoves()
    {
        Desk desk({40, 0x100});
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_K, XCB_MOD_MASK_4));
        changeKeyboard(
            u"xmodmap -e 'remove mod4 = Super_L Super_R Hyper_L' -e 'add mod3 = Super_L'"_s);
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_K, XCB_MOD_MASK_3));
        QTRY_VERIFY(!desk.keyboard.isGrabbed(KEY_K, XCB_MOD_MASK_4));
        desk.keyboard.type({KEY_LEFTMETA, KEY_K});
        QTRY_COMPARE(desk.app.starts().size(), 1);
    }
};

QTEST_MAIN(KeyPressTest)
#include "KeyPressTest.moc"
