// Real keys on a real X server: from the press to the started application.

#include "support/PrivateBus.h"
#include "support/Rhythm.h"

#include <QTest>
#include <csignal>

using namespace Qt::StringLiterals;

namespace
{
/// The program with one application on Control+Option+K, ready to be pressed.
struct Desk {
    explicit Desk(StoredKeys keys = storedControlAltK,
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

/// That of a server to which nobody has told another.
constexpr RepeatRate serverRate{660, 25};

/// Gives two keys of the server, known by their names, each other's code.
void swapCodes(const QString &name, int code, const QString &otherName, int otherCode)
{
    changeKeyboard(u"xkbcomp -w0 $DISPLAY - | sed 's/<%1> = %2;/<%1> = %4;/; t; "
                   "s/<%3> = %4;/<%3> = %2;/' | xkbcomp -w0 - $DISPLAY"_s.arg(name)
                       .arg(code)
                       .arg(otherName)
                       .arg(otherCode));
}

void addPressesAndHolds(const AddRow &add)
{
    add("pressed once",
        {.keys = [](Typing &typing) { typing.keyboard.type(controlAltK); }, .runsOfK = 1});
    add("held for two seconds",
        {.keys = [](Typing &typing) { typing.hold(controlAltK, 2000); },
         .runsOfK = 1,
         .before = [](Typing &) { serverRate.set(); }});
    for (const auto &[hold, pause] :
         {std::pair(5, usualRate.delay), {longHold, 30}, {longHold, usualRate.delay}}) {
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

class KeyPressTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { usualRate.set(); }
    void cleanup() { restoreKeyboard(); }

    void givesTheApplicationAStartOfItsOwn()
    {
        Desk desk;
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_K, controlAlt));
        desk.keyboard.type(controlAltK);
        QTRY_COMPARE(desk.app.starts().size(), 1);

        const QJsonObject start = desk.app.starts().constFirst();
        QCOMPARE(text(start[u"arguments"]), QByteArray(R"(["--new","two words","100%"])"));
        QCOMPARE(text(start[u"folder"]), '"' + desk.program.home.path().toUtf8() + '"');
        QCOMPARE(text(start[u"input"]), QByteArray(R"("/dev/null")"));
        QCOMPARE(text(start[u"descriptors"]), QByteArray("[0,1,2]"));
        QCOMPARE(text(start[u"leadsItsSession"]), QByteArray("true"));
        QCOMPARE(text(start[u"hasDefaultSignals"]), QByteArray("true"));
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
        lateRepeats.set();
        Desk desk(storedControlAltK, "--grab-keyboard");
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_K, controlAlt));
        desk.keyboard.press(controlAltK);
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QVERIFY(desk.keyboard.isDown(KEY_K));
        desk.keyboard.release(controlAltK);
        QCOMPARE(text(desk.app.starts().constFirst()[u"keyboardGrab"]), QByteArray("0"));
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
        const AddRow add = addRhythms();
        addPressesAndHolds(add);
        addOrdersOfRelease(add);
        addEarlierPresses(add);
        addLocks(add);
        addOtherKeyboards(add);
    }
    void runsOncePerPress()
    {
        QFETCH(const Rhythm, rhythm);
        verifyRuns(rhythm);
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
        second.addApp(first.app.desktopFile(), storedControlAltK);
        second.addApp(other.desktopFile(), storedControlAltJ);
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
        program.addApp(witness.desktopFile(), storedControlAltK);
        program.addApp(witness.desktopFile(), storedControlAltJ);
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
