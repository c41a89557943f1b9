// Who hears of which keys while a window's keys are monitored, and afterwards.

#include "platform/linux/recording/LinuxEventMonitor.h"
#include "fakes/FakeHotkeyRoute.h"
#include "fakes/KeyEventText.h"
#include "platform/EventFlag.h"
#include "platform/KeyModifier.h"
#include "platform/linux/hotkeys/WaylandHotkeyService.h"

#include <QContextMenuEvent>
#include <QDialog>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTest>
#include <QVBoxLayout>
#include <linux/input-event-codes.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr quint16 keyA = 0;
constexpr quint16 keyK = 40;
constexpr quint16 keyReturn = 36;
constexpr quint16 keyEscape = 53;

/// A key as Qt tells of it: what it types, and where it is.
struct Key {
    int key;
    quint32 evdevCode;
    QString text = {};
    quint32 keysym = 0;
};
const Key a{Qt::Key_A, KEY_A, u"a"_s};
const Key k{Qt::Key_K, KEY_K, u"k"_s};
const Key returnKey{Qt::Key_Return, KEY_ENTER, u"\r"_s};
const Key escape{Qt::Key_Escape, KEY_ESC};
const Key menu{Qt::Key_Menu, KEY_COMPOSE};

enum class Repeat { no, yes };

/// The server's time, in ms.
quint64 now = 1000;

/// Whether somebody has accepted the event.
bool send(QObject &receiver, QEvent::Type type, const Key &key,
          Qt::KeyboardModifiers modifiers = Qt::NoModifier, Repeat repeat = Repeat::no)
{
    const quint32 scanCode = key.evdevCode ? key.evdevCode + 8 : 0;
    QKeyEvent event(type, key.key, modifiers, scanCode, key.keysym, 0, key.text,
                    repeat == Repeat::yes);
    event.setTimestamp(now);
    event.ignore();
    QCoreApplication::sendEvent(&receiver, &event);
    return event.isAccepted();
}

/// What comes for a press in the window that has the focus, and for its repeats.
void press(QWidget &receiver, const Key &key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
           Repeat repeat = Repeat::no)
{
    if (repeat == Repeat::no)
        now += 20;
    send(receiver, QEvent::ShortcutOverride, key, modifiers, repeat);
    send(receiver, QEvent::KeyPress, key, modifiers, repeat);
}

void repeat(QWidget &receiver, const Key &key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
{
    now += 20;
    send(receiver, QEvent::KeyRelease, key, modifiers, Repeat::yes);
    press(receiver, key, modifiers, Repeat::yes);
}

void release(QWidget &receiver, const Key &key)
{
    now += 20;
    send(receiver, QEvent::KeyRelease, key);
}

bool acceptsInputMethods(QWidget &widget)
{
    QInputMethodQueryEvent query(Qt::ImEnabled);
    QCoreApplication::sendEvent(&widget, &query);
    return query.value(Qt::ImEnabled).toBool();
}

/// A text field that counts the key events and menus that come to it.
class Field : public QLineEdit
{
public:
    using QLineEdit::QLineEdit;

    QList<QEvent::Type> keyEvents;
    int menus = 0;

protected:
    bool event(QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease)
            keyEvents << event->type();
        return QLineEdit::event(event);
    }
    void contextMenuEvent(QContextMenuEvent *) override { ++menus; }
};

void sendMenu(QWidget &receiver, QContextMenuEvent::Reason reason)
{
    QContextMenuEvent event(reason, {}, receiver.mapToGlobal(QPoint()));
    QCoreApplication::sendEvent(&receiver, &event);
}

/// An active window with a text field and a default button, and what is heard of its keys.
struct Desk {
    FakeHotkeyRoute *route = new FakeHotkeyRoute;
    UserActivation activation;
    WaylandHotkeyService hotkeys{std::unique_ptr<HotkeyRoute>(route), activation};
    LinuxEventMonitor monitor{SessionType::wayland, nullptr, &hotkeys};
    std::unique_ptr<QDialog> window = std::make_unique<QDialog>();
    Field *field = new Field;
    QPushButton *button = new QPushButton;
    QList<KeyEvent> heard;
    int clicks = 0;
    std::optional<Registration> registration;

    Desk()
    {
        auto *const layout = new QVBoxLayout(window.get());
        layout->addWidget(field);
        layout->addWidget(button);
        button->setDefault(true);
        QObject::connect(button, &QPushButton::clicked, window.get(), [this] { ++clicks; });
        activate(*window);
        field->setFocus();
    }

    static void activate(QWidget &widget)
    {
        widget.show();
        widget.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&widget));
    }

    void start()
    {
        registration = monitor.addLocalMonitorForEvents(
            *field, [this](const KeyEvent &event) { heard << event; });
    }

    /// Ends with the first press, as a recording does.
    void startForOnePress()
    {
        registration = monitor.addLocalMonitorForEvents(*field, [this](const KeyEvent &event) {
            registration.reset();
            heard << event;
        });
    }
};
} // namespace
Q_DECLARE_METATYPE(Key)

class LinuxEventMonitorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hearsHotKeysThatTheDesktopKeepsFromTheWindow()
    {
        Desk desk;
        const auto hotkey = desk.hotkeys.registerHotkey(keyK, controlKey | optionKey, {0, 1}, {});
        int presses = 0;
        desk.hotkeys.installHandler([&presses](HotkeyId) { ++presses; });
        const auto press = [&desk] {
            Q_EMIT desk.route->pressed({VirtualKey(keyK), controlKey | optionKey}, {});
        };
        desk.startForOnePress();
        press();
        QCOMPARE(desk.heard, QList<KeyEvent>({{keyK, controlEventFlag | optionEventFlag}}));
        QCOMPARE(presses, 0);
        press();
        QCOMPARE(presses, 1);
    }

    void knowsWhenItHasTheKeys()
    {
        Desk desk;
        QVERIFY(!desk.monitor.isCapturing());
        desk.startForOnePress();
        QVERIFY(desk.monitor.isCapturing());
        {
            QDialog other;
            Desk::activate(other);
            QVERIFY(!desk.monitor.isCapturing());
        }
        Desk::activate(*desk.window);
        QVERIFY(desk.monitor.isCapturing());
        press(*desk.field, k);
        QVERIFY(!desk.monitor.isCapturing());
    }

    void leavesHotKeysAloneWhileTheWindowIsInactive()
    {
        Desk desk;
        const auto hotkey = desk.hotkeys.registerHotkey(keyK, controlKey, {0, 1}, {});
        int presses = 0;
        desk.hotkeys.installHandler([&presses](HotkeyId) { ++presses; });
        desk.start();
        QDialog other;
        Desk::activate(other);
        Q_EMIT desk.route->pressed({VirtualKey(keyK), controlKey}, {});
        QCOMPARE(presses, 1);
        QVERIFY(desk.heard.isEmpty());
    }

    void tellsThePhysicalKey_data()
    {
        QTest::addColumn<Key>("key");
        QTest::addColumn<quint16>("keyCode");
        const auto add = [](const char *row, const Key &key, quint16 keyCode) {
            QTest::newRow(row) << key << keyCode;
        };
        add("whose code is 0", a, keyA);
        add("that types another letter in the user's layout", {Qt::Key_Q, KEY_A, u"q"_s}, keyA);
        add("that is a dead key in the user's layout", {Qt::Key_Dead_Acute, KEY_K}, keyK);
        add("that is unknown to Qt", {Qt::Key_unknown, KEY_K}, keyK);
        add("Return", returnKey, keyReturn);
        add("Tab", {Qt::Key_Tab, KEY_TAB, u"\t"_s}, 48);
        add("Escape", escape, keyEscape);
        add("Escape where it is Caps Lock", {Qt::Key_CapsLock, KEY_ESC, {}, 0xffe5}, keyEscape);
        add("Caps Lock where it is Escape", {Qt::Key_Escape, KEY_CAPSLOCK}, 57);
        add("Scroll Lock", {Qt::Key_ScrollLock, KEY_SCROLLLOCK, {}, 0xff14}, 107);
        add("Print", {Qt::Key_Print, KEY_SYSRQ, {}, 0xff61}, 105);
        add("Pause", {Qt::Key_Pause, KEY_PAUSE, {}, 0xff13}, 113);
        add("the menu key", menu, 110);
    }
    void tellsThePhysicalKey()
    {
        QFETCH(const Key, key);
        QFETCH(const quint16, keyCode);
        Desk desk;
        desk.start();
        press(*desk.field, key);
        QCOMPARE(desk.heard, QList<KeyEvent>({{keyCode, 0}}));
    }

    void tellsTheModifiers_data()
    {
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<quint32>("flags");
        const auto add = [](const char *row, Qt::KeyboardModifiers modifiers, quint32 flags) {
            QTest::newRow(row) << modifiers << flags;
        };
        add("none", Qt::NoModifier, 0);
        add("Shift", Qt::ShiftModifier, shiftEventFlag);
        add("Control", Qt::ControlModifier, controlEventFlag);
        add("Alt", Qt::AltModifier, optionEventFlag);
        add("Super", Qt::MetaModifier, commandEventFlag);
        add("AltGr", Qt::GroupSwitchModifier, 0);
        add("a key of the keypad", Qt::KeypadModifier, 0);
        add("all at once",
            Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier, 0x1e0000);
    }
    void tellsTheModifiers()
    {
        QFETCH(const Qt::KeyboardModifiers, modifiers);
        QFETCH(const quint32, flags);
        Desk desk;
        desk.start();
        press(*desk.field, k, modifiers);
        QCOMPARE(desk.heard, QList<KeyEvent>({{keyK, flags}}));
    }

    void tellsNobody_data()
    {
        QTest::addColumn<Key>("key");
        QTest::addColumn<Repeat>("repeat");
        const auto add = [](const char *row, const Key &key, Repeat repeat = Repeat::no) {
            QTest::newRow(row) << key << repeat;
        };
        add("of a repeat", k, Repeat::yes);
        add("of Shift", {Qt::Key_Shift, KEY_LEFTSHIFT});
        add("of Control", {Qt::Key_Control, KEY_LEFTCTRL});
        add("of Control where Caps Lock is", {Qt::Key_Control, KEY_CAPSLOCK});
        add("of Alt", {Qt::Key_Alt, KEY_LEFTALT});
        add("of AltGr", {Qt::Key_AltGr, KEY_RIGHTALT});
        add("of Meta", {Qt::Key_Meta, KEY_LEFTMETA});
        add("of Super", {Qt::Key_Super_L, KEY_LEFTMETA});
        add("of the right Super", {Qt::Key_Super_R, KEY_RIGHTMETA});
        add("of Hyper", {Qt::Key_Hyper_L, KEY_LEFTMETA});
        add("of the right Hyper", {Qt::Key_Hyper_R, KEY_RIGHTMETA});
        add("of Caps Lock", {Qt::Key_CapsLock, KEY_CAPSLOCK});
        add("of Num Lock", {Qt::Key_NumLock, KEY_NUMLOCK});
        add("of the switch between layouts", {Qt::Key_Mode_switch, KEY_RIGHTALT});
        add("of the switch to the next layout", {Qt::Key_unknown, KEY_RIGHTALT, {}, 0xfe08});
        add("of the switch to the fifth level", {Qt::Key_unknown, KEY_102ND, {}, 0xfe11});
        add("of Shift Lock", {Qt::Key_unknown, KEY_CAPSLOCK, {}, 0xffe6});
        add("of a key without a scan code", {Qt::Key_K, 0, u"k"_s});
        add("of a key without a virtual key code", {Qt::Key_Calculator, KEY_CALC});
        add("of a key with a high code", {Qt::Key_unknown, 60000});
    }
    void tellsNobody()
    {
        QFETCH(const Key, key);
        QFETCH(const Repeat, repeat);
        Desk desk;
        desk.start();
        press(*desk.field, key, Qt::NoModifier, repeat);
        release(*desk.field, key);
        QCOMPARE(desk.heard, QList<KeyEvent>());
        QCOMPARE(desk.field->keyEvents, QList<QEvent::Type>());
        QCOMPARE(desk.field->text(), QString());
    }

    void tellsOfEachPressOnce()
    {
        Desk desk;
        desk.start();
        press(*desk.field, k);
        repeat(*desk.field, k);
        release(*desk.field, k);
        press(*desk.field, k);
        QCOMPARE(desk.heard, QList<KeyEvent>({{keyK, 0}, {keyK, 0}}));
    }

    void keepsKeysFromWindowsOfTheProgram_data()
    {
        QTest::addColumn<bool>("isOtherWindow");
        QTest::newRow("the one with the widget") << false;
        QTest::newRow("others") << true;
    }
    void keepsKeysFromWindowsOfTheProgram()
    {
        QFETCH(const bool, isOtherWindow);
        Desk desk;
        desk.start();
        Field other;
        Field &receiver = isOtherWindow ? other : *desk.field;
        press(receiver, k);
        release(receiver, k);
        QCOMPARE(receiver.keyEvents, QList<QEvent::Type>());
        QCOMPARE(desk.heard.size(), 1);
    }

    void keepsKeysFromShortcuts()
    {
        Desk desk;
        int activations = 0;
        const QShortcut shortcut(Qt::CTRL | Qt::Key_Q, desk.window.get(),
                                 [&activations] { ++activations; });
        desk.start();
        QTest::keyClick(desk.field, Qt::Key_Q, Qt::ControlModifier);
        QCOMPARE(activations, 0);
        desk.registration.reset();
        QTest::keyClick(desk.field, Qt::Key_Q, Qt::ControlModifier);
        QCOMPARE(activations, 1);
    }

    void overridesShortcutsSoThatTheirPressesCome()
    {
        Desk desk;
        desk.start();
        QVERIFY(send(*desk.field, QEvent::ShortcutOverride, k, Qt::ControlModifier));
    }

    void keepsTheSecondKeyOfASequenceFromItsShortcut()
    {
        Desk desk;
        int activations = 0;
        const QShortcut shortcut(QKeySequence(Qt::CTRL | Qt::Key_J, Qt::CTRL | Qt::Key_L),
                                 desk.window.get(), [&activations] { ++activations; });
        QTest::keyClick(desk.field, Qt::Key_J, Qt::ControlModifier);
        desk.start();
        QTest::keyClick(desk.field, Qt::Key_L, Qt::ControlModifier);
        QCOMPARE(activations, 0);
    }

    void keepsKeysFromInputMethods()
    {
        Desk desk;
        QVERIFY(acceptsInputMethods(*desk.field));
        desk.start();
        QVERIFY(!acceptsInputMethods(*desk.field));
        QInputMethodEvent composed;
        composed.setCommitString(u"é"_s);
        QCoreApplication::sendEvent(desk.field, &composed);
        QCOMPARE(desk.field->text(), QString());
        desk.registration.reset();
        QVERIFY(acceptsInputMethods(*desk.field));
    }

    void keepsMenusOfTheKeyboardAway()
    {
        Desk desk;
        desk.start();
        sendMenu(*desk.field, QContextMenuEvent::Keyboard);
        QCOMPARE(desk.field->menus, 0);
    }

    void leavesMenusToTheMouse()
    {
        Desk desk;
        desk.start();
        sendMenu(*desk.field, QContextMenuEvent::Mouse);
        QCOMPARE(desk.field->menus, 1);
    }

    void leavesKeysToTheWindowOnceItHasEnded()
    {
        Desk desk;
        desk.start();
        desk.registration.reset();
        press(*desk.field, a);
        release(*desk.field, a);
        QCOMPARE(desk.heard, QList<KeyEvent>());
        QCOMPARE(desk.field->text(), u"a"_s);
    }

    void leavesKeysAloneWhileItsWindowIsInactive()
    {
        Desk desk;
        desk.start();
        Field other;
        Desk::activate(other);
        press(other, a);
        QCOMPARE(other.text(), u"a"_s);
        QCOMPARE(desk.heard, QList<KeyEvent>());
        QVERIFY(acceptsInputMethods(other));
    }

    void goesOnWhenItsWindowIsActiveAgain()
    {
        Desk desk;
        desk.start();
        Field other;
        Desk::activate(other);
        Desk::activate(*desk.window);
        press(*desk.field, k);
        QCOMPARE(desk.heard, QList<KeyEvent>({{keyK, 0}}));
    }

    void waitsForItsWindowToBecomeActive()
    {
        Desk desk;
        Field other;
        Desk::activate(other);
        desk.start();
        press(other, a);
        QCOMPARE(other.text(), u"a"_s);
        Desk::activate(*desk.window);
        press(*desk.field, k);
        QCOMPARE(desk.heard, QList<KeyEvent>({{keyK, 0}}));
    }

    void leavesKeysAloneOnceItsWindowIsHidden()
    {
        Desk desk;
        desk.start();
        desk.window->hide();
        Field other;
        press(other, a);
        QCOMPARE(other.text(), u"a"_s);
        QCOMPARE(desk.heard, QList<KeyEvent>());
    }

    void leavesKeysAloneOnceItsWidgetIsDestroyed_data()
    {
        QTest::addColumn<bool>("withItsWindow");
        QTest::newRow("alone") << false;
        QTest::newRow("with its window") << true;
    }
    void leavesKeysAloneOnceItsWidgetIsDestroyed()
    {
        QFETCH(const bool, withItsWindow);
        Desk desk;
        desk.start();
        if (withItsWindow)
            desk.window.reset();
        else
            delete desk.field;
        Field other;
        press(other, a);
        QCOMPARE(other.text(), u"a"_s);
        QVERIFY(acceptsInputMethods(other));
        desk.registration.reset();
        QCOMPARE(desk.heard, QList<KeyEvent>());
    }

    void mayBeEndedByItsReceiver()
    {
        Desk desk;
        desk.startForOnePress();
        press(*desk.field, k);
        press(*desk.field, a);
        QCOMPARE(desk.heard, QList<KeyEvent>({{keyK, 0}}));
        QCOMPARE(desk.field->text(), u"a"_s);
    }

    void keepsTheRestOfAPressFromTheWindow_data()
    {
        QTest::addColumn<Key>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::newRow("a letter") << a << Qt::KeyboardModifiers(Qt::NoModifier);
        QTest::newRow("Return, which would press the default button")
            << returnKey << Qt::KeyboardModifiers(Qt::ControlModifier);
        QTest::newRow("Escape, which would close the dialog")
            << escape << Qt::KeyboardModifiers(Qt::NoModifier);
    }
    void keepsTheRestOfAPressFromTheWindow()
    {
        QFETCH(const Key, key);
        QFETCH(const Qt::KeyboardModifiers, modifiers);
        Desk desk;
        desk.startForOnePress();
        press(*desk.field, key, modifiers);
        repeat(*desk.field, key, modifiers);
        // The modifiers may be let go first.
        repeat(*desk.field, key);
        release(*desk.field, key);
        QCOMPARE(desk.heard.size(), 1);
        QCOMPARE(desk.field->keyEvents, QList<QEvent::Type>());
        QCOMPARE(desk.clicks, 0);
        QVERIFY(desk.window->isVisible());
    }

    void keepsTheRestOfAPressFromShortcuts()
    {
        Desk desk;
        desk.startForOnePress();
        press(*desk.field, k, Qt::ControlModifier);
        QVERIFY(send(*desk.field, QEvent::ShortcutOverride, k, Qt::ControlModifier, Repeat::yes));
    }

    void keepsTheRestOfAPressFromTheNextWindow()
    {
        Desk desk;
        desk.startForOnePress();
        press(*desk.field, a);
        desk.window->hide();
        Field other;
        repeat(other, a);
        QCOMPARE(other.text(), QString());
    }

    void keepsTheRestOfAPressFromTheWindowThatBecomesActive()
    {
        Desk desk;
        desk.start();
        press(*desk.field, a);
        Field other;
        Desk::activate(other);
        repeat(other, a);
        QCOMPARE(other.text(), QString());
    }

    void keepsTheRestOfAnEarlierPressFromTheWindow()
    {
        Desk desk;
        press(*desk.field, k);
        desk.startForOnePress();
        repeat(*desk.field, k);
        press(*desk.field, a);
        desk.field->clear();
        repeat(*desk.field, k);
        QCOMPARE(desk.field->text(), QString());
    }

    void keepsMenusOfTheHeldMenuKeyAway()
    {
        Desk desk;
        desk.startForOnePress();
        press(*desk.field, menu, Qt::ControlModifier);
        sendMenu(*desk.field, QContextMenuEvent::Keyboard);
        QCOMPARE(desk.field->menus, 0);
        release(*desk.field, menu);
        sendMenu(*desk.field, QContextMenuEvent::Keyboard);
        QCOMPARE(desk.field->menus, 1);
    }

    void leavesAFreshPressToTheWindow_data()
    {
        QTest::addColumn<bool>("isReleaseSeen");
        QTest::newRow("after the release") << true;
        QTest::newRow("when another program saw the release") << false;
    }
    void leavesAFreshPressToTheWindow()
    {
        QFETCH(const bool, isReleaseSeen);
        Desk desk;
        desk.startForOnePress();
        press(*desk.field, a);
        if (isReleaseSeen)
            release(*desk.field, a);
        press(*desk.field, a);
        repeat(*desk.field, a);
        release(*desk.field, a);
        QCOMPARE(desk.field->text(), u"aa"_s);
        QCOMPARE(desk.field->keyEvents.constLast(), QEvent::KeyRelease);
    }

    void leavesMenusToTheMenuKeyWhileAnotherKeyIsHeld()
    {
        Desk desk;
        desk.startForOnePress();
        press(*desk.field, k);
        sendMenu(*desk.field, QContextMenuEvent::Keyboard);
        QCOMPARE(desk.field->menus, 1);
    }

    void leavesMenusToTheMouseWhileTheMenuKeyIsHeld()
    {
        Desk desk;
        desk.startForOnePress();
        press(*desk.field, menu);
        sendMenu(*desk.field, QContextMenuEvent::Mouse);
        QCOMPARE(desk.field->menus, 1);
    }

    void leavesAFreshPressToShortcuts()
    {
        Desk desk;
        desk.startForOnePress();
        press(*desk.button, k, Qt::ControlModifier);
        QVERIFY(!send(*desk.button, QEvent::ShortcutOverride, k, Qt::ControlModifier));
    }

    void leavesOtherKeysToTheWindowWhileOneIsHeld()
    {
        Desk desk;
        desk.startForOnePress();
        press(*desk.field, k);
        press(*desk.field, a);
        repeat(*desk.field, a);
        repeat(*desk.field, k);
        release(*desk.field, a);
        QCOMPARE(desk.field->text(), u"aa"_s);
        QCOMPARE(desk.field->keyEvents.constLast(), QEvent::KeyRelease);
        QCOMPARE(desk.field->keyEvents.size(), 4);
    }

    void hearsAFreshPressInTheNextRecording()
    {
        Desk desk;
        desk.startForOnePress();
        press(*desk.field, k);
        desk.startForOnePress();
        repeat(*desk.field, k);
        release(*desk.field, k);
        press(*desk.field, k);
        QCOMPARE(desk.heard.size(), 2);
    }
};

QTEST_MAIN(LinuxEventMonitorTest)
#include "LinuxEventMonitorTest.moc"
