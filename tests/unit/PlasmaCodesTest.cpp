// What Plasma is asked for, for keys and modifiers in real layouts.

#include "platform/linux/layout/PlasmaCodes.h"
#include "platform/KeyModifier.h"
#include "platform/linux/layout/Xkbcommon.h"

#include <QKeySequence>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
// Virtual key codes, by what a US keyboard has on the keys.
constexpr quint32 keyA = 0;
constexpr quint32 keyQ = 12;
constexpr quint32 keyY = 16;
constexpr quint32 key1 = 18;
constexpr quint32 keyMinus = 27;
constexpr quint32 keyLeftBracket = 33;
constexpr quint32 keyK = 40;
constexpr quint32 keySemicolon = 41;
constexpr quint32 keyTab = 48;
constexpr quint32 keySpace = 49;
constexpr quint32 keyBacktick = 50;
constexpr quint32 keypadMultiply = 67;
constexpr quint32 keypadEnter = 76;
constexpr quint32 keypad1 = 83;
constexpr quint32 keyF5 = 96;
constexpr quint32 keyF13 = 105;
constexpr quint32 keyF15 = 113;
constexpr quint32 keyF14 = 107;
constexpr quint32 keyLeft = 123;

constexpr quint32 control = controlKey;
constexpr quint32 controlShift = controlKey | shiftKey;
constexpr quint32 controlAlt = controlKey | optionKey;

/// The layout with this index of those that the names say.
KeySymbols symbolsOf(const char *layouts, const char *variants = "", quint32 layout = 0)
{
    const XkbContext context(xkb_context_new(XKB_CONTEXT_NO_ENVIRONMENT_NAMES));
    const xkb_rule_names names{"evdev", "pc105", layouts, variants, ""};
    const XkbKeymap keymap(
        xkb_keymap_new_from_names(context.get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
    return {keymap.get(), layout};
}

/// The codes as texts, such as "Ctrl+K".
QString textOf(const QList<int> &codes)
{
    QStringList texts;
    for (const int code : codes)
        texts << QKeySequence(code).toString();
    return texts.join(u' ');
}

QString codes(const KeySymbols &symbols, quint32 key, quint32 modifiers,
              PlasmaVersion version = PlasmaVersion::five)
{
    return textOf(plasmaCodes(symbols, VirtualKey(key), modifiers, version));
}
} // namespace

class PlasmaCodesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void areWhatTheCompositorSees_data()
    {
        QTest::addColumn<KeySymbols>("symbols");
        QTest::addColumn<quint32>("key");
        QTest::addColumn<quint32>("modifiers");
        QTest::addColumn<QString>("expected");
        const auto add = [](const char *name, const KeySymbols &symbols, quint32 key,
                            quint32 modifiers, const QString &expected) {
            QTest::newRow(name) << symbols << key << modifiers << expected;
        };
        const auto us = symbolsOf("us");
        add("a letter", us, keyK, control, u"Ctrl+K"_s);
        add("a letter and Shift", us, keyK, controlShift, u"Ctrl+Shift+K"_s);
        add("all modifiers", us, keyK, controlShift | optionKey | commandKey,
            u"Meta+Ctrl+Alt+Shift+K"_s);
        add("no modifier", us, keyK, 0, u"K"_s);
        add("a digit", us, key1, control, u"Ctrl+1"_s);
        add("a digit and Shift", us, key1, controlShift, u"Ctrl+!"_s);
        add("a sign and Shift", us, keyMinus, commandKey | shiftKey, u"Meta+_"_s);
        add("Tab", us, keyTab, controlAlt, u"Ctrl+Alt+Tab"_s);
        add("Tab and Shift", us, keyTab, controlShift, u"Ctrl+Backtab"_s);
        add("Space and Shift", us, keySpace, controlShift, u"Ctrl+Shift+Space"_s);
        add("an arrow and Shift", us, keyLeft, commandKey | shiftKey, u"Meta+Shift+Left"_s);
        add("a function key and Shift", us, keyF5, controlShift, u"Ctrl+Shift+F5"_s);
        add("a function key and Alt", us, keyF5, optionKey, u"Alt+F5"_s);
        add("a key of the consoles", us, keyF5, controlAlt, {});
        add("a key of the consoles and Super", us, keyF5, controlAlt | commandKey, {});
        add("a key of the consoles and Shift", us, keyF5, controlAlt | shiftKey,
            u"Ctrl+Alt+Shift+F5"_s);
        add("Print", us, keyF13, control, u"Ctrl+Print"_s);
        add("Print and Alt, which is SysReq", us, keyF13, optionKey, u"SysReq"_s);
        add("Scroll Lock", us, keyF14, control, u"Ctrl+ScrollLock"_s);
        add("Pause", us, keyF15, commandKey, u"Meta+Pause"_s);
        add("Pause and Control, which is Break", us, keyF15, control, {});
        add("a keypad that looks like other keys", us, keypad1, control, {});
        add("Enter of that keypad", us, keypadEnter, control, {});
        add("a key that does not exist", us, 200, control, {});

        const auto de = symbolsOf("de");
        add("a letter of another place", de, keyY, control, u"Ctrl+Z"_s);
        add("a letter with an umlaut", de, keySemicolon, control, u"Ctrl+Ö"_s);
        add("a letter with an umlaut and Shift", de, keySemicolon, controlShift, u"Ctrl+Shift+Ö"_s);
        add("a sign of another place", de, keyMinus, control, u"Ctrl+ß"_s);
        add("a sign of another place and Shift", de, keyMinus, controlShift, u"Ctrl+?"_s);
        add("a dead key", de, keyBacktick, control, {});
        add("a sign that Shift puts on a dead key", de, keyBacktick, controlShift, u"Ctrl+°"_s);

        const auto fr = symbolsOf("fr");
        add("a digit's key that gives a sign", fr, key1, control, u"Ctrl+&"_s);
        add("a digit that Shift makes", fr, key1, controlShift, u"Ctrl+1"_s);
        add("Q on the place of A", fr, keyA, control, u"Ctrl+Q"_s);
        add("another dead key", fr, keyLeftBracket, control, {});
        add("another dead key and Shift", fr, keyLeftBracket, controlShift, {});

        const auto usRu = symbolsOf("us,ru", ",", 1);
        add("the first layout's letter", usRu, keyK, controlAlt, u"Ctrl+Alt+K"_s);
        add("the first layout's letter and Shift", usRu, keyK, controlShift, u"Ctrl+Shift+K"_s);
        add("the first layout's sign", usRu, keyLeftBracket, control, u"Ctrl+["_s);
        add("a sign that both have", usRu, key1, controlShift, u"Ctrl+!"_s);
        add("a letter without any Latin one", symbolsOf("ru"), keyK, control, u"Ctrl+Л"_s);
        add("the letter that the first layout has elsewhere", symbolsOf("us,ru,us", "dvorak,,", 1),
            keyQ, control, u"Ctrl+'"_s);
        add("dead keys of a second layout", symbolsOf("us,de", ",", 1), keyBacktick, control, {});

        const auto dvorak = symbolsOf("us", "dvorak");
        add("a letter in Dvorak", dvorak, keyK, control, u"Ctrl+T"_s);
        add("a sign in Dvorak", dvorak, keyQ, control, u"Ctrl+'"_s);
        add("a sign in Dvorak and Shift", dvorak, keyQ, controlShift, u"Ctrl+\""_s);
    }
    void areWhatTheCompositorSees()
    {
        QFETCH(const KeySymbols, symbols);
        QFETCH(const quint32, key);
        QFETCH(const quint32, modifiers);
        QTEST(codes(symbols, key, modifiers), "expected");
    }

    void areBothOfTheKeypadOnPlasma6_data()
    {
        QTest::addColumn<quint32>("key");
        QTest::addColumn<quint32>("modifiers");
        QTest::addColumn<QString>("expected");
        QTest::newRow("a digit, with and without Num Lock")
            << keypad1 << control << u"Ctrl+Num+End Ctrl+Num+1"_s;
        QTest::newRow("Enter") << keypadEnter << control << u"Ctrl+Num+Enter"_s;
        QTest::newRow("a sign") << keypadMultiply << control << u"Ctrl+Num+*"_s;
        QTest::newRow("a sign whose combination the compositor has")
            << keypadMultiply << controlAlt << QString();
        QTest::newRow("another key") << keyK << control << u"Ctrl+K"_s;
    }
    void areBothOfTheKeypadOnPlasma6()
    {
        QFETCH(const quint32, key);
        QFETCH(const quint32, modifiers);
        QTEST(codes(symbolsOf("us"), key, modifiers, PlasmaVersion::six), "expected");
    }

    void areNoneWithoutALayout() { QCOMPARE(codes({}, keyK, control), QString()); }
};

QTEST_GUILESS_MAIN(PlasmaCodesTest)
#include "PlasmaCodesTest.moc"
