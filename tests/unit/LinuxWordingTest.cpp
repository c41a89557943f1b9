// The words of Linux desktops, for keys and in sentences.

#include "platform/linux/wording/LinuxWording.h"
#include "platform/KeyModifier.h"
#include "platform/KeyUser.h"
#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/layout/KeyboardLayout.h"

#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>
#include <limits>

using namespace Qt::StringLiterals;

namespace
{
class FakeKeyboardLayout : public KeyboardLayout
{
public:
    void start() override { }
    using KeyboardLayout::setLabels;
};

QProcessEnvironment environment(const QString &desktops)
{
    QProcessEnvironment made;
    made.insert(u"XDG_CURRENT_DESKTOP"_s, desktops);
    return made;
}

/// The words of a desktop whose keyboard layout is a US one, or yet unknown.
struct Words {
    FakeKeyboardLayout layout;
    LinuxWording wording;

    explicit Words(const QString &desktops = u"XFCE"_s)
        : wording(environment(desktops), layout, u"X11"_s)
    {
    }
};

KeyLabels labels(const char *layout)
{
    const XkbContext context(xkb_context_new(XKB_CONTEXT_NO_ENVIRONMENT_NAMES));
    const xkb_rule_names names{"evdev", "pc105", layout, "", ""};
    const XkbKeymap map(
        xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
    return {map.get(), 0};
}

constexpr qint64 keyZ = 6;
constexpr qint64 keyT = 17;

const KeyUser anotherProgram{KeyUser::Kind::program};

KeyUser action(const QString &name)
{
    return {KeyUser::Kind::desktop, name};
}
} // namespace

class LinuxWordingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void namesEveryKey()
    {
        const std::map<qint64, QString> names{
            {0, u"A"_s},
            {1, u"S"_s},
            {2, u"D"_s},
            {3, u"F"_s},
            {4, u"H"_s},
            {5, u"G"_s},
            {6, u"Z"_s},
            {7, u"X"_s},
            {8, u"C"_s},
            {9, u"V"_s},
            {10, u"<"_s},
            {11, u"B"_s},
            {12, u"Q"_s},
            {13, u"W"_s},
            {14, u"E"_s},
            {15, u"R"_s},
            {16, u"Y"_s},
            {17, u"T"_s},
            {18, u"1"_s},
            {19, u"2"_s},
            {20, u"3"_s},
            {21, u"4"_s},
            {22, u"6"_s},
            {23, u"5"_s},
            {24, u"="_s},
            {25, u"9"_s},
            {26, u"7"_s},
            {27, u"-"_s},
            {28, u"8"_s},
            {29, u"0"_s},
            {30, u"]"_s},
            {31, u"O"_s},
            {32, u"U"_s},
            {33, u"["_s},
            {34, u"I"_s},
            {35, u"P"_s},
            {36, u"Return"_s},
            {37, u"L"_s},
            {38, u"J"_s},
            {39, u"'"_s},
            {40, u"K"_s},
            {41, u";"_s},
            {42, u"\\"_s},
            {43, u","_s},
            {44, u"/"_s},
            {45, u"N"_s},
            {46, u"M"_s},
            {47, u"."_s},
            {48, u"Tab"_s},
            {49, u"Space"_s},
            {50, u"`"_s},
            {51, u"Backspace"_s},
            {53, u"Esc"_s},
            {54, u"Right Super"_s},
            {55, u"Left Super"_s},
            {56, u"Left Shift"_s},
            {57, u"Caps Lock"_s},
            {58, u"Left Alt"_s},
            {59, u"Left Ctrl"_s},
            {60, u"Right Shift"_s},
            {61, u"Right Alt"_s},
            {62, u"Right Ctrl"_s},
            {63, u"Fn"_s},
            {64, u"F17"_s},
            {65, u"Num ."_s},
            {67, u"Num *"_s},
            {69, u"Num +"_s},
            {71, u"Num Lock"_s},
            {72, u"Volume Up"_s},
            {73, u"Volume Down"_s},
            {74, u"Mute"_s},
            {75, u"Num /"_s},
            {76, u"Num Enter"_s},
            {78, u"Num -"_s},
            {79, u"F18"_s},
            {80, u"F19"_s},
            {81, u"Num ="_s},
            {82, u"Num 0"_s},
            {83, u"Num 1"_s},
            {84, u"Num 2"_s},
            {85, u"Num 3"_s},
            {86, u"Num 4"_s},
            {87, u"Num 5"_s},
            {88, u"Num 6"_s},
            {89, u"Num 7"_s},
            {90, u"F20"_s},
            {91, u"Num 8"_s},
            {92, u"Num 9"_s},
            {93, u"¥"_s},
            {94, u"_"_s},
            {95, u"Num ,"_s},
            {96, u"F5"_s},
            {97, u"F6"_s},
            {98, u"F7"_s},
            {99, u"F3"_s},
            {100, u"F8"_s},
            {101, u"F9"_s},
            {102, u"Eisu"_s},
            {103, u"F11"_s},
            {104, u"Kana"_s},
            {105, u"Print"_s},
            {106, u"F16"_s},
            {107, u"Scroll Lock"_s},
            {109, u"F10"_s},
            {110, u"Menu"_s},
            {111, u"F12"_s},
            {113, u"Pause"_s},
            {114, u"Insert"_s},
            {115, u"Home"_s},
            {116, u"Page Up"_s},
            {117, u"Delete"_s},
            {118, u"F4"_s},
            {119, u"End"_s},
            {120, u"F2"_s},
            {121, u"Page Down"_s},
            {122, u"F1"_s},
            {123, u"Left"_s},
            {124, u"Right"_s},
            {125, u"Down"_s},
            {126, u"Up"_s},
        };
        const Words words;
        std::map<qint64, QString> found;
        for (const KeyCodes::PhysicalKey &key : KeyCodes::allKeys())
            found[qint64(key.virtualKey)] = words.wording.keys(qint64(key.virtualKey), 0);
        QCOMPARE(found.size(), names.size());
        for (const auto &[keyCode, name] : names)
            QCOMPARE(found[keyCode], name);
    }

    void numbersCodesThatNoKeyHas_data()
    {
        QTest::addColumn<qint64>("keyCode");
        QTest::addColumn<QString>("text");
        const auto add = [](qint64 keyCode, const QString &text) {
            QTest::newRow(qPrintable(text)) << keyCode << text;
        };
        add(52, u"Key 52"_s);
        add(66, u"Key 66"_s);
        add(68, u"Key 68"_s);
        add(70, u"Key 70"_s);
        add(77, u"Key 77"_s);
        add(108, u"Key 108"_s);
        add(112, u"Key 112"_s);
        add(127, u"Key 127"_s);
        add(-1, u"Key -1"_s);
        add(qint64(1) << 32, u"Key 4294967296"_s);
        add(std::numeric_limits<qint64>::max(), u"Key 9223372036854775807"_s);
        add(std::numeric_limits<qint64>::min(), u"Key -9223372036854775808"_s);
    }
    void numbersCodesThatNoKeyHas()
    {
        QFETCH(const qint64, keyCode);
        QTEST(Words().wording.keys(keyCode, 0), "text");
    }

    void numbersAKeyWhoseNameIsOnAnotherKey()
    {
        Words words;
        words.layout.setLabels(labels("fr"));
        QCOMPARE(words.wording.keys(28, controlKey), u"Ctrl+_"_s);
        QCOMPARE(words.wording.keys(94, controlKey), u"Ctrl+Key 94"_s);
    }

    void namesTheModifiersInOneOrder_data()
    {
        QTest::addColumn<qint64>("modifiers");
        QTest::addColumn<QString>("text");
        const auto add = [](const QString &text, qint64 modifiers) {
            QTest::newRow(qPrintable(text)) << modifiers << text;
        };
        add(u"T"_s, 0);
        add(u"Shift+T"_s, shiftKey);
        add(u"Alt+T"_s, optionKey);
        add(u"Alt+Shift+T"_s, optionKey | shiftKey);
        add(u"Ctrl+T"_s, controlKey);
        add(u"Ctrl+Shift+T"_s, controlKey | shiftKey);
        add(u"Ctrl+Alt+T"_s, controlKey | optionKey);
        add(u"Ctrl+Alt+Shift+T"_s, controlKey | optionKey | shiftKey);
        add(u"Super+T"_s, commandKey);
        add(u"Super+Shift+T"_s, commandKey | shiftKey);
        add(u"Super+Alt+T"_s, commandKey | optionKey);
        add(u"Super+Alt+Shift+T"_s, commandKey | optionKey | shiftKey);
        add(u"Super+Ctrl+T"_s, commandKey | controlKey);
        add(u"Super+Ctrl+Shift+T"_s, commandKey | controlKey | shiftKey);
        add(u"Super+Ctrl+Alt+T"_s, commandKey | controlKey | optionKey);
        add(u"Super+Ctrl+Alt+Shift+T"_s, commandKey | controlKey | optionKey | shiftKey);
    }
    void namesTheModifiersInOneOrder()
    {
        QFETCH(const qint64, modifiers);
        QTEST(Words().wording.keys(keyT, modifiers), "text");
        constexpr qint64 unknownBits = (qint64(1) << 40) | 0x400 | 0xff;
        QTEST(Words().wording.keys(keyT, modifiers | unknownBits), "text");
    }

    void readsEveryMask()
    {
        const Words words;
        QCOMPARE(words.wording.keys(keyT, -1), u"Super+Ctrl+Alt+Shift+T"_s);
        QCOMPARE(words.wording.keys(keyT, std::numeric_limits<qint64>::min()), u"T"_s);
        QCOMPARE(words.wording.keys(-5, -1), u"Super+Ctrl+Alt+Shift+Key -5"_s);
    }

    void callsDesktopsAndTheirKeysAsTheyDo_data()
    {
        QTest::addColumn<QString>("desktops");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("superKey");
        const auto add = [](const char *desktops, const QString &name,
                            const QString &superKey = u"Super"_s) {
            QTest::newRow(desktops) << QString::fromLatin1(desktops) << name << superKey;
        };
        add("GNOME", u"GNOME"_s);
        add("ubuntu:GNOME", u"GNOME"_s);
        add("GNOME-Flashback:GNOME", u"GNOME"_s);
        add("Unity:Unity7:ubuntu", u"Unity"_s);
        add("Pantheon", u"Pantheon"_s);
        add("Budgie:GNOME", u"Budgie"_s);
        add("KDE", u"Plasma"_s, u"Meta"_s);
        add("XFCE", u"Xfce"_s);
        add("X-Cinnamon", u"Cinnamon"_s);
        add("MATE", u"MATE"_s);
        add("LXQt", u"LXQt"_s, u"Meta"_s);
        add("sway", u"your desktop"_s);
        add("none:", u"your desktop"_s);
    }
    void callsDesktopsAndTheirKeysAsTheyDo()
    {
        QFETCH(const QString, desktops);
        QFETCH(const QString, name);
        QFETCH(const QString, superKey);
        const Words words(desktops);
        const LinuxWording &wording = words.wording;
        const QString keys = wording.keys(keyT, commandKey | shiftKey);
        QCOMPARE(keys, superKey + u"+Shift+T"_s);
        QCOMPARE(wording.requiredModifiers(), superKey + u", Ctrl or Alt"_s);
        QCOMPARE(wording.alreadyUsed(keys, action(u"Lock Screen"_s)),
                 keys + u" is already used by "_s + name + u" (Lock Screen). It may not work."_s);
        QCOMPARE(wording.alreadyUsed(keys, KeyUser()),
                 keys + u" is already used by "_s + name + u". It may not work."_s);
        QCOMPARE(wording.alreadyUsed(keys, anotherProgram),
                 keys + u" is already used by another program. It may not work."_s);
    }

    void saysWhoKeepsTheSuperKey()
    {
        const KeyUser user{KeyUser::Kind::superKey};
        QCOMPARE(Words(u"GNOME"_s).wording.alreadyUsed(u"Super+J"_s, user),
                 u"Super+J does not reach apps on GNOME while the Super key alone opens the "
                 "overview."_s);
        QCOMPARE(Words(u"X-Cinnamon"_s).wording.alreadyUsed(u"Super+J"_s, user),
                 u"Super+J does not reach apps on Cinnamon while the Super key alone opens the "
                 "menu."_s);
    }

    void saysTheSameOnAllDesktops_data()
    {
        QTest::addColumn<QString>("desktops");
        for (const char *desktops : {"ubuntu:GNOME", "Unity", "Pantheon", "Budgie:GNOME", "KDE",
                                     "XFCE", "X-Cinnamon", "MATE", "LXQt", "sway", "none"})
            QTest::newRow(desktops) << QString::fromLatin1(desktops);
    }
    void saysTheSameOnAllDesktops()
    {
        QFETCH(const QString, desktops);
        const Words words(desktops);
        const LinuxWording &wording = words.wording;
        QCOMPARE(wording.couldNotOpen(u"“x”"_s), u"Your desktop could not open “x”."_s);
        QCOMPARE(wording.couldNotOpen(u"“%1 %2”"_s), u"Your desktop could not open “%1 %2”."_s);
        QCOMPARE(wording.couldNotOpen(u"the website"_s),
                 u"Your desktop could not open the website."_s);
        QCOMPARE(wording.couldNotRunShortcuts(), u"No program on your computer runs Shortcuts."_s);
        QCOMPARE(wording.computer(), u"computer"_s);
        QCOMPARE(wording.system(), u"your desktop"_s);
        QCOMPARE(wording.loginItemIsOff(),
                 u"Switched off in your desktop's startup applications."_s);
        QCOMPARE(wording.openLoginItems(), u"Open Startup Applications"_s);
        QCOMPARE(wording.nameOfShortcut(), u"Name of the Shortcut, as in your shortcuts folder"_s);
        QCOMPARE(wording.credits(),
                 u"Key combinations: X11\n"
                 "Built with Qt, GLib, xcb, xkbcommon, wayland, libcanberra and nlohmann-json."_s);
    }

    void knowsTheVersion()
    {
        static const QRegularExpression number(u"\\A[0-9]+\\.[0-9]+\\.[0-9]+\\z"_s);
        QVERIFY(number.match(Words().wording.version().value_or(QString())).hasMatch());
    }

    void namesTheActionOnOneShortLine_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("shown");
        const auto add = [](const char *row, const QString &name, const QString &shown) {
            QTest::newRow(row) << name << shown;
        };
        const QString short40(40, u'x');
        add("a command", u"exo-open --launch TerminalEmulator"_s,
            u" (exo-open --launch TerminalEmulator)"_s);
        add("none", u""_s, u""_s);
        add("only a line break", u" \n"_s, u""_s);
        add("several lines", u"first\nsecond\r\nthird\tfourth"_s,
            u" (first second third fourth)"_s);
        add("controls that change the direction", u"\u202Ea\u2066b\u2069"_s, u" (ab)"_s);
        add("markup", u"<b>a</b> & %1"_s, u" (<b>a</b> & %1)"_s);
        add("as long as may be", short40, u" ("_s + short40 + u')');
        add("too long by one", QString(20, u'a') + u'-' + QString(20, u'b'),
            u" ("_s + QString(20, u'a') + u'…' + QString(19, u'b') + u')');
        add("too long by far", QString(1000, u'a') + QString(1000, u'b'),
            u" ("_s + QString(20, u'a') + u'…' + QString(19, u'b') + u')');
        // Each key sign has two code units.
        add("a pair across the first cut", QString(19, u'a') + u"🔑"_s + QString(30, u'b'),
            u" ("_s + QString(19, u'a') + u'…' + QString(19, u'b') + u')');
        add("a pair across the second cut", QString(30, u'a') + u"🔑"_s + QString(18, u'b'),
            u" ("_s + QString(20, u'a') + u'…' + QString(18, u'b') + u')');
    }
    void namesTheActionOnOneShortLine()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, shown);
        QCOMPARE(Words().wording.alreadyUsed(u"Ctrl+Alt+T"_s, action(name)),
                 u"Ctrl+Alt+T is already used by Xfce"_s + shown + u". It may not work."_s);
    }

    void followsTheLabels()
    {
        Words words;
        QSignalSpy changes(&words.wording, &Wording::changed);
        QCOMPARE(words.wording.keys(keyZ, controlKey), u"Ctrl+Z"_s);
        words.layout.setLabels(labels("de"));
        QCOMPARE(changes.count(), 1);
        QCOMPARE(words.wording.keys(keyZ, controlKey), u"Ctrl+Y"_s);
        words.layout.setLabels(labels("de"));
        QCOMPARE(changes.count(), 1);
    }
};

QTEST_APPLESS_MAIN(LinuxWordingTest)
#include "LinuxWordingTest.moc"
