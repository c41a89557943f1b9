// Real keys that are recorded in a window, on a real X server with a window manager.

#include "fakes/KeyEventText.h"
#include "platform/EventFlag.h"
#include "platform/KeyModifier.h"
#include "platform/linux/hotkeys/X11HotkeyService.h"
#include "platform/linux/recording/LinuxEventMonitor.h"
#include "platform/linux/x11/MisjudgedRepeats.h"
#include "platform/linux/x11/X11Connection.h"
#include "support/Keyboard.h"
#include "support/Windows.h"

#include <QDialog>
#include <QLineEdit>
#include <QMenu>
#include <QProcess>
#include <QPushButton>
#include <QTest>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{
constexpr quint16 keyD = 2;
constexpr quint16 keyK = 40;
constexpr quint16 keyF9 = 101;
constexpr HotkeyId someId{0, 1};
const QList<int> controlK{KEY_LEFTCTRL, KEY_K};
const QList<int> superD{KEY_LEFTMETA, KEY_D};

/// Longer than it takes a held key to repeat several times, with the rate that the tests set.
constexpr int longHold = 300;

/// Runs a tool of the X server.
void run(const QString &command)
{
    QCOMPARE(QProcess::execute(u"sh"_s, {u"-c"_s, command}), 0);
}

/// A window with a text field and a default button. Escape closes it.
class Window : public QDialog
{
public:
    explicit Window(const QString &title)
    {
        setWindowTitle(title);
        auto *const layout = new QVBoxLayout(this);
        layout->addWidget(field);
        layout->addWidget(button);
        button->setDefault(true);
        connect(button, &QPushButton::clicked, this, [this] { ++clicks; });
        resize(300, 200);
        activate();
        field->setFocus();
    }

    void activate()
    {
        show();
        activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(this));
        QTRY_COMPARE(activeTitle(), windowTitle());
    }

    QLineEdit *const field = new QLineEdit;
    QPushButton *const button = new QPushButton;
    int clicks = 0;
};

/// The services as the program has them, an active window, and what is heard of its keys.
struct Desk {
    X11Connection connection;
    UserActivation activation;
    X11HotkeyService hotkeys{connection, activation};
    LinuxEventMonitor monitor{SessionType::x11, &hotkeys, nullptr};
    MisjudgedRepeats misjudgedRepeats{isDownOnX11};
    Keyboard keyboard;
    std::unique_ptr<Window> window = std::make_unique<Window>(u"Recording"_s);
    QList<KeyEvent> heard;
    QList<HotkeyId> fired;
    std::optional<Registration> hotkey;
    std::optional<Registration> registration;

    Desk()
    {
        qApp->installEventFilter(&misjudgedRepeats);
        hotkeys.attachToEventLoop();
        hotkeys.installHandler([this](HotkeyId id) { fired << id; });
    }

    void start()
    {
        registration = monitor.addLocalMonitorForEvents(
            *window->field, [this](const KeyEvent &event) { heard << event; });
        sync();
    }

    /// Ends with the first press, as a recording does.
    void startForOnePress()
    {
        registration =
            monitor.addLocalMonitorForEvents(*window->field, [this](const KeyEvent &event) {
                registration.reset();
                heard << event;
            });
        sync();
    }

    /// Awaits that the server has processed the application's requests, such as the grab of the
    /// keyboard. Otherwise it could process keys that are pressed later first, because they come
    /// on another connection.
    static void sync()
    {
        auto *const own = qApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
        owned(xcb_get_input_focus_reply(own, xcb_get_input_focus(own), nullptr));
    }

    /// Presses the modifier and, when it has been dealt with, the key.
    void typeSlowly(const QList<int> &keys)
    {
        keyboard.press(keys.first(1));
        QTRY_VERIFY(!isKeyboardFree());
        keyboard.press(keys.last(1));
        keyboard.release(keys);
    }

    /// Makes Control+K a hot key of ours.
    void registerControlK()
    {
        hotkey = hotkeys.registerHotkey(keyK, controlKey, someId, {});
        hotkeys.flush();
        QVERIFY(keyboard.isGrabbed(KEY_K, XCB_MOD_MASK_CONTROL));
    }

    /// Claims that Control+K has not fired yet, and does now.
    void claimFirstFire()
    {
        sync();
        keyboard.type(controlK);
        QTRY_VERIFY(!fired.isEmpty());
        // What was to come before it has come.
        QCOMPARE(fired, QList<HotkeyId>({someId}));
    }

    /// Claims that exactly these are heard, and that the recording goes on.
    void claimHeard(const QList<KeyEvent> &events)
    {
        keyboard.type({KEY_F9});
        QTRY_VERIFY(heard.contains(KeyEvent{keyF9, 0}));
        QCOMPARE(heard, events + QList<KeyEvent>({{keyF9, 0}}));
    }

    /// Claims what is in the text field when the keys so far have come to it.
    void claimText(const QString &text)
    {
        sync();
        keyboard.type({KEY_1});
        QTRY_VERIFY(window->field->text().endsWith(u'1'));
        QCOMPARE(window->field->text(), text + u'1');
    }

    bool isKeyboardFree()
    {
        Keyboard rival;
        return rival.grabAll();
    }
};

/// Keys that are typed, on which keyboard, and what is to be heard of them.
struct Typing {
    QList<int> keys;
    QList<KeyEvent> heard;
    QString keyboard = {};
    quint8 group = 0;
    quint16 locks = 0;
};

using AddRow = std::function<void(const char *, const Typing &)>;

void addKeys(const AddRow &add)
{
    constexpr auto control = controlEventFlag;
    add("a letter", {{KEY_K}, {{keyK, 0}}});
    add("the letter whose code is 0", {{KEY_LEFTMETA, KEY_A}, {{0, commandEventFlag}}});
    add("Tab", {{KEY_LEFTCTRL, KEY_TAB}, {{48, control}}});
    add("Tab and Shift", {{KEY_LEFTSHIFT, KEY_TAB}, {{48, shiftEventFlag}}});
    add("Return", {{KEY_LEFTCTRL, KEY_ENTER}, {{36, control}}});
    add("Space", {{KEY_LEFTCTRL, KEY_SPACE}, {{49, control}}});
    add("an arrow", {{KEY_LEFTCTRL, KEY_LEFT}, {{123, control}}});
    add("Delete", {{KEY_LEFTCTRL, KEY_DELETE}, {{117, control}}});
    add("Backspace", {{KEY_LEFTCTRL, KEY_BACKSPACE}, {{51, control}}});
    add("a function key", {{KEY_LEFTCTRL, KEY_F5}, {{96, control}}});
    add("a key of the keypad", {{KEY_LEFTCTRL, KEY_KP5}, {{87, control}}});
    add("the menu key", {{KEY_LEFTCTRL, KEY_COMPOSE}, {{110, control}}});
    add("Print", {{KEY_LEFTCTRL, KEY_SYSRQ}, {{105, control}}});
    add("Scroll Lock", {{KEY_LEFTCTRL, KEY_SCROLLLOCK}, {{107, control}}});
    add("Pause", {{KEY_LEFTCTRL, KEY_PAUSE}, {{113, control}}});
    add("Escape", {{KEY_ESC}, {{53, 0}}});
    add("Escape where it is Caps Lock",
        {{KEY_ESC}, {{53, 0}}, u"setxkbmap -option caps:swapescape"_s});
    add("a key without a virtual key code", {{KEY_LEFTCTRL, KEY_CALC}, {}});
}

void addModifiers(const AddRow &add)
{
    add("all modifiers",
        {{KEY_LEFTSHIFT, KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFTMETA, KEY_K}, {{keyK, 0x1e0000}}});
    add("the right modifiers",
        {{KEY_RIGHTSHIFT, KEY_RIGHTCTRL, KEY_RIGHTALT, KEY_RIGHTMETA, KEY_K}, {{keyK, 0x1e0000}}});
    add("Caps Lock on",
        {{KEY_LEFTMETA, KEY_K}, {{keyK, commandEventFlag}}, {}, 0, XCB_MOD_MASK_LOCK});
    add("Num Lock on", {{KEY_LEFTMETA, KEY_K}, {{keyK, commandEventFlag}}, {}, 0, XCB_MOD_MASK_2});
    add("Num Lock on, and a key of the keypad", {{KEY_KP5}, {{87, 0}}, {}, 0, XCB_MOD_MASK_2});
    add("AltGr", {{KEY_RIGHTALT, KEY_Q}, {{12, 0}}, u"setxkbmap de"_s});
    add("AltGr and Control",
        {{KEY_LEFTCTRL, KEY_RIGHTALT, KEY_Q}, {{12, controlEventFlag}}, u"setxkbmap de"_s});
    add("Super on another bit",
        {{KEY_LEFTMETA, KEY_K},
         {{keyK, commandEventFlag}},
         u"xmodmap -e 'remove mod4 = Super_L Super_R Hyper_L' -e 'add mod3 = Super_L'"_s});
    add("Alt on another bit",
        {{KEY_LEFTALT, KEY_K},
         {{keyK, optionEventFlag}},
         u"xmodmap -e 'remove mod1 = Alt_L Alt_R Meta_L' -e 'add mod3 = Alt_L'"_s});
    // Twice, so that no lock is left on.
    for (const int key : {KEY_LEFTSHIFT, KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFTMETA, KEY_CAPSLOCK,
                          KEY_NUMLOCK, KEY_RIGHTALT})
        add(qPrintable(u"key %1 by itself, a modifier"_s.arg(key)), {{key, key}, {}});
    add("AltGr by itself", {{KEY_RIGHTALT}, {}, u"setxkbmap de"_s});
    add("the modifier of the fifth level by itself", {{KEY_102ND}, {}, u"setxkbmap de neo"_s});
    add("the switch to the next layout by itself",
        {{KEY_RIGHTALT}, {}, u"setxkbmap us,ru -option grp:toggle"_s});
}

void addLayouts(const AddRow &add)
{
    const KeyEvent k{keyK, controlEventFlag};
    add("the key that types Z", {{KEY_Y}, {{16, 0}}, u"setxkbmap de"_s});
    add("a dead key", {{KEY_EQUAL}, {{24, 0}}, u"setxkbmap de"_s});
    add("a letter of another script", {controlK, {k}, u"setxkbmap ru"_s});
    add("a letter of the second layout", {controlK, {k}, u"setxkbmap us,ru"_s, 1});
    add("a key that has another code on this server",
        {{KEY_LEFTCTRL, KEY_M},
         {k},
         u"xkbcomp -w0 $DISPLAY - | sed 's/<AC08> = 45;/<AC08> = 58;/; t; "
         "s/<AB07> = 58;/<AB07> = 45;/' | xkbcomp -w0 - $DISPLAY"_s});
}
} // namespace
Q_DECLARE_METATYPE(Typing)

class KeyCaptureTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { run(u"xset r rate 100 50"_s); }

    void cleanup()
    {
        Keyboard keyboard;
        keyboard.setLocks(0);
        keyboard.setGroup(0);
        run(u"setxkbmap us -option"_s);
    }

    void tellsOfKeys_data()
    {
        QTest::addColumn<Typing>("typing");
        const auto add = [](const char *row, const Typing &typing) {
            QTest::newRow(row) << typing;
        };
        addKeys(add);
        addModifiers(add);
        addLayouts(add);
    }
    void tellsOfKeys()
    {
        QFETCH(const Typing, typing);
        if (!typing.keyboard.isEmpty())
            run(typing.keyboard);
        Desk desk;
        desk.keyboard.setGroup(typing.group);
        desk.keyboard.setLocks(typing.locks);
        desk.start();
        desk.keyboard.type(typing.keys);
        desk.claimHeard(typing.heard);
        QCOMPARE(desk.window->field->text(), QString());
    }

    void followsTheKeyboard()
    {
        Desk desk;
        desk.start();
        run(u"xmodmap -e 'remove mod4 = Super_L Super_R Hyper_L' -e 'add mod3 = Super_L'"_s);
        const KeyEvent commandK{keyK, commandEventFlag};
        const auto tryToHear = [&] {
            desk.keyboard.type({KEY_LEFTMETA, KEY_K});
            return desk.heard.contains(commandK);
        };
        QVERIFY(QTest::qWaitFor(tryToHear));
    }

    void tellsOfAHeldKeyOnce()
    {
        Desk desk;
        desk.start();
        desk.keyboard.press(controlK);
        desk.keyboard.sendLateRepeat(KEY_K, xcb_window_t(desk.window->winId()));
        QTest::qWait(longHold);
        desk.keyboard.release(controlK);
        desk.claimHeard({{keyK, controlEventFlag}});
    }

    void takesKeysThatTheWindowManagerHas_data()
    {
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<KeyEvent>("event");
        const auto add = [](const char *row, const QList<int> &keys, const KeyEvent &event) {
            QTest::newRow(row) << keys << event;
        };
        add("show the desktop", superD, {keyD, commandEventFlag});
        add("close the window", {KEY_LEFTALT, KEY_F4}, {118, optionEventFlag});
        add("next window", {KEY_LEFTALT, KEY_TAB}, {48, optionEventFlag});
        add("menu of the window", {KEY_LEFTALT, KEY_SPACE}, {49, optionEventFlag});
        add("lower the window", {KEY_LEFTALT, KEY_ESC}, {53, optionEventFlag});
        add("next desktop", {KEY_LEFTCTRL, KEY_LEFTALT, KEY_RIGHT},
            {124, controlEventFlag | optionEventFlag});
    }
    void takesKeysThatTheWindowManagerHas()
    {
        QFETCH(const QList<int>, keys);
        QFETCH(const KeyEvent, event);
        Desk desk;
        const Window other(u"Other"_s);
        desk.window->activate();
        desk.start();
        desk.keyboard.type(keys);
        desk.claimHeard({event});
        QCOMPARE(activeTitle(), u"Recording"_s);
    }

    void takesKeysThatAnotherProgramHas()
    {
        Desk desk;
        Keyboard rival;
        rival.grab(KEY_K, XCB_MOD_MASK_CONTROL);
        desk.start();
        desk.keyboard.type(controlK);
        desk.claimHeard({{keyK, controlEventFlag}});
    }

    void takesTheKeyboardAsSoonAsTheOtherProgramHasLetGoOfIt()
    {
        Desk desk;
        Keyboard rival;
        QVERIFY(rival.grabAll());
        desk.start();
        rival.ungrabAll();
        desk.typeSlowly(superD);
        desk.claimHeard({{keyD, commandEventFlag}});
        QCOMPARE(activeTitle(), u"Recording"_s);
    }

    void takesTheKeyboardAgainAfterAMenu()
    {
        Desk desk;
        desk.start();
        QMenu menu;
        menu.addAction(u"Item"_s);
        menu.popup(desk.window->mapToGlobal(QPoint(10, 10)));
        QVERIFY(QTest::qWaitForWindowExposed(&menu));
        menu.close();
        desk.typeSlowly(superD);
        desk.claimHeard({{keyD, commandEventFlag}});
        QCOMPARE(activeTitle(), u"Recording"_s);
    }

    void holdsHotKeysUp()
    {
        Desk desk;
        desk.registerControlK();
        desk.start();
        desk.keyboard.type(controlK);
        desk.claimHeard({{keyK, controlEventFlag}});
        desk.registration.reset();
        desk.claimFirstFire();
    }

    void firesNoHotKeyThatIsHeldWhenItEnds_data()
    {
        QTest::addColumn<std::function<void(Desk &)>>("end");
        const auto add = [](const char *row, const std::function<void(Desk &)> &end) {
            QTest::newRow(row) << end;
        };
        add("by its receiver", [](Desk &) {});
        add("by its owner", [](Desk &desk) { desk.registration.reset(); });
        add("because its window is hidden", [](Desk &desk) { desk.window->hide(); });
        add("because its widget is destroyed", [](Desk &desk) { delete desk.window->field; });
        add("because its window is destroyed", [](Desk &desk) { desk.window.reset(); });
        add("for a while, because another window is active",
            [](Desk &) { Window(u"Other"_s).activate(); });
    }
    void firesNoHotKeyThatIsHeldWhenItEnds()
    {
        QFETCH(const std::function<void(Desk &)>, end);
        Desk desk;
        desk.registerControlK();
        if (QTest::currentDataTag() == "by its receiver"_ba)
            desk.startForOnePress();
        else
            desk.start();
        desk.keyboard.press(controlK);
        QTRY_COMPARE(desk.heard.size(), 1);
        end(desk);
        QTest::qWait(longHold);
        desk.keyboard.release(controlK);
        desk.registration.reset();
        desk.claimFirstFire();
    }

    void keepsTheRestOfAPressFromTheWindow_data()
    {
        QTest::addColumn<QList<int>>("modifiers");
        QTest::addColumn<int>("key");
        QTest::newRow("Escape, which would close it") << QList<int>() << KEY_ESC;
        QTest::newRow("Return, which would press its button")
            << QList<int>{KEY_LEFTCTRL} << KEY_ENTER;
        QTest::newRow("a letter") << QList<int>{KEY_LEFTCTRL} << KEY_K;
    }
    void keepsTheRestOfAPressFromTheWindow()
    {
        QFETCH(const QList<int>, modifiers);
        QFETCH(const int, key);
        Desk desk;
        desk.startForOnePress();
        desk.keyboard.press(modifiers + QList<int>{key});
        QTRY_COMPARE(desk.heard.size(), 1);
        desk.keyboard.sendLateRepeat(key, xcb_window_t(desk.window->winId()));
        QTest::qWait(longHold);
        desk.keyboard.release(modifiers);
        QTest::qWait(longHold);
        desk.keyboard.release({key});
        desk.claimText({});
        QCOMPARE(desk.window->clicks, 0);
        QVERIFY(desk.window->isVisible());
    }

    void leavesAFreshPressToTheWindowWhileTheRecordedKeyIsHeld()
    {
        Desk desk;
        desk.startForOnePress();
        desk.keyboard.press({KEY_K});
        QTRY_COMPARE(desk.heard.size(), 1);
        desk.keyboard.type({KEY_J});
        desk.claimText(u"j"_s);
        desk.keyboard.release({KEY_K});
    }

    void leavesKeysAloneWhileItsWindowIsInactive()
    {
        Desk desk;
        desk.registerControlK();
        desk.start();
        Window other(u"Other"_s);
        desk.keyboard.type({KEY_J});
        QTRY_COMPARE(other.field->text(), u"j"_s);
        desk.claimFirstFire();
        QCOMPARE(desk.heard, QList<KeyEvent>());
    }

    void leavesKeysAloneAsSoonAsItsWindowIsHidden()
    {
        Desk desk;
        desk.start();
        QLineEdit other;
        desk.window->hide();
        // The server has not told yet that the window is inactive.
        QTest::keyClick(&other, Qt::Key_J);
        QCOMPARE(other.text(), u"j"_s);
    }

    void goesOnWhenItsWindowIsActiveAgain()
    {
        Desk desk;
        desk.start();
        Window other(u"Other"_s);
        QVERIFY(desk.isKeyboardFree());
        desk.window->activate();
        desk.keyboard.type(superD);
        desk.claimHeard({{keyD, commandEventFlag}});
    }

    void letsGoOfTheKeyboard_data()
    {
        QTest::addColumn<std::function<void(Desk &)>>("end");
        const auto add = [](const char *row, const std::function<void(Desk &)> &end) {
            QTest::newRow(row) << end;
        };
        add("when it ends", [](Desk &desk) { desk.registration.reset(); });
        add("when its window is hidden", [](Desk &desk) { desk.window->hide(); });
        add("when its window is closed",
            [](Desk &desk) { closeWindow(xcb_window_t(desk.window->winId())); });
        add("when its window is minimized",
            [](Desk &desk) { minimizeWindow(xcb_window_t(desk.window->winId())); });
        add("when its window is destroyed", [](Desk &desk) { desk.window.reset(); });
        add("when its widget is destroyed", [](Desk &desk) { delete desk.window->field; });
    }
    void letsGoOfTheKeyboard()
    {
        QFETCH(const std::function<void(Desk &)>, end);
        Desk desk;
        desk.start();
        QVERIFY(!desk.isKeyboardFree());
        end(desk);
        QTRY_VERIFY(desk.isKeyboardFree());
    }

    // KWin takes a window that hears of the end of its own grab for one that has lost the focus.
    void tellsTheWindowManagerNothingOfALostFocus()
    {
        Desk desk;
        const X11Connection watcher;
        const uint32_t events = XCB_EVENT_MASK_FOCUS_CHANGE;
        xcb_change_window_attributes(watcher.get(), xcb_window_t(desk.window->winId()),
                                     XCB_CW_EVENT_MASK, &events);
        // The answer tells that the server watches.
        const auto watched = xcb_get_input_focus(watcher.get());
        QVERIFY(owned(xcb_get_input_focus_reply(watcher.get(), watched, nullptr)));
        desk.start();
        desk.keyboard.type(controlK);
        QTRY_COMPARE(desk.heard.size(), 1);
        desk.registration.reset();
        QList<int> lost;
        QList<int> gained;
        const auto isBack = [&] {
            while (const auto event = owned(xcb_poll_for_event(watcher.get()))) {
                const auto &focus = reinterpret_cast<const xcb_focus_in_event_t &>(*event);
                if (event->response_type == XCB_FOCUS_OUT)
                    lost << focus.mode;
                else if (event->response_type == XCB_FOCUS_IN)
                    gained << focus.mode;
            }
            return gained == QList<int>{XCB_NOTIFY_MODE_UNGRAB};
        };
        QTRY_VERIFY(isBack());
        QCOMPARE(lost, QList<int>{XCB_NOTIFY_MODE_GRAB});
        QVERIFY(desk.window->isActiveWindow());
    }

    void keepsDeadKeysFromATextField()
    {
        run(u"setxkbmap de"_s);
        Desk desk;
        desk.start();
        // Acute and E.
        desk.keyboard.type({KEY_EQUAL});
        desk.keyboard.type({KEY_E});
        desk.claimHeard({{24, 0}, {14, 0}});
        QCOMPARE(desk.window->field->text(), QString());
        desk.registration.reset();
        desk.sync();
        desk.keyboard.type({KEY_EQUAL});
        desk.keyboard.type({KEY_E});
        desk.claimText(u"é"_s);
    }
};

QTEST_MAIN(KeyCaptureTest)
#include "KeyCaptureTest.moc"
