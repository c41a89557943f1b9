#include "hotkeys/KeyboardShortcuts.h"
#include "fakes/FakePlatform.h"
#include "foundation/Json.h"
#include "hotkeys/HotkeyCenter.h"

#include <QTest>
#include <nlohmann/json.hpp>

using namespace Qt::StringLiterals;
using namespace KeyboardShortcuts;

namespace
{
const Name mailName{u"corvane-mail"_s};
const QString mailKey = u"hotkey.corvane-mail"_s;
} // namespace

class KeyboardShortcutsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void describesACombination_data()
    {
        QTest::addColumn<qint64>("keyCode");
        QTest::addColumn<qint64>("modifiers");
        QTest::addColumn<QString>("description");
        const auto add = [](const char *row, qint64 keyCode, qint64 modifiers,
                            const QString &description) {
            QTest::newRow(row) << keyCode << modifiers << description;
        };
        add("Command and Shift stand in the fixed order", 0, 0x300, u"⇧⌘A"_s);
        add("Control and Option", 49, 0x1800, u"⌃⌥Space"_s);
        add("all four modifiers", 0, 0x1B00, u"⌃⌥⇧⌘A"_s);
        add("no modifier and a key without a name", 105, 0, u"Key 105"_s);
        add("the ISO key has no name", 10, 0, u"Key 10"_s);
        add("Return", 36, 0, u"↩"_s);
        add("Escape", 53, 0, u"⎋"_s);
        add("Tab", 48, 0, u"⇥"_s);
        add("Backspace", 51, 0, u"⌫"_s);
        add("forward Delete has no name", 117, 0x100, u"⌘Key 117"_s);
        add("bits that are no modifiers are not shown", 40, 0x10500, u"⌘K"_s);
        add("only bits that are no modifiers", 40, 0x400, u"K"_s);
        add("a negative key code", -1, 0x100, u"⌘Key -1"_s);
        add("a huge key code", 4294967296, 0, u"Key 4294967296"_s);
    }
    void describesACombination()
    {
        QFETCH(const qint64, keyCode);
        QFETCH(const qint64, modifiers);
        QTEST(Shortcut({keyCode, modifiers}).description(), "description");
    }

    void namesTheKeysOfAUsLayout()
    {
        QStringList named;
        for (qint64 code = 0; code <= 47; ++code) {
            if (code != 36)
                named << keyNames().value(code, u" "_s);
        }
        QCOMPARE(named.join(u""_s), u"ASDFHGZXCV BQWERYT123465=97-80]OU[IPLJ'K;\\,/NM."_s);
        QCOMPARE(keyNames().size(), 68);
    }

    void namesTheFunctionAndArrowKeys()
    {
        const QList<qint64> functionKeys{122, 120, 99, 118, 96, 97, 98, 100, 101, 109, 103, 111};
        for (qsizetype i = 0; i < functionKeys.size(); ++i)
            QCOMPARE(keyNames().value(functionKeys[i]), u"F%1"_s.arg(i + 1));
        QCOMPARE(keyNames().value(123), u"←"_s);
        QCOMPARE(keyNames().value(124), u"→"_s);
        QCOMPARE(keyNames().value(125), u"↓"_s);
        QCOMPARE(keyNames().value(126), u"↑"_s);
        QCOMPARE(keyNames().value(50), u"`"_s);
    }

    void hasNoNameForOtherKeys()
    {
        for (const qint64 code : {10, 52, 54, 95, 102, 104, 105, 108, 110, 112, 117, 119, 121, 127})
            QVERIFY2(!keyNames().contains(code), QByteArray::number(code).constData());
    }

    void comparesBothFields()
    {
        QCOMPARE((Shortcut{1, 2}), (Shortcut{1, 2}));
        QVERIFY((Shortcut{1, 2}) != (Shortcut{1, 3}));
        QVERIFY((Shortcut{1, 2}) != (Shortcut{2, 2}));
        QCOMPARE(qHash(Shortcut{1, 2}), qHash(Shortcut{1, 2}));
        QCOMPARE(qHash(mailName), qHash(Name{u"corvane-mail"_s}));
        QVERIFY(mailName != Name{u"corvane-post"_s});
    }

    void storesACombinationAsJson()
    {
        FakePlatform platform;
        HotkeyCenter center(platform.hotkeys, platform.userDefaults);
        setShortcut(Shortcut{40, 256}, mailName, platform.userDefaults, center);
        QCOMPARE(platform.userDefaults.values,
                 (QHash<QString, QVariant>{
                     {mailKey, QByteArray(R"({"carbonKeyCode":40,"carbonModifiers":256})")}}));
    }

    void readsWhatItStored()
    {
        FakePlatform platform;
        HotkeyCenter center(platform.hotkeys, platform.userDefaults);
        setShortcut(Shortcut{0, 0x1B00}, mailName, platform.userDefaults, center);
        QCOMPARE(getShortcut(mailName, platform.userDefaults), (Shortcut{0, 0x1B00}));
    }

    void readsACombinationWrittenByOthers()
    {
        FakePlatform platform;
        platform.userDefaults.setData(
            mailKey, R"( { "carbonModifiers" : 256, "note": "x", "carbonKeyCode" : 40 } )");
        QCOMPARE(getShortcut(mailName, platform.userDefaults), (Shortcut{40, 256}));
    }

    void readsNothingWhereNothingIsStored()
    {
        QCOMPARE(getShortcut(mailName, FakeUserDefaults()), std::nullopt);
    }

    void readsNothingFromBadDataAndLeavesItInPlace_data()
    {
        QTest::addColumn<QByteArray>("data");
        const auto add = [](const char *row, const QByteArray &data) {
            QTest::newRow(row) << data;
        };
        add("empty", "");
        add("no JSON", "command-k");
        add("no modifiers", R"({"carbonKeyCode":40})");
        add("no key code", R"({"carbonModifiers":256})");
        add("key code as a text", R"({"carbonKeyCode":"40","carbonModifiers":256})");
        add("key code as a fraction", R"({"carbonKeyCode":40.5,"carbonModifiers":256})");
        add("key code as a Boolean", R"({"carbonKeyCode":true,"carbonModifiers":256})");
        add("modifiers as null", R"({"carbonKeyCode":40,"carbonModifiers":null})");
        add("key code beyond 64 bits",
            R"({"carbonKeyCode":18446744073709551616,"carbonModifiers":256})");
        add("an array", "[40,256]");
    }
    void readsNothingFromBadDataAndLeavesItInPlace()
    {
        QFETCH(const QByteArray, data);
        FakePlatform platform;
        platform.userDefaults.setData(mailKey, data);
        QCOMPARE(getShortcut(mailName, platform.userDefaults), std::nullopt);
        QCOMPARE(platform.userDefaults.values.value(mailKey), data);
    }

    void removesACombination()
    {
        FakePlatform platform;
        HotkeyCenter center(platform.hotkeys, platform.userDefaults);
        setShortcut(Shortcut{40, 256}, mailName, platform.userDefaults, center);
        setShortcut(std::nullopt, mailName, platform.userDefaults, center);
        QVERIFY(platform.userDefaults.values.isEmpty());
    }

    void syncsEvenWhenThereIsNothingToRemove()
    {
        FakePlatform platform;
        HotkeyCenter center(platform.hotkeys, platform.userDefaults);
        center.handlers.insert(mailName.rawValue, [] {});
        platform.userDefaults.setData(mailKey, R"({"carbonKeyCode":40,"carbonModifiers":256})");
        center.sync(mailName);
        platform.userDefaults.remove(mailKey);

        setShortcut(std::nullopt, mailName, platform.userDefaults, center);
        QVERIFY(platform.hotkeys.live.isEmpty());
    }

    void makesAStoredCombinationLiveAtOnce()
    {
        FakePlatform platform;
        HotkeyCenter center(platform.hotkeys, platform.userDefaults);
        center.handlers.insert(mailName.rawValue, [] {});
        setShortcut(Shortcut{40, 256}, mailName, platform.userDefaults, center);
        QCOMPARE(platform.hotkeys.live,
                 (QList<FakeHotkeyService::Live>{{40, 256, {HotKeySignature, 1}}}));
    }

    void endsARemovedCombinationAtOnce()
    {
        FakePlatform platform;
        HotkeyCenter center(platform.hotkeys, platform.userDefaults);
        center.handlers.insert(mailName.rawValue, [] {});
        setShortcut(Shortcut{40, 256}, mailName, platform.userDefaults, center);
        QCOMPARE(getShortcut(mailName, platform.userDefaults), (Shortcut{40, 256}));
        QCOMPARE(platform.hotkeys.live.size(), 1);
        setShortcut(std::nullopt, mailName, platform.userDefaults, center);
        QCOMPARE(getShortcut(mailName, platform.userDefaults), std::nullopt);
        QVERIFY(platform.hotkeys.live.isEmpty());
    }
};

QTEST_GUILESS_MAIN(KeyboardShortcutsTest)
#include "KeyboardShortcutsTest.moc"
