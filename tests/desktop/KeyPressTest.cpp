// Real keys on a real X server: from the press to the started application.

#include "support/Keyboard.h"
#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"

#include <QKeyEvent>
#include <QProcess>
#include <QRasterWindow>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
// Control, Option and the key labelled K, as stored, as evdev codes, and as X modifier bits.
constexpr StoredKeys controlOptionK{40, 0x1800};
const QList<int> controlAltK{KEY_LEFTCTRL, KEY_LEFTALT, KEY_K};
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

    int pressesOfK = 0;

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->key() == Qt::Key_K)
            ++pressesOfK;
    }
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

/// Back to the keyboard that a test has changed.
void restoreKeyboard()
{
    run(u"setxkbmap us && xset r rate 660 25"_s);
}
} // namespace

class KeyPressTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        Keyboard keyboard;
        keyboard.setCapsLock(false);
        keyboard.setNumLock(false);
    }

    void startsTheApplicationWhateverLockIsOn_data()
    {
        QTest::addColumn<bool>("capsLock");
        QTest::addColumn<bool>("numLock");
        QTest::newRow("no lock") << false << false;
        QTest::newRow("Caps Lock") << true << false;
        QTest::newRow("Num Lock") << false << true;
        QTest::newRow("both locks") << true << true;
    }
    void startsTheApplicationWhateverLockIsOn()
    {
        QFETCH(const bool, capsLock);
        QFETCH(const bool, numLock);
        FocusedWindow window;
        QVERIFY(QTest::qWaitForWindowActive(&window));
        Desk desk;
        desk.keyboard.setCapsLock(capsLock);
        desk.keyboard.setNumLock(numLock);
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_K, controlAlt));

        desk.keyboard.type(controlAltK);
        QTRY_COMPARE(desk.app.starts().size(), 1);

        QVERIFY(window.isActive());
        QCOMPARE(desk.program.stop(), 0);
        QCOMPARE(desk.app.starts().size(), 1);
        QCOMPARE(window.pressesOfK, 0);
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

    void saysWhatItCouldNotStart()
    {
        ProgramUnderTest program;
        program.addApp(u"/nowhere/app.desktop"_s, controlOptionK);
        program.start();
        Keyboard keyboard;
        QTRY_VERIFY(keyboard.isGrabbed(KEY_K, controlAlt));
        keyboard.type(controlAltK);
        QTRY_COMPARE(program.errorOutput(),
                     QByteArray("corvane: The app for “App” was not found. It may have been moved "
                                "or deleted.\n"));
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

    void startsNothingForKeysThatWereDownBeforeIt()
    {
        Keyboard keyboard;
        keyboard.press(controlAltK);
        QTRY_VERIFY(keyboard.isDown(KEY_K));
        Desk desk;
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_K, controlAlt));
        // Long enough for the key to repeat.
        QTest::qWait(1000);
        desk.keyboard.release(controlAltK);
        QTest::qWait(60);
        desk.keyboard.type(controlAltK);
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QCOMPARE(desk.program.stop(), 0);
        QCOMPARE(desk.app.starts().size(), 1);
    }

    void followsTheRepeatDelay()
    {
        const auto restored = qScopeGuard(restoreKeyboard);
        Desk desk;
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_K, controlAlt));
        run(u"xset r rate 200 30"_s);
        // What the program has read of the keyboard is settled when it holds other grabs for it.
        run(u"xmodmap -e 'remove mod2 = Num_Lock' -e 'add mod3 = Num_Lock'"_s);
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_K, controlAlt | XCB_MOD_MASK_3));

        desk.keyboard.press(controlAltK);
        QTest::qWait(1000);
        desk.keyboard.release(controlAltK);
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QCOMPARE(desk.program.stop(), 0);
        QCOMPARE(desk.app.starts().size(), 1);
    }

    void followsNumLockWhereverItIs()
    {
        const auto restored = qScopeGuard(restoreKeyboard);
        run(u"xmodmap -e 'remove mod2 = Num_Lock' -e 'add mod3 = Num_Lock'"_s);
        Desk desk;
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_K, controlAlt | XCB_MOD_MASK_3));
        QVERIFY(!desk.keyboard.isGrabbed(KEY_K, controlAlt | XCB_MOD_MASK_2));
    }

    void runsOncePerPress_data()
    {
        QTest::addColumn<int>("heldFor");
        QTest::addColumn<int>("presses");
        QTest::newRow("a short press") << 0 << 1;
        QTest::newRow("held for two seconds") << 2000 << 1;
        QTest::newRow("held for two seconds, twice") << 2000 << 2;
        QTest::newRow("pressed ten times, 50 ms each") << 50 << 10;
    }
    void runsOncePerPress()
    {
        QFETCH(const int, heldFor);
        QFETCH(const int, presses);
        FocusedWindow window;
        QVERIFY(QTest::qWaitForWindowActive(&window));
        Desk desk;
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_K, controlAlt));

        for (int i = 0; i < presses; ++i) {
            desk.keyboard.press(controlAltK);
            // The time of the hold is the row's subject.
            QTest::qWait(heldFor);
            desk.keyboard.release(controlAltK);
            QTRY_VERIFY(!desk.keyboard.isDown(KEY_LEFTCTRL));
            QTest::qWait(60);
        }

        QTRY_COMPARE(desk.app.starts().size(), presses);
        QCOMPARE(desk.program.stop(), 0);
        QCOMPARE(desk.app.starts().size(), presses);
        QCOMPARE(window.pressesOfK, 0);
    }

    void findsKeysByTheirPlaceNotTheirLetter()
    {
        const auto restored = qScopeGuard(restoreKeyboard);
        run(u"setxkbmap fr"_s);
        // The key labelled A on a US layout, which types Q here.
        Desk desk({0, 0x1800});
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_A, controlAlt));
        desk.keyboard.type({KEY_LEFTCTRL, KEY_LEFTALT, KEY_A});
        QTRY_COMPARE(desk.app.starts().size(), 1);
    }

    void findsKeysByTheirNameNotTheirCode()
    {
        const auto restored = qScopeGuard(restoreKeyboard);
        // A server that gives the keys J and K each other's code.
        run(u"xkbcomp -w0 $DISPLAY - | sed 's/<AC07> = 44;/<AC07> = 45;/; t; "
            "s/<AC08> = 45;/<AC08> = 44;/' | xkbcomp -w0 - $DISPLAY"_s);
        Desk desk;
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_J, controlAlt));
        desk.keyboard.type({KEY_LEFTCTRL, KEY_LEFTALT, KEY_J});
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QVERIFY(!desk.keyboard.isGrabbed(KEY_K, controlAlt));
    }

    void leavesKeysToTheProgramThatHasThem()
    {
        Desk first;
        QTRY_VERIFY(first.keyboard.isGrabbed(KEY_K, controlAlt));

        RecordedApp other;
        ProgramUnderTest second;
        second.addApp(first.app.desktopFile(), controlOptionK);
        second.addApp(other.desktopFile(), {38, 0x1800});
        second.start();
        QTRY_VERIFY(first.keyboard.isGrabbed(KEY_J, controlAlt));

        first.keyboard.type(controlAltK);
        first.keyboard.type({KEY_LEFTCTRL, KEY_LEFTALT, KEY_J});
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
        program.addApp(witness.desktopFile(), {38, 0x1800});
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
        const auto restored = qScopeGuard(restoreKeyboard);
        run(u"xmodmap -e 'remove mod4 = Super_L Super_R Hyper_L' -e 'add mod3 = Super_L'"_s);
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_K, XCB_MOD_MASK_3));
        QTRY_VERIFY(!desk.keyboard.isGrabbed(KEY_K, XCB_MOD_MASK_4));
        desk.keyboard.type({KEY_LEFTMETA, KEY_K});
        QTRY_COMPARE(desk.app.starts().size(), 1);
    }
};

QTEST_MAIN(KeyPressTest)
#include "KeyPressTest.moc"
