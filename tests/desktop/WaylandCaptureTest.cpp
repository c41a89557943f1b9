// Real keys that are recorded in a window of a Wayland session, on KWin and on sway. Both act on
// some keys themselves.

#include "fakes/KeyEventText.h"
#include "platform/EventFlag.h"
#include "platform/linux/recording/LinuxEventMonitor.h"
#include "support/Accessible.h"
#include "support/DesktopBinding.h"
#include "support/ProgramOnTheBus.h"
#include "support/ProgramUnderTest.h"
#include "support/WaylandKeyboard.h"

#include <QCloseEvent>
#include <QDialog>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>
#include <csignal>

using namespace Qt::StringLiterals;

namespace
{
constexpr quint16 keyJ = 38;
constexpr quint16 keyF7 = 98;
constexpr quint16 keyF8 = 100;
constexpr quint16 keyF9 = 101;
const KeyEvent controlAltJ{keyJ, controlEventFlag | optionEventFlag};
/// On these the desktop acts, by a DesktopBinding.
const QList<int> boundKeys{KEY_LEFTCTRL, KEY_LEFTALT, KEY_J};

/// Longer than it takes a held key to repeat several times.
constexpr int longHold = 1300;

class Window : public QDialog
{
public:
    explicit Window(const QString &title)
    {
        setWindowTitle(title);
        auto *const layout = new QVBoxLayout(this);
        layout->addWidget(field);
        resize(300, 200);
        activate();
        field->setFocus();
    }

    void activate()
    {
        show();
        QTRY_VERIFY(isActiveWindow());
    }

    QLineEdit *const field = new QLineEdit;
    int closings = 0;

protected:
    void closeEvent(QCloseEvent *event) override
    {
        ++closings;
        event->ignore();
    }
};

/// A window with the focus, what is heard of its keys, and a desktop that acts on some.
struct Desk {
    WaylandKeyboard keyboard;
    LinuxEventMonitor monitor{SessionType::wayland, nullptr, nullptr};
    DesktopBinding binding;
    std::unique_ptr<Window> window = std::make_unique<Window>(u"Recording"_s);
    QList<KeyEvent> heard;
    std::optional<Registration> registration;

    void start()
    {
        registration = monitor.addLocalMonitorForEvents(
            *window->field, [this](const KeyEvent &event) { heard << event; });
        awaitTheCompositor();
    }

    /// Ends with the press of the bound keys, as a recording does with a combination.
    void startForOnePress()
    {
        registration =
            monitor.addLocalMonitorForEvents(*window->field, [this](const KeyEvent &event) {
                if (event.keyCode == keyJ)
                    registration.reset();
                heard << event;
            });
        awaitTheCompositor();
    }

    /// Awaits that the compositor has received what a new capture asks of it: its interfaces, and
    /// then the inhibitor. Each key follows on what the compositor has sent before. They differ,
    /// because a release and a press of one key at the same time are a repeat. The first may be
    /// pressed before the compositor has given the window the focus.
    void awaitTheCompositor()
    {
        const auto isHeard = [this] { return heard.contains(KeyEvent{keyF7, 0}); };
        bool isThere = false;
        for (int i = 0; i < 10 && !isThere; ++i) {
            keyboard.type({KEY_F7});
            isThere = QTest::qWaitFor(isHeard, 1000);
        }
        QVERIFY(isThere);
        keyboard.type({KEY_F8});
        QTRY_VERIFY(heard.contains(KeyEvent{keyF8, 0}));
        keyboard.type({KEY_F9});
        QTRY_VERIFY(heard.contains(KeyEvent{keyF9, 0}));
        heard.clear();
    }

    /// Awaits that the compositor has received that a capture has ended. Claims that the window in
    /// front has nothing in its field before.
    void awaitTheEnd(const Window &front)
    {
        keyboard.type({KEY_1});
        QTRY_COMPARE(front.field->text(), u"1"_s);
        keyboard.type({KEY_2});
        QTRY_COMPARE(front.field->text(), u"12"_s);
    }

    /// Claims that the desktop has not acted on its keys yet, and does now.
    void claimFirstAct()
    {
        keyboard.type(boundKeys);
        QTRY_VERIFY(binding.acts() > 0);
        // What was to come before has come.
        QCOMPARE(binding.acts(), 1);
    }
};

/// Presses the button of that name once it shows.
void press(const Accessible &all, const QString &name)
{
    const Accessible button = all.await(u"push button"_s, name);
    QVERIFY(QTest::qWaitFor([&] { return button.press(); }));
}

/// Starts the program with an entry, and begins to record other keys for it.
Accessible startEditing(ProgramUnderTest &program)
{
    program.isAccessible = true;
    program.addApp(u"/bin/true"_s, {40, 0x1800});
    program.start();
    askForSettings();
    Accessible all = Accessible::program(program.processId());
    press(all, u"Edit"_s);
    press(all, u"Ctrl+Alt+K"_s);
    return all;
}

/// Awaits that the program records, and has heard a key that it does not take.
void awaitRecording(const Accessible &all, WaylandKeyboard &keyboard)
{
    const Accessible hint = all.await(u"label"_s, u"Esc cancels"_s);
    keyboard.type({KEY_F7});
    QTRY_VERIFY(hint.name() != u"Esc cancels"_s);
}
} // namespace

class WaylandCaptureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hearsTheDesktopsOwnKeys_data()
    {
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<KeyEvent>("event");
        QTest::newRow("Alt+F4") << QList<int>{KEY_LEFTALT, KEY_F4}
                                << KeyEvent{118, optionEventFlag};
        QTest::newRow("Meta+D") << QList<int>{KEY_LEFTMETA, KEY_D} << KeyEvent{2, commandEventFlag};
        QTest::newRow("Alt+Tab") << QList<int>{KEY_LEFTALT, KEY_TAB}
                                 << KeyEvent{48, optionEventFlag};
        QTest::newRow("Meta+W") << QList<int>{KEY_LEFTMETA, KEY_W}
                                << KeyEvent{13, commandEventFlag};
        QTest::newRow("Print") << QList<int>{KEY_SYSRQ} << KeyEvent{105, 0};
        QTest::newRow("bound keys") << boundKeys << controlAltJ;
    }
    void hearsTheDesktopsOwnKeys()
    {
        QFETCH(const QList<int>, keys);
        QFETCH(const KeyEvent, event);
        Desk desk;
        desk.start();
        desk.keyboard.type(keys);
        QTRY_COMPARE(desk.heard, QList<KeyEvent>({event}));
        desk.awaitTheCompositor();
        QVERIFY(desk.window->isActiveWindow());
        QCOMPARE(desk.window->closings, 0);
        QCOMPARE(desk.binding.acts(), 0);
    }

    void givesTheDesktopItsKeysBack()
    {
        Desk desk;
        desk.start();
        desk.registration.reset();
        desk.awaitTheEnd(*desk.window);
        desk.claimFirstAct();
        QCOMPARE(desk.heard, QList<KeyEvent>());
    }

    void letsNothingActThatIsHeldOn_data()
    {
        QTest::addColumn<QList<int>>("upFirst");
        QTest::newRow("the key up first") << QList<int>{KEY_J, KEY_LEFTALT, KEY_LEFTCTRL};
        QTest::newRow("the modifiers up first") << QList<int>{KEY_LEFTCTRL, KEY_LEFTALT, KEY_J};
    }
    void letsNothingActThatIsHeldOn()
    {
        QFETCH(const QList<int>, upFirst);
        Desk desk;
        desk.startForOnePress();
        desk.keyboard.press(boundKeys);
        QTRY_COMPARE(desk.heard, QList<KeyEvent>({controlAltJ}));
        QTest::qWait(longHold);
        for (const int key : upFirst)
            desk.keyboard.release({key});
        desk.awaitTheEnd(*desk.window);
        desk.claimFirstAct();
    }

    void letsNothingActThatIsPressedAgainWhileTheModifiersAreHeldOn()
    {
        Desk desk;
        desk.startForOnePress();
        desk.keyboard.press(boundKeys);
        QTRY_COMPARE(desk.heard, QList<KeyEvent>({controlAltJ}));
        desk.keyboard.release({KEY_J});
        desk.keyboard.type({KEY_J});
        desk.keyboard.release({KEY_LEFTALT, KEY_LEFTCTRL});
        desk.awaitTheEnd(*desk.window);
        desk.claimFirstAct();
    }

    void recordsOnceMoreWhileTheKeysOfTheLastAreHeld()
    {
        Desk desk;
        desk.startForOnePress();
        desk.keyboard.press(boundKeys);
        QTRY_COMPARE(desk.heard, QList<KeyEvent>({controlAltJ}));
        desk.heard.clear();
        desk.registration = desk.monitor.addLocalMonitorForEvents(
            *desk.window->field, [&desk](const KeyEvent &event) { desk.heard << event; });
        desk.keyboard.release(boundKeys);
        desk.keyboard.type(boundKeys);
        QTRY_COMPARE(desk.heard, QList<KeyEvent>({controlAltJ}));
        QCOMPARE(desk.binding.acts(), 0);
        desk.registration.reset();
        desk.awaitTheEnd(*desk.window);
        desk.claimFirstAct();
    }

    void leavesTheKeysOfOtherWindowsToTheDesktop()
    {
        Desk desk;
        desk.start();
        Window other(u"Other"_s);
        desk.awaitTheEnd(other);
        desk.claimFirstAct();
        QCOMPARE(desk.heard, QList<KeyEvent>());
    }

    void hearsThemAgainWhenTheWindowIsActiveAgain()
    {
        Desk desk;
        desk.start();
        auto other = std::make_unique<Window>(u"Other"_s);
        other.reset();
        QTRY_VERIFY(desk.window->isActiveWindow());
        desk.awaitTheCompositor();
        desk.keyboard.type(boundKeys);
        QTRY_COMPARE(desk.heard, QList<KeyEvent>({controlAltJ}));
        QCOMPARE(desk.binding.acts(), 0);
    }

    void hearsThemWhenTheWindowWasHiddenAndShown()
    {
        Desk desk;
        desk.start();
        for (int i = 0; i < 2; ++i) {
            desk.window->hide();
            QTRY_VERIFY(!desk.window->isActiveWindow());
            desk.window->activate();
        }
        desk.awaitTheCompositor();
        desk.keyboard.type(boundKeys);
        QTRY_COMPARE(desk.heard, QList<KeyEvent>({controlAltJ}));
        QCOMPARE(desk.binding.acts(), 0);
    }

    void givesTheKeysBackWhenTheWindowGoes_data()
    {
        QTest::addColumn<bool>("isHeld");
        QTest::newRow("while it records") << false;
        QTest::newRow("while the keys are held on") << true;
    }
    void givesTheKeysBackWhenTheWindowGoes()
    {
        QFETCH(const bool, isHeld);
        Desk desk;
        desk.startForOnePress();
        if (isHeld) {
            desk.keyboard.press({KEY_LEFTCTRL, KEY_J});
            QTRY_VERIFY(!desk.registration);
        }
        desk.window.reset();
        desk.keyboard.release({KEY_LEFTCTRL, KEY_J});
        desk.window = std::make_unique<Window>(u"Next"_s);
        desk.awaitTheEnd(*desk.window);
        desk.claimFirstAct();
    }

    void recordsWithoutTheDesktopsKeysAsAnX11Program()
    {
        if (!qEnvironmentVariableIsSet("DISPLAY"))
            QSKIP("This desktop has no X server.");
        WaylandKeyboard keyboard;
        DesktopBinding binding;
        ProgramUnderTest program;
        program.environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
        const Accessible all = startEditing(program);
        awaitRecording(all, keyboard);
        keyboard.type(boundKeys);
        QTRY_COMPARE(binding.acts(), 1);
        keyboard.type({KEY_LEFTCTRL, KEY_LEFTALT, KEY_L});
        QVERIFY(all.await(u"push button"_s, u"Ctrl+Alt+L"_s).isThere());
    }

    void givesTheKeysBackWhenTheProgramIsKilledWhileRecording()
    {
        WaylandKeyboard keyboard;
        DesktopBinding binding;
        ProgramUnderTest program;
        const Accessible all = startEditing(program);
        awaitRecording(all, keyboard);
        keyboard.type({KEY_LEFTALT, KEY_F4});
        press(all, u"Alt+F4"_s);
        awaitRecording(all, keyboard);
        kill(program.processId(), SIGKILL);
        QCOMPARE(program.exitStatus(), -1);
        keyboard.type(boundKeys);
        QTRY_COMPARE(binding.acts(), 1);
    }
};

QTEST_MAIN(WaylandCaptureTest)
#include "WaylandCaptureTest.moc"
