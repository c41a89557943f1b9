#include "platform/linux/keys/Accelerator.h"
#include "platform/EventFlag.h"

#include <QRandomGenerator>
#include <QTest>
#include <limits>
#include <xkbcommon/xkbcommon.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr int shift = Qt::ShiftModifier;
constexpr int control = Qt::ControlModifier;
constexpr int alt = Qt::AltModifier;
constexpr int meta = Qt::MetaModifier;
constexpr int keypad = Qt::KeypadModifier;
constexpr int anotherGroup = Qt::GroupSwitchModifier;

constexpr quint32 allFlags = shiftEventFlag | controlEventFlag | optionEventFlag | commandEventFlag;

const QStringList goodTexts{
    u"<Primary><Alt>t"_s,      u"<Super>Above_Tab"_s, u"<Control><Shift>0x2e"_s,
    u"<Mod4><Lock>XF86Mail"_s, u"<Release>Print"_s,   u"<Hyper>U1F600"_s,
    u"<Ctl><Meta><Shft>F35"_s, u"AudioPlay"_s,        u"<Super>Greek_ALPHA"_s,
};

/// One letter or modifier of the text is lost, doubled, or replaced.
QString mutated(QString text, QRandomGenerator &random)
{
    static const QStringList pieces{
        u"<"_s,
        u">"_s,
        u"<>"_s,
        u"0x"_s,
        u"0"_s,
        u"f"_s,
        u"_"_s,
        u" "_s,
        u"<Alt>"_s,
        u"<Mod5>"_s,
        u"<shift>"_s,
        u"é"_s,
        QString(QChar::Null),
        QString(QChar(0xd800)),
        u"XF86"_s,
        u"U"_s,
        u"Tab"_s,
        u"-"_s,
    };
    const auto at = random.bounded(text.size() + 1);
    const auto length = random.bounded(4);
    switch (random.bounded(3)) {
    case 0:
        return text.remove(at, length);
    case 1:
        return text.insert(at, text.sliced(0, at));
    default:
        return text.replace(at, length, pieces.at(random.bounded(pieces.size())));
    }
}
} // namespace

class AcceleratorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTheFormOfGtk_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<quint32>("modifiers");
        QTest::addColumn<quint32>("keysym");
        QTest::addColumn<quint32>("keycode");
        const auto addKeysym = [](const char *row, const QString &text, quint32 modifiers,
                                  quint32 keysym) {
            QTest::newRow(row) << text << modifiers << keysym << 0U;
        };
        const auto addKeycode = [](const char *row, const QString &text, quint32 modifiers,
                                   quint32 keycode) {
            QTest::newRow(row) << text << modifiers << 0U << keycode;
        };
        addKeysym("a key alone", u"Print"_s, 0, XKB_KEY_Print);
        addKeysym("control", u"<Control>t"_s, controlEventFlag, XKB_KEY_t);
        addKeysym("control by the name of GTK", u"<Primary>t"_s, controlEventFlag, XKB_KEY_t);
        addKeysym("control in short", u"<Ctrl>t"_s, controlEventFlag, XKB_KEY_t);
        addKeysym("control in very short", u"<Ctl>t"_s, controlEventFlag, XKB_KEY_t);
        addKeysym("alt", u"<Alt>t"_s, optionEventFlag, XKB_KEY_t);
        addKeysym("alt by its number", u"<Mod1>t"_s, optionEventFlag, XKB_KEY_t);
        addKeysym("meta", u"<Meta>t"_s, optionEventFlag, XKB_KEY_t);
        addKeysym("super", u"<Super>t"_s, commandEventFlag, XKB_KEY_t);
        addKeysym("super by its number", u"<Mod4>t"_s, commandEventFlag, XKB_KEY_t);
        addKeysym("hyper", u"<Hyper>t"_s, commandEventFlag, XKB_KEY_t);
        addKeysym("shift", u"<Shift>t"_s, shiftEventFlag, XKB_KEY_t);
        addKeysym("shift in short", u"<Shft>t"_s, shiftEventFlag, XKB_KEY_t);
        addKeysym("all modifiers", u"<Shift><Primary><Alt><Super>t"_s, allFlags, XKB_KEY_t);
        addKeysym("a modifier twice", u"<Control><Primary>t"_s, controlEventFlag, XKB_KEY_t);
        addKeysym("modifiers in any case", u"<PRIMARY><mod1>t"_s,
                  controlEventFlag | optionEventFlag, XKB_KEY_t);
        addKeysym("Num Lock on", u"<Mod2><Super>t"_s, commandEventFlag, XKB_KEY_t);
        addKeysym("Caps Lock on", u"<Super><Lock>t"_s, commandEventFlag, XKB_KEY_t);
        addKeysym("at the key's release", u"<Release><Super>t"_s, commandEventFlag, XKB_KEY_t);
        addKeysym("a capital letter", u"<Super>T"_s, commandEventFlag, XKB_KEY_t);
        addKeysym("a capital letter of Greek", u"Greek_ALPHA"_s, 0, XKB_KEY_Greek_alpha);
        addKeysym("a key's name in another case", u"<Alt>f4"_s, optionEventFlag, XKB_KEY_F4);
        addKeysym("names that differ in case alone", u"XF86Screensaver"_s, 0,
                  XKB_KEY_XF86Screensaver);
        addKeysym("the other of them", u"XF86ScreenSaver"_s, 0, XKB_KEY_XF86ScreenSaver);
        addKeysym("a media key", u"XF86AudioPlay"_s, 0, XKB_KEY_XF86AudioPlay);
        addKeysym("a media key in short", u"AudioPlay"_s, 0, XKB_KEY_XF86AudioPlay);
        addKeysym("a media key in short and another case", u"audioplay"_s, 0,
                  XKB_KEY_XF86AudioPlay);
        addKeysym("a letter by its number", u"U00D6"_s, 0, XKB_KEY_odiaeresis);
        addKeysym("a modifier as the key", u"Super_L"_s, 0, XKB_KEY_Super_L);
        addKeycode("the key above Tab", u"<Super>Above_Tab"_s, commandEventFlag, 49);
        addKeycode("a key code", u"<Control><Alt>0x2e"_s, controlEventFlag | optionEventFlag, 46);
        addKeycode("a key code in capitals", u"<Alt>0X2E"_s, optionEventFlag, 46);
        addKeycode("the first key code", u"0x1"_s, 0, 1);
        addKeycode("the last key code", u"0xff"_s, 0, 255);
    }
    void readsTheFormOfGtk()
    {
        QFETCH(const QString, text);
        const auto accelerator = gtkAccelerator(text);
        QVERIFY(accelerator);
        QTEST(accelerator->modifiers, "modifiers");
        QTEST(accelerator->keysym, "keysym");
        QTEST(quint32(accelerator->keycode.value_or(XKeycode(0))), "keycode");
        QVERIFY(!accelerator->impliesShift);
    }

    void readsNothingFromWhatIsNoCombination_data()
    {
        QTest::addColumn<QString>("text");
        const auto add = [](const char *row, const QString &text) { QTest::newRow(row) << text; };
        add("no text", QString());
        add("an empty text", u""_s);
        add("a switched off one", u"disabled"_s);
        add("a switched off one in another case", u"Disabled"_s);
        add("none", u"none"_s);
        add("no keysym", u"NoSymbol"_s);
        add("the keysym of nothing", u"<Super>VoidSymbol"_s);
        add("a blank", u" "_s);
        add("a blank before", u" <Super>t"_s);
        add("a blank within", u"<Super> t"_s);
        add("a blank behind", u"<Super>t "_s);
        add("only modifiers", u"<Control><Alt>"_s);
        add("a modifier after the key", u"t<Super>"_s);
        add("a modifier without an end", u"<Super"_s);
        add("a modifier without a beginning", u"Super>t"_s);
        add("a modifier without a name", u"<>t"_s);
        add("a modifier with a blank", u"<Super >t"_s);
        add("modifiers in one another", u"<Super<Alt>>t"_s);
        add("the third modifier", u"<Mod3>t"_s);
        add("the fifth modifier", u"<Mod5><Super>t"_s);
        add("an unknown modifier", u"<Fn>t"_s);
        add("an unknown key", u"<Super>NoSuchKey"_s);
        add("the prefix of media keys", u"XF86"_s);
        add("a mouse button", u"<Super>Button1"_s);
        add("two keys", u"<Super>t x"_s);
        add("two combinations", u"<Super>t<Super>x"_s);
        add("another form", u"Ctrl+Alt+T"_s);
        add("the zeroth key code", u"0x0"_s);
        add("no key code", u"0x"_s);
        add("a key code beyond the last", u"0x100"_s);
        add("a key code far beyond the last", u"0xffffffffffffffffff"_s);
        add("a negative key code", u"0x-2e"_s);
        add("a key code twice", u"0x0x2e"_s);
        add("a key code that is no number", u"0xyz"_s);
        add("a keysym by its number", u"0x1008ff14"_s);
        add("a letter that there cannot be", u"U110000"_s);
        add("a letter beyond ASCII", u"<Super>ö"_s);
        add("half a letter", u"<Super>"_s + QChar(0xd800));
        add("more after the text's end", u"<Super>t"_s + QChar::Null + u"x"_s);
        add("many modifiers that never end", u"<"_s.repeated(100'000));
        add("a long name", u"t"_s.repeated(100'000));
        add("a format", u"<Super>%s%n"_s);
    }
    void readsNothingFromWhatIsNoCombination()
    {
        QFETCH(const QString, text);
        QVERIFY(!gtkAccelerator(text));
    }

    void givesAKeysymOrAKeyCodeWhateverTheText()
    {
        QRandomGenerator random(1);
        int good = 0;
        for (int i = 0; i < 20'000; ++i) {
            auto text = goodTexts.at(random.bounded(goodTexts.size()));
            for (auto times = random.bounded(1, 4); times > 0; --times)
                text = mutated(text, random);
            const auto accelerator = gtkAccelerator(text);
            if (!accelerator)
                continue;
            ++good;
            QVERIFY2((accelerator->keysym == 0) == accelerator->keycode.has_value(),
                     qPrintable(text));
            const auto keycode = quint32(accelerator->keycode.value_or(XKeycode(1)));
            QVERIFY2(keycode >= 1 && keycode <= 255, qPrintable(text));
            QVERIFY2((accelerator->modifiers & ~allFlags) == 0, qPrintable(text));
        }
        QVERIFY2(good > 1000, QByteArray::number(good).constData());
        QVERIFY2(good < 19'000, QByteArray::number(good).constData());
    }

    void readsTheFormOfQt_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<quint32>("modifiers");
        QTest::addColumn<quint32>("keysym");
        QTest::addColumn<bool>("impliesShift");
        const auto add = [](const char *row, int code, quint32 modifiers, quint32 keysym) {
            QTest::newRow(row) << code << modifiers << keysym << false;
        };
        const auto addImplying = [](const char *row, int code, quint32 modifiers, quint32 keysym) {
            QTest::newRow(row) << code << modifiers << keysym << true;
        };
        add("a key alone", Qt::Key_Print, 0, XKB_KEY_Print);
        add("meta", meta | Qt::Key_T, commandEventFlag, XKB_KEY_t);
        add("alt", alt | Qt::Key_T, optionEventFlag, XKB_KEY_t);
        add("control", control | Qt::Key_T, controlEventFlag, XKB_KEY_t);
        add("shift", shift | Qt::Key_T, shiftEventFlag, XKB_KEY_t);
        add("all modifiers", shift | control | alt | meta | Qt::Key_T, allFlags, XKB_KEY_t);
        add("a letter beyond ASCII", meta | Qt::Key_Odiaeresis, commandEventFlag,
            XKB_KEY_odiaeresis);
        add("a letter beyond Latin", meta | 0x424, commandEventFlag, XKB_KEY_Cyrillic_ef);
        addImplying("a digit", meta | Qt::Key_1, commandEventFlag, XKB_KEY_1);
        addImplying("a sign", meta | Qt::Key_Exclam, commandEventFlag, XKB_KEY_exclam);
        addImplying("a sign with shift", meta | shift | Qt::Key_Exclam,
                    commandEventFlag | shiftEventFlag, XKB_KEY_exclam);
        addImplying("a sign beyond ASCII", meta | Qt::Key_section, commandEventFlag,
                    XKB_KEY_section);
        add("the first function key", alt | Qt::Key_F1, optionEventFlag, XKB_KEY_F1);
        add("the last function key", alt | Qt::Key_F35, optionEventFlag, XKB_KEY_F35);
        add("the key of Tab", alt | Qt::Key_Tab, optionEventFlag, XKB_KEY_Tab);
        add("the Tab that goes back", alt | Qt::Key_Backtab, optionEventFlag | shiftEventFlag,
            XKB_KEY_Tab);
        add("the same with shift", alt | shift | Qt::Key_Backtab, optionEventFlag | shiftEventFlag,
            XKB_KEY_Tab);
        add("an arrow", control | Qt::Key_Left, controlEventFlag, XKB_KEY_Left);
        add("page down", control | Qt::Key_PageDown, controlEventFlag, XKB_KEY_Page_Down);
        add("a key for the volume", Qt::Key_VolumeUp, 0, XKB_KEY_XF86AudioRaiseVolume);
        add("a digit of the keypad", meta | keypad | Qt::Key_1, commandEventFlag, XKB_KEY_KP_1);
        add("a sign of the keypad", meta | keypad | Qt::Key_Plus, commandEventFlag, XKB_KEY_KP_Add);
        add("an arrow of the keypad", meta | keypad | Qt::Key_Left, commandEventFlag,
            XKB_KEY_KP_Left);
        add("the keypad's Enter", meta | Qt::Key_Enter, commandEventFlag, XKB_KEY_KP_Enter);
        add("the same said twice", meta | keypad | Qt::Key_Enter, commandEventFlag,
            XKB_KEY_KP_Enter);
    }
    void readsTheFormOfQt()
    {
        QFETCH(const int, code);
        const auto accelerator = qtAccelerator(code);
        QVERIFY(accelerator);
        QTEST(accelerator->modifiers, "modifiers");
        QTEST(accelerator->keysym, "keysym");
        QTEST(accelerator->impliesShift, "impliesShift");
        QCOMPARE(accelerator->keycode, std::nullopt);
    }

    void readsNothingFromCodesOfNoCombination_data()
    {
        QTest::addColumn<int>("code");
        const auto add = [](const char *row, int code) { QTest::newRow(row) << code; };
        add("none", 0);
        add("an invalid one", -1);
        add("the lowest", std::numeric_limits<int>::min());
        add("only modifiers", meta);
        add("a modifier as the key", Qt::Key_Meta);
        add("an unknown key", Qt::Key_unknown);
        add("another group of the layout", anotherGroup | meta | Qt::Key_T);
        add("a letter of the keypad", keypad | Qt::Key_T);
        add("a function key of the keypad's kind", keypad | Qt::Key_Tab);
        add("a control character", 0x1b);
        add("half a letter", 0xd800);
        add("a letter that there cannot be", 0x110000);
    }
    void readsNothingFromCodesOfNoCombination()
    {
        QFETCH(const int, code);
        QVERIFY(!qtAccelerator(code));
    }

    void givesASymbolInLowerCaseWhateverTheCode()
    {
        QRandomGenerator random(1);
        int good = 0;
        for (int i = 0; i < 100'000; ++i) {
            // Where the keys are, or anywhere.
            const quint32 range = random.bounded(2) ? 0x1ff : 0x1ffffff;
            const quint32 first = random.bounded(2) ? 0 : quint32(Qt::Key_Escape);
            const auto key = first + random.bounded(range);
            const auto code = int((random.generate() & quint32(Qt::KeyboardModifierMask)) | key);
            const auto accelerator = qtAccelerator(code);
            if (!accelerator)
                continue;
            ++good;
            QVERIFY2(accelerator->keysym != 0 && !accelerator->keycode,
                     QByteArray::number(code).constData());
            QCOMPARE(accelerator->keysym, xkb_keysym_to_lower(accelerator->keysym));
            QVERIFY((accelerator->modifiers & ~allFlags) == 0);
        }
        QVERIFY2(good > 1000, QByteArray::number(good).constData());
        QVERIFY2(good < 50'000, QByteArray::number(good).constData());
    }

    void readsTheFormOfLxqt_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<quint32>("modifiers");
        QTest::addColumn<quint32>("keysym");
        const auto add = [](const char *row, const QString &text, quint32 modifiers,
                            quint32 keysym) { QTest::newRow(row) << text << modifiers << keysym; };
        add("a key alone", u"Print"_s, 0, XKB_KEY_Print);
        add("a letter", u"Control+Alt+T"_s, controlEventFlag | optionEventFlag, XKB_KEY_t);
        add("all modifiers", u"Shift+Control+Alt+Meta+F5"_s, allFlags, XKB_KEY_F5);
        add("a sign", u"Meta+plus"_s, commandEventFlag, XKB_KEY_plus);
        add("a digit", u"Shift+Meta+1"_s, shiftEventFlag | commandEventFlag, XKB_KEY_1);
        add("the keypad", u"Control+KP_End"_s, controlEventFlag, XKB_KEY_KP_End);
        add("a media key", u"XF86MonBrightnessUp"_s, 0, XKB_KEY_XF86MonBrightnessUp);
    }
    void readsTheFormOfLxqt()
    {
        QFETCH(const QString, text);
        const auto accelerator = lxqtAccelerator(text);
        QVERIFY(accelerator);
        QTEST(accelerator->modifiers, "modifiers");
        QTEST(accelerator->keysym, "keysym");
        QCOMPARE(accelerator->keycode, std::nullopt);
        QVERIFY(!accelerator->impliesShift);
    }

    void readsNothingFromWhatLxqtRefuses_data()
    {
        QTest::addColumn<QString>("text");
        const auto add = [](const char *row, const QString &text) { QTest::newRow(row) << text; };
        add("no text", QString());
        add("only modifiers", u"Control+Alt+"_s);
        add("a modifier of our own", u"Level3+T"_s);
        add("the modifier of other desktops", u"Super+T"_s);
        add("a modifier in another case", u"control+T"_s);
        add("the sign between", u"Meta++"_s);
        add("an unknown key", u"Meta+NoSuchKey"_s);
        add("the keysym of nothing", u"Meta+VoidSymbol"_s);
        add("a letter beyond ASCII", u"Meta+ö"_s);
        add("another form", u"<Control>T"_s);
        add("many signs", u"+"_s.repeated(100'000));
        add("a long name", u"t"_s.repeated(100'000));
    }
    void readsNothingFromWhatLxqtRefuses()
    {
        QFETCH(const QString, text);
        QVERIFY(!lxqtAccelerator(text));
    }
};

QTEST_GUILESS_MAIN(AcceleratorTest)
#include "AcceleratorTest.moc"
