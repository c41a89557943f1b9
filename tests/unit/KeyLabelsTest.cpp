// The labels of the keys on real layouts and on odd key maps.

#include "platform/linux/layout/KeyLabels.h"
#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/layout/KeyboardLayout.h"
#include "platform/linux/layout/Xkbcommon.h"

#include <QSignalSpy>
#include <QTest>
#include <limits>

using namespace Qt::StringLiterals;

namespace
{
// Virtual key codes, by what a US keyboard has on the keys.
constexpr qint64 keyA = 0;
constexpr qint64 keyS = 1;
constexpr qint64 keyUnderscore = 94;

/// The virtual key codes of the keys with a character, as they lie on a keyboard: the digits, and
/// the three rows of letters.
const QList<QList<qint64>> keyRows{
    {50, 18, 19, 20, 21, 23, 22, 26, 28, 25, 29, 27, 24, 93},
    {12, 13, 14, 15, 17, 16, 32, 34, 31, 35, 33, 30, 42},
    {0, 1, 2, 3, 5, 4, 38, 40, 37, 41, 39},
    {10, 6, 7, 8, 9, 11, 45, 46, 43, 47, 44, 94},
};

XkbContext makeContext()
{
    return XkbContext(xkb_context_new(XKB_CONTEXT_NO_ENVIRONMENT_NAMES));
}

/// Without an environment of its own, so that the layouts are those that the name says.
XkbKeymap keymap(const char *layouts, const char *variants = "", const char *options = "")
{
    const xkb_rule_names names{"evdev", "pc105", layouts, variants, options};
    return XkbKeymap(
        xkb_keymap_new_from_names(makeContext().get(), &names, XKB_KEYMAP_COMPILE_NO_FLAGS));
}

/// A key map with these symbols only.
XkbKeymap keymapWith(const QByteArray &symbols,
                     const QByteArray &keycodes = "include \"evdev+aliases(qwerty)\"")
{
    const QByteArray text = "xkb_keymap { xkb_keycodes { " + keycodes
        + " }; xkb_types { include \"complete\" }; xkb_compatibility { include \"complete\" };"
          "xkb_symbols { "
        + symbols + " }; };";
    return XkbKeymap(xkb_keymap_new_from_string(makeContext().get(), text.constData(),
                                                XKB_KEYMAP_FORMAT_TEXT_V1,
                                                XKB_KEYMAP_COMPILE_NO_FLAGS));
}

/// The labels of a layout as they lie on a keyboard; "none" for keys without one.
QStringList rows(const KeyLabels &labels)
{
    QStringList found;
    for (const QList<qint64> &keyCodes : keyRows) {
        QStringList row;
        for (const qint64 keyCode : keyCodes) {
            const QString label = labels.label(keyCode);
            row << (label.isEmpty() ? u"none"_s : label);
        }
        found << row.join(u' ');
    }
    return found;
}

/// The keysym that the key gives without modifiers.
xkb_keysym_t plainKeysym(xkb_keymap *map, qint64 keyCode)
{
    const auto keys = KeyCodes::physicalKeys(VirtualKey(keyCode));
    const auto keycode = xkb_keymap_key_by_name(map, keys.first().xkbName);
    const xkb_keysym_t *keysyms = nullptr;
    const int count = xkb_keymap_key_get_syms_by_level(map, keycode, 0, 0, &keysyms);
    return count == 1 ? keysyms[0] : XKB_KEY_NoSymbol;
}

class FakeKeyboardLayout : public KeyboardLayout
{
public:
    void start() override { }
    using KeyboardLayout::setLayout;
};
} // namespace

class KeyLabelsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void areThoseOfTheLayoutInUse_data()
    {
        QTest::addColumn<QByteArray>("layouts");
        QTest::addColumn<QByteArray>("variants");
        QTest::addColumn<quint32>("layoutInUse");
        QTest::addColumn<QStringList>("rows");
        const auto add = [](const char *row, const char *layouts, const char *variants,
                            quint32 layoutInUse, const QStringList &labels) {
            QTest::newRow(row) << QByteArray(layouts) << QByteArray(variants) << layoutInUse
                               << labels;
        };
        const QStringList us{u"` 1 2 3 4 5 6 7 8 9 0 - = ¥"_s, u"Q W E R T Y U I O P [ ] \\"_s,
                             u"A S D F G H J K L ; '"_s, u"< Z X C V B N M , . / _"_s};
        const QStringList de{u"^ 1 2 3 4 5 6 7 8 9 0 ß ´ ¥"_s, u"Q W E R T Z U I O P Ü + #"_s,
                             u"A S D F G H J K L Ö Ä"_s, u"< Y X C V B N M , . - _"_s};
        const QStringList usAndRu{u"Ё 1 2 3 4 5 6 7 8 9 0 - = ¥"_s, u"Q W E R T Y U I O P Х Ъ \\"_s,
                                  u"A S D F G H J K L Ж Э"_s, u"/ Z X C V B N M Б Ю . _"_s};
        add("US", "us", "", 0, us);
        add("German", "de", "", 0, de);
        add("French, with an underscore on another key", "fr", "", 0,
            {u"² & é \" ' ( - è _ ç à ) = ¥"_s, u"A Z E R T Y U I O P ^ $ *"_s,
             u"Q S D F G H J K L M ù"_s, u"< W X C V B N , ; : ! none"_s});
        add("Spanish", "es", "", 0,
            {u"º 1 2 3 4 5 6 7 8 9 0 ' ¡ ¥"_s, u"Q W E R T Y U I O P ` + Ç"_s,
             u"A S D F G H J K L Ñ ´"_s, u"< Z X C V B N M , . - _"_s});
        add("Turkish", "tr", "", 0,
            {u"\" 1 2 3 4 5 6 7 8 9 0 * - ¥"_s, u"Q W E R T Y U I O P Ğ Ü ,"_s,
             u"A S D F G H J K L Ş İ"_s, u"< Z X C V B N M Ö Ç . _"_s});
        add("Czech", "cz", "", 0,
            {u"; + ě š č ř ž ý á í é = ´ ¥"_s, u"Q W E R T Z U I O P ú ) ¨"_s,
             u"A S D F G H J K L ů §"_s, u"\\ Y X C V B N M , . - _"_s});
        add("Russian", "ru", "", 0,
            {u"Ё 1 2 3 4 5 6 7 8 9 0 - = ¥"_s, u"Й Ц У К Е Н Г Ш Щ З Х Ъ \\"_s,
             u"Ф Ы В А П Р О Л Д Ж Э"_s, u"/ Я Ч С М И Т Ь Б Ю . _"_s});
        add("US beside Russian", "us,ru", "", 0, us);
        add("Russian beside US", "us,ru", "", 1, usAndRu);
        add("Russian before US", "ru,us", "", 0, usAndRu);
        add("Russian beside German, which has more Latin letters", "ru,de", "", 0,
            {u"Ё 1 2 3 4 5 6 7 8 9 0 - = ¥"_s, u"Q W E R T Z U I O P Ü Ъ \\"_s,
             u"A S D F G H J K L Ö Ä"_s, u"/ Y X C V B N M Б Ю . _"_s});
        add("Russian beside two layouts with Latin letters", "us,de,ru", "", 2,
            {u"Ё 1 2 3 4 5 6 7 8 9 0 - = ¥"_s, u"Q W E R T Y U I O P Ü Ъ \\"_s,
             u"A S D F G H J K L Ö Ä"_s, u"/ Z X C V B N M Б Ю . _"_s});
        add("German beside Russian", "ru,de", "", 1, de);
        add("Dvorak", "us", "dvorak", 0,
            {u"` 1 2 3 4 5 6 7 8 9 0 [ ] ¥"_s, u"' , . P Y F G C R L / = \\"_s,
             u"A O E U I D H T N S -"_s, u"< ; Q J K X B M W V Z _"_s});
        add("Greek, whose final sigma has the capital of another key", "gr", "", 0,
            {u"` 1 2 3 4 5 6 7 8 9 0 - = ¥"_s, u"; ς Ε Ρ Τ Υ Θ Ι Ο Π [ ] \\"_s,
             u"Α Σ Δ Φ Γ Η Ξ Κ Λ ´ '"_s, u"« Ζ Χ Ψ Ω Β Ν Μ , . / _"_s});
        add("Neo, with a capital sharp s", "de", "neo", 0,
            {u"^ 1 2 3 4 5 6 7 8 9 0 - ` ¥"_s, u"X V L C W K H G F Q ẞ ´ \\"_s,
             u"U I A E O S N R T D Y"_s, u"< Ü Ö Ä P Z B M , . J _"_s});
    }
    void areThoseOfTheLayoutInUse()
    {
        QFETCH(const QByteArray, layouts);
        QFETCH(const QByteArray, variants);
        QFETCH(const quint32, layoutInUse);
        const auto map = keymap(layouts.constData(), variants.constData());
        QVERIFY(map);
        QTEST(rows(KeyLabels(map.get(), layoutInUse)), "rows");
    }

    void areThoseOfAUSKeyboardAsLongAsTheLayoutIsUnknown()
    {
        QVERIFY(KeyLabels() == KeyLabels(keymap("us").get(), 0));
        QVERIFY(KeyLabels() != KeyLabels(keymap("de").get(), 0));
    }

    void belongToKeysWithACharacterOnly()
    {
        const KeyLabels labels;
        for (const qint64 keyCode :
             {qint64(36), qint64(48), qint64(49), qint64(51), qint64(52), qint64(92), qint64(95),
              qint64(126), qint64(-1), qint64(1) << 32, std::numeric_limits<qint64>::max(),
              std::numeric_limits<qint64>::min()})
            QCOMPARE(labels.label(keyCode), QString());
    }

    void differUnlessTheLayoutPutsTheSameOnTwoKeys_data()
    {
        QTest::addColumn<QByteArray>("layout");
        QTest::addColumn<QByteArray>("variant");
        const QList<std::pair<const char *, const char *>> layouts{
            {"us", ""},    {"us", "dvorak"}, {"us", "colemak"}, {"us", "intl"}, {"de", ""},
            {"de", "neo"}, {"fr", ""},       {"fr", "bepo"},    {"ch", "fr"},   {"es", ""},
            {"tr", ""},    {"tr", "f"},      {"cz", ""},        {"ru", ""},     {"gr", ""},
            {"il", ""},    {"ara", ""},      {"jp", ""},        {"jp", "kana"}, {"br", ""},
            {"th", ""},    {"vn", ""},       {"in", ""},        {"bg", ""},     {"ge", ""},
            {"kz", ""},    {"az", ""},       {"lt", ""},        {"am", ""},     {"rs", "latin"},
        };
        for (const auto &[layout, variant] : layouts)
            QTest::addRow("%s %s", layout, variant) << QByteArray(layout) << QByteArray(variant);
    }
    void differUnlessTheLayoutPutsTheSameOnTwoKeys()
    {
        QFETCH(const QByteArray, layout);
        QFETCH(const QByteArray, variant);
        const auto alone = keymap(layout.constData(), variant.constData());
        const auto beforeUS = keymap((layout + ",us").constData(), (variant + ",").constData());
        QVERIFY(alone && beforeUS);
        for (xkb_keymap *const map : {alone.get(), beforeUS.get()}) {
            const KeyLabels labels(map, 0);
            QHash<QString, xkb_keysym_t> keysyms;
            for (const qint64 keyCode : keyRows.first() + keyRows[1] + keyRows[2] + keyRows[3]) {
                const QString label = labels.label(keyCode);
                const auto keysym = plainKeysym(map, keyCode);
                const auto former = keysyms.constFind(label);
                QVERIFY2(label.isEmpty() || former == keysyms.cend()
                             || (keysym != XKB_KEY_NoSymbol && *former == keysym),
                         qPrintable(label));
                keysyms.insert(label, keysym);
            }
        }
    }

    void followTheSymbolsOfAKey_data()
    {
        QTest::addColumn<QByteArray>("symbols");
        QTest::addColumn<QString>("label");
        const auto add = [](const char *row, const char *symbols, const QString &label) {
            QTest::newRow(row) << QByteArray(symbols) << label;
        };
        add("a letter and its capital", "[ adiaeresis, Adiaeresis ]", u"Ä"_s);
        add("a letter and another one's capital", "[ a, B ]", u"a"_s);
        add("a letter without a second level", "[ a ]", u"a"_s);
        add("a capital before its letter", "[ A, a ]", u"A"_s);
        add("a letter whose capital QChar makes of another one", "[ idotless, I ]", u"I"_s);
        add("a letter that is dotted as its capital", "[ i, Iabovedot ]", u"İ"_s);
        add("a dotless letter with a dotted capital", "[ idotless, Iabovedot ]", u"ı"_s);
        add("a letter with a sign on Shift", "[ ssharp, question ]", u"ß"_s);
        add("a letter beyond the first plane", "[ U10428, U10400 ]", u"𐐀"_s);
        add("a sign", "[ ampersand, 1 ]", u"&"_s);
        add("a mark that would join the text before it", "[ U0E31, U0E4D ]", u"◌ั"_s);
        add("no symbol", "[ NoSymbol, b ]", u"A"_s);
        add("a key that does something", "[ ISO_Level3_Shift ]", u"A"_s);
        add("a control character", "[ Return ]", u"A"_s);
        add("a space", "[ nobreakspace ]", u"A"_s);
        add("a character without a shape", "[ U200D ]", u"A"_s);
        add("a character of private use", "[ UF8FF ]", u"A"_s);
        add("several characters at once", "[ { a, b } ]", u"A"_s);
    }
    void followTheSymbolsOfAKey()
    {
        QFETCH(const QByteArray, symbols);
        const auto map = keymapWith("key <AC01> { " + symbols + " };");
        QVERIFY(map);
        QTEST(KeyLabels(map.get(), 0).label(keyA), "label");
    }

    void showTheAccentsOfDeadKeys_data()
    {
        QTest::addColumn<QByteArray>("name");
        QTest::addColumn<QString>("label");
        const QList<std::pair<const char *, QString>> accents{
            {"grave", u"`"_s},
            {"acute", u"´"_s},
            {"circumflex", u"^"_s},
            {"tilde", u"~"_s},
            {"perispomeni", u"~"_s},
            {"macron", u"¯"_s},
            {"breve", u"˘"_s},
            {"abovedot", u"˙"_s},
            {"diaeresis", u"¨"_s},
            {"abovering", u"˚"_s},
            {"doubleacute", u"˝"_s},
            {"caron", u"ˇ"_s},
            {"cedilla", u"¸"_s},
            {"ogonek", u"˛"_s},
            {"iota", u"ͺ"_s},
            {"voiced_sound", u"゛"_s},
            {"semivoiced_sound", u"゜"_s},
            {"abovecomma", u"᾿"_s},
            {"psili", u"᾿"_s},
            {"abovereversedcomma", u"῾"_s},
            {"dasia", u"῾"_s},
            {"doublegrave", u"˵"_s},
            {"belowring", u"˳"_s},
            {"belowmacron", u"ˍ"_s},
            {"belowcircumflex", u"ꞈ"_s},
            {"belowtilde", u"˷"_s},
            {"lowline", u"_"_s},
            {"aboveverticalline", u"ˈ"_s},
            {"belowverticalline", u"ˌ"_s},
            // These have no accent of their own.
            {"belowdot", u"A"_s},
            {"hook", u"A"_s},
            {"horn", u"A"_s},
            {"stroke", u"A"_s},
            {"greek", u"A"_s},
        };
        for (const auto &[name, label] : accents)
            QTest::newRow(name) << QByteArray(name) << label;
    }
    void showTheAccentsOfDeadKeys()
    {
        QFETCH(const QByteArray, name);
        const auto map = keymapWith("key <AC01> { [ dead_" + name + ", A ] };");
        QVERIFY(map);
        QTEST(KeyLabels(map.get(), 0).label(keyA), "label");
    }

    void chooseAmongTheLayoutsOfAKey_data()
    {
        QTest::addColumn<QByteArray>("symbols");
        QTest::addColumn<quint32>("layoutInUse");
        QTest::addColumn<QString>("labelOfA");
        QTest::addColumn<QString>("labelOfS");
        const auto add = [](const char *row, const char *symbols, quint32 layoutInUse,
                            const QString &labelOfA, const QString &labelOfS) {
            QTest::newRow(row) << QByteArray(symbols) << layoutInUse << labelOfA << labelOfS;
        };
        constexpr const char *oneOfFour = "key <AC01> { [ b, B ] };"
                                          "key <AC02> { [ c, C ], [ d, D ], [ e, E ], [ f, F ] };";
        add("the first of a key that has only one", oneOfFour, 0, u"B"_s, u"C"_s);
        add("the last, which wraps on a key that has only one", oneOfFour, 3, u"B"_s, u"F"_s);
        constexpr const char *twoOfFour = "key <AC01> { [ b, B ], [ g, G ] };"
                                          "key <AC02> { [ c, C ], [ d, D ], [ e, E ], [ f, F ] };";
        add("one that wraps on a key with two", twoOfFour, 3, u"G"_s, u"F"_s);
        add("another that wraps on a key with two", twoOfFour, 2, u"B"_s, u"E"_s);
        add("one that does not wrap but stays at the end",
            "key <AC01> { groupsClamp, [ b, B ], [ g, G ] };"
            "key <AC02> { [ c, C ], [ d, D ], [ e, E ], [ f, F ] };",
            2, u"G"_s, u"E"_s);
        add("one that no key has", oneOfFour, 1000, u"B"_s, u"C"_s);
        add("a Latin letter that the layout in use has on another key",
            "key <AC01> { [ a, A ], [ Cyrillic_ef, Cyrillic_EF ] };"
            "key <AC02> { [ s, S ], [ a, A ] };",
            1, u"Ф"_s, u"A"_s);
        add("a Latin letter that another layout has on two keys",
            "key <AC01> { [ b, B ], [ Cyrillic_ef, Cyrillic_EF ] };"
            "key <AC02> { [ b, B ], [ Cyrillic_yeru, Cyrillic_YERU ] };",
            1, u"B"_s, u"Ы"_s);
        add("a sign of another layout, which replaces no letter",
            "key <AC01> { [ bracketleft ], [ Cyrillic_ef, Cyrillic_EF ] };"
            "key <AC02> { [ s, S ], [ 1 ] };",
            1, u"Ф"_s, u"1"_s);
        add("a Greek letter of another layout, which replaces none either",
            "key <AC01> { [ Greek_alpha, Greek_ALPHA ], [ Cyrillic_ef, Cyrillic_EF ] };"
            "key <AC02> { [ s, S ], [ Cyrillic_yeru, Cyrillic_YERU ] };",
            1, u"Ф"_s, u"S"_s);
        add("a US name that another key has", "key <AC01> { [ s, S ] };", 0, u"S"_s, QString());
        add("a US name that another key has from another layout",
            "key <AC01> { [ s, S ], [ Cyrillic_ef, Cyrillic_EF ] };"
            "key <AC02> { [ z, Z ], [ Escape ] };",
            1, u"S"_s, QString());
    }
    void chooseAmongTheLayoutsOfAKey()
    {
        QFETCH(const QByteArray, symbols);
        QFETCH(const quint32, layoutInUse);
        const auto map = keymapWith(symbols);
        QVERIFY(map);
        const KeyLabels labels(map.get(), layoutInUse);
        QTEST(labels.label(keyA), "labelOfA");
        QTEST(labels.label(keyS), "labelOfS");
    }

    void areThoseOfAUSKeyboardOnKeysThatAreMissing()
    {
        const auto map = keymapWith("key <AC01> { [ underscore ] };", "<AC01> = 38;");
        QVERIFY(map);
        const KeyLabels labels(map.get(), 0);
        QCOMPARE(labels.label(keyA), u"_"_s);
        QCOMPARE(labels.label(keyS), u"S"_s);
        QCOMPARE(labels.label(keyUnderscore), QString());
    }

    void tellOfAChangeOnlyIfThereIsOne()
    {
        FakeKeyboardLayout layout;
        QSignalSpy changes(&layout, &KeyboardLayout::changed);
        QSignalSpy labelChanges(&layout, &KeyboardLayout::labelsChanged);
        layout.setLayout(keymap("us"), 0);
        QCOMPARE(changes.count(), 1);
        QCOMPARE(labelChanges.count(), 0);
        layout.setLayout(keymap("us", "", "caps:swapescape"), 0);
        QCOMPARE(changes.count(), 2);
        QCOMPARE(labelChanges.count(), 0);
        layout.setLayout(keymap("us,de"), 1);
        QCOMPARE(labelChanges.count(), 1);
        QVERIFY(layout.labels() == KeyLabels(keymap("de").get(), 0));
        layout.setLayout(keymap("us,de"), 1);
        QCOMPARE(labelChanges.count(), 1);
    }
};

QTEST_GUILESS_MAIN(KeyLabelsTest)
#include "KeyLabelsTest.moc"
