// The desktop's shortcuts on the keys of real layouts.

#include "platform/linux/desktopkeys/LinuxSymbolicHotkeys.h"
#include "platform/linux/layout/Xkbcommon.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
// Virtual key codes, by what a US keyboard has on the keys.
constexpr qint64 keyA = 0;
constexpr qint64 keyS = 1;
constexpr qint64 keyD = 2;
constexpr qint64 keyZ = 6;
constexpr qint64 keyQ = 12;
constexpr qint64 keyE = 14;
constexpr qint64 keyY = 16;
constexpr qint64 key1 = 18;
constexpr qint64 key3 = 20;
constexpr qint64 keyEqual = 24;
constexpr qint64 keySemicolon = 41;
constexpr qint64 keySlash = 44;
constexpr qint64 keyTab = 48;
constexpr qint64 keyBeside1 = 50;
constexpr qint64 keyEscape = 53;
constexpr qint64 keyCapsLock = 57;
constexpr qint64 keyVolumeUp = 72;
constexpr qint64 keyKeypad1 = 83;
constexpr qint64 keyPrint = 105;
constexpr qint64 keyF4 = 118;
constexpr qint64 keyBesideLeftShift = 10;

/// Without an environment of its own, so that the layouts are those that the name says.
LayoutKeys layoutKeys(const char *layouts, quint32 layoutInUse = 0, const char *options = "")
{
    const XkbContext context(xkb_context_new(XKB_CONTEXT_NO_ENVIRONMENT_NAMES));
    const xkb_rule_names names{"evdev", "pc105", layouts, "", options};
    const XkbKeymap map(
        xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
    return map ? LayoutKeys(map.get(), layoutInUse) : LayoutKeys();
}

class FakeDesktopKeys : public DesktopKeys
{
public:
    void start() override { ++starts; }
    using DesktopKeys::setKeys;

    /// Keys of actions without a name.
    void setAccelerators(const std::optional<QList<Accelerator>> &accelerators)
    {
        if (!accelerators)
            return setKeys(std::nullopt);
        QList<DesktopKey> keys;
        for (const Accelerator &accelerator : *accelerators)
            keys << DesktopKey{accelerator};
        setKeys(keys);
    }

    int starts = 0;
};

class FakeKeyboardLayout : public KeyboardLayout
{
public:
    void start() override { ++starts; }
    using KeyboardLayout::setKeys;

    int starts = 0;
};

/// A desktop with one shortcut, on Command and a symbol of the US layout.
struct Desk {
    FakeDesktopKeys *desktopKeys = new FakeDesktopKeys;
    FakeKeyboardLayout layout;
    LinuxSymbolicHotkeys hotkeys{std::unique_ptr<DesktopKeys>(desktopKeys), layout, nullptr};
    QSignalSpy notices{&hotkeys, &SymbolicHotkeys::changed};

    explicit Desk(const LayoutKeys &keys = layoutKeys("us")) { layout.setKeys(keys); }

    /// The key codes that the shortcut has on this desk, with their flags.
    std::optional<QList<SymbolicHotkey>> resolve(const Accelerator &shortcut)
    {
        desktopKeys->setAccelerators(QList{shortcut});
        return hotkeys.copySymbolicHotkeys();
    }
};

Accelerator onKeysym(const char *name, quint32 modifiers = commandEventFlag)
{
    return {.modifiers = modifiers, .keysym = xkb_keysym_from_name(name, XKB_KEYSYM_NO_FLAGS)};
}

QList<qint64> codes(const std::optional<QList<SymbolicHotkey>> &hotkeys)
{
    QList<qint64> all;
    for (const SymbolicHotkey &hotkey : hotkeys.value_or(QList<SymbolicHotkey>()))
        all << hotkey.code;
    return all;
}
} // namespace

class LinuxSymbolicHotkeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsTheKeysOfASymbol_data()
    {
        QTest::addColumn<LayoutKeys>("keys");
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QList<qint64>>("codes");
        const auto add = [](const char *row, const LayoutKeys &keys, const char *name,
                            const QList<qint64> &codes) {
            QTest::newRow(row) << keys << QByteArray(name) << codes;
        };
        const LayoutKeys us = layoutKeys("us");
        const LayoutKeys de = layoutKeys("de");
        const LayoutKeys fr = layoutKeys("fr");
        add("a letter on a US keyboard", us, "z", {keyZ});
        add("a letter on a German one", de, "z", {keyY});
        add("a letter on a French one", fr, "q", {keyA});
        add("a letter on a Dvorak keyboard", layoutKeys("us(dvorak)"), "e", {keyD});
        add("a letter that the layout has not", de, "Cyrillic_a", {});
        add("a symbol beside the letters", us, "semicolon", {keySemicolon});
        add("a symbol that needs Shift", us, "exclam", {key1});
        add("a digit that needs Shift", fr, "1", {key1});
        add("a symbol that needs no Shift there", fr, "exclam", {keySlash});
        add("a symbol that needs AltGr", de, "at", {keyQ});
        add("the lowest level that has it, not all", us, "less", {keyBesideLeftShift});
        add("a key that is the same everywhere", de, "F4", {keyF4});
        add("a key of the number pad", us, "KP_1", {keyKeypad1});
        add("Tab with Shift", us, "ISO_Left_Tab", {keyTab});
        add("Print", us, "Print", {keyPrint});
        add("a media key", us, "XF86AudioRaiseVolume", {keyVolumeUp});
        add("a media key that has no virtual code", us, "XF86Calculator", {});
        add("a symbol on a key that the user has moved", layoutKeys("us", 0, "caps:swapescape"),
            "Escape", {keyCapsLock});
        add("a symbol on two keys", layoutKeys("us", 0, "caps:escape"), "Escape",
            {keyEscape, keyCapsLock});
        add("the layout in use", layoutKeys("us,de", 1), "z", {keyY});
        add("the layout in use, of three", layoutKeys("de,us,fr", 1), "z", {keyZ});
        add("another layout where that in use has it not", layoutKeys("us,ru", 1), "s", {keyS});
        add("the next other layout that has it", layoutKeys("ru,fr,us"), "q", {keyA});
        add("a keyboard without keys", LayoutKeys(), "z", {});
    }
    void findsTheKeysOfASymbol()
    {
        QFETCH(const LayoutKeys, keys);
        QFETCH(const QByteArray, name);
        Desk desk(keys);
        QTEST(codes(desk.resolve(onKeysym(name.constData()))), "codes");
    }

    void keepsTheModifiers()
    {
        Desk desk;
        constexpr quint32 modifiers = shiftEventFlag | optionEventFlag;
        const QList<SymbolicHotkey> expected{{key3, modifiers, true}};
        QCOMPARE(desk.resolve(onKeysym("3", modifiers)), expected);
    }

    void addsShiftWhereItGoesWithoutSaying_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<bool>("impliesShift");
        QTest::addColumn<SymbolicHotkey>("hotkey");
        constexpr qint64 command = commandEventFlag;
        constexpr qint64 shiftCommand = commandEventFlag | shiftEventFlag;
        const auto add = [](const char *row, const char *name, bool impliesShift,
                            const SymbolicHotkey &hotkey) {
            QTest::newRow(row) << QByteArray(name) << impliesShift << hotkey;
        };
        add("a symbol that needs it", "plus", true, {keyEqual, shiftCommand, true});
        add("a symbol that needs it not", "equal", true, {keyEqual, command, true});
        add("a desktop that always says it", "plus", false, {keyEqual, command, true});
    }
    void addsShiftWhereItGoesWithoutSaying()
    {
        QFETCH(const QByteArray, name);
        QFETCH(const bool, impliesShift);
        QFETCH(const SymbolicHotkey, hotkey);
        Desk desk;
        auto shortcut = onKeysym(name.constData());
        shortcut.impliesShift = impliesShift;
        QCOMPARE(desk.resolve(shortcut), QList{hotkey});
    }

    void findsAKeyByItsKeyCodeInAnyLayout()
    {
        Desk desk(layoutKeys("de"));
        QCOMPARE(codes(desk.resolve({.modifiers = commandEventFlag, .keycode = XKeycode(49)})),
                 QList{keyBeside1});
    }

    void carriesTheActionToEachOfItsKeys()
    {
        Desk desk(layoutKeys("us", 0, "caps:escape"));
        desk.desktopKeys->setKeys(
            QList<DesktopKey>{{onKeysym("Escape"), u"Leave"_s},
                              {{.modifiers = 0, .keycode = XKeycode(49)}, u"Open"_s},
                              {onKeysym("F4"), std::nullopt}});
        constexpr qint64 command = commandEventFlag;
        QCOMPARE(desk.hotkeys.copySymbolicHotkeys(),
                 (QList<SymbolicHotkey>{{keyEscape, command, true, u"Leave"_s},
                                        {keyCapsLock, command, true, u"Leave"_s},
                                        {keyBeside1, 0, true, u"Open"_s},
                                        {keyF4, command, true}}));
    }

    void keepsActionsOfTheSameKeysInOrder()
    {
        Desk desk;
        desk.desktopKeys->setKeys(
            QList<DesktopKey>{{onKeysym("e"), u"Second"_s}, {onKeysym("e"), u"First"_s}});
        constexpr qint64 command = commandEventFlag;
        QCOMPARE(desk.hotkeys.copySymbolicHotkeys(),
                 (QList<SymbolicHotkey>{{keyE, command, true, u"Second"_s},
                                        {keyE, command, true, u"First"_s}}));
    }

    void tellsOfAnActionThatIsRenamed()
    {
        Desk desk;
        desk.desktopKeys->setKeys(QList<DesktopKey>{{onKeysym("e"), u"Before"_s}});
        desk.desktopKeys->setKeys(QList<DesktopKey>{{onKeysym("e"), u"After"_s}});
        QCOMPARE(desk.notices.count(), 2);
    }

    void leavesOutAKeyCodeWithoutAVirtualKeyCode()
    {
        Desk desk;
        QCOMPARE(codes(desk.resolve({.modifiers = commandEventFlag, .keycode = XKeycode(255)})),
                 QList<qint64>());
    }

    void startsNothingBeforeSomebodyAsks()
    {
        Desk desk;
        QCOMPARE(desk.desktopKeys->starts, 0);
        desk.hotkeys.copySymbolicHotkeys();
        desk.hotkeys.copySymbolicHotkeys();
        QCOMPARE(desk.desktopKeys->starts, 1);
        // The layout is also used by others, who start it.
        QCOMPARE(desk.layout.starts, 0);
    }

    void knowsNothingWhereTheDesktopTellsNothing()
    {
        const FakeKeyboardLayout layout;
        LinuxSymbolicHotkeys unknownDesktop(nullptr, layout, nullptr);
        QVERIFY(!unknownDesktop.copySymbolicHotkeys());
        QVERIFY(!unknownDesktop.isHeldElsewhere(0, 0));
        QVERIFY(!Desk().hotkeys.copySymbolicHotkeys());
    }

    void tellsOfEachChangeOnce()
    {
        Desk desk;
        desk.desktopKeys->setAccelerators(QList{onKeysym("e")});
        QCOMPARE(desk.notices.count(), 1);
        desk.desktopKeys->setAccelerators(QList{onKeysym("q")});
        QCOMPARE(desk.notices.count(), 2);
        QCOMPARE(codes(desk.hotkeys.copySymbolicHotkeys()), QList{keyQ});
        desk.desktopKeys->setAccelerators(QList{onKeysym("q")});
        QCOMPARE(desk.notices.count(), 2);
    }

    void forgetsWhatADesktopHadThatHasGone()
    {
        Desk desk;
        desk.desktopKeys->setAccelerators(QList{onKeysym("e")});
        desk.desktopKeys->setAccelerators(std::nullopt);
        QVERIFY(!desk.hotkeys.copySymbolicHotkeys());
        QCOMPARE(desk.notices.count(), 2);
    }

    void followsTheLayout()
    {
        Desk desk;
        desk.desktopKeys->setAccelerators(QList{onKeysym("z")});
        desk.layout.setKeys(layoutKeys("de"));
        QCOMPARE(desk.notices.count(), 2);
        QCOMPARE(codes(desk.hotkeys.copySymbolicHotkeys()), QList{keyY});
    }

    void tellsNothingOfALayoutThatHasTheKeysWhereTheyWere()
    {
        Desk desk;
        desk.desktopKeys->setAccelerators(QList{onKeysym("e")});
        desk.layout.setKeys(layoutKeys("de"));
        QCOMPARE(desk.notices.count(), 1);
        QCOMPARE(codes(desk.hotkeys.copySymbolicHotkeys()), QList{keyE});
    }
};

QTEST_GUILESS_MAIN(LinuxSymbolicHotkeysTest)
#include "LinuxSymbolicHotkeysTest.moc"
