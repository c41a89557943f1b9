#include "hotkeys/SystemCheck.h"
#include "fakes/FakeSymbolicHotkeys.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace KeyboardShortcuts;

namespace
{
/// Shift and Command with the key 3.
const Shortcut screenshot{20, 0x300};
const SymbolicHotkey screenshotHotkey{20, 0x120000, true};
} // namespace

class SystemCheckTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bringsEachModifierToItsFlag_data()
    {
        QTest::addColumn<qint64>("carbonModifiers");
        QTest::addColumn<quint32>("flags");
        const auto add = [](const char *row, qint64 carbonModifiers, quint32 flags) {
            QTest::newRow(row) << carbonModifiers << flags;
        };
        add("Command", 0x100, 0x100000);
        add("Shift", 0x200, 0x20000);
        add("Option", 0x800, 0x80000);
        add("Control", 0x1000, 0x40000);
        add("all four", 0x1B00, 0x1E0000);
        add("none", 0, 0);
        add("bits that are no modifiers are dropped", 0x1E04FF, 0);
        add("a mask beyond 32 bits", 0x100000200, 0x20000);
    }
    void bringsEachModifierToItsFlag()
    {
        QFETCH(const qint64, carbonModifiers);
        QTEST(carbonToEventFlags(carbonModifiers), "flags");
    }

    void findsAnEnabledHotkeyWithExactlyTheseKeys_data()
    {
        QTest::addColumn<QList<SymbolicHotkey>>("hotkeys");
        QTest::addColumn<Shortcut>("shortcut");
        QTest::addColumn<bool>("isTaken");
        const auto add = [](const char *row, const QList<SymbolicHotkey> &hotkeys,
                            const Shortcut &shortcut,
                            bool isTaken) { QTest::newRow(row) << hotkeys << shortcut << isTaken; };
        const QList list{screenshotHotkey};
        add("the same keys", list, screenshot, true);
        add("Shift is missing", list, {20, 0x100}, false);
        add("Option is in addition", list, {20, 0xB00}, false);
        add("another key", list, {21, 0x300}, false);
        add("a bit in addition that is no modifier", list, {20, 0x10300}, true);
        add("the desktop's has only some of the modifiers", {{20, 0x100000, true}}, screenshot,
            false);
        add("the desktop's has the flag of function keys in addition", {{20, 0x920000, true}},
            screenshot, true);
        add("the desktop's has the flag of the number pad in addition", {{20, 0x320000, true}},
            screenshot, true);
        add("no modifiers on either side", {{122, 0x800000, true}}, {122, 0}, true);
        add("the desktop's is switched off", {{20, 0x120000, false}}, screenshot, false);
        add("the first of two is switched off", {{20, 0x120000, false}, screenshotHotkey},
            screenshot, true);
        add("the last of several", {{0, 0, true}, {20, 0x100000, true}, screenshotHotkey},
            screenshot, true);
        add("the desktop has none", {}, screenshot, false);
    }
    void findsAnEnabledHotkeyWithExactlyTheseKeys()
    {
        QFETCH(const QList<SymbolicHotkey>, hotkeys);
        QFETCH(const Shortcut, shortcut);
        FakeSymbolicHotkeys service;
        service.hotkeys = hotkeys;
        QTEST(isTakenBySystem(shortcut, service), "isTaken");
    }

    void takesNothingForTakenIfTheDesktopCannotBeAsked()
    {
        FakeSymbolicHotkeys service;
        service.hotkeys = std::nullopt;
        QVERIFY(!isTakenBySystem(screenshot, service));
    }

    void findsKeysThatAnotherProgramHolds_data()
    {
        QTest::addColumn<Shortcut>("shortcut");
        QTest::addColumn<bool>("isTaken");
        const auto add = [](const char *row, const Shortcut &shortcut, bool isTaken) {
            QTest::newRow(row) << shortcut << isTaken;
        };
        constexpr qint64 beyond = qint64(1) << 32;
        add("the same keys", screenshot, true);
        add("another key", {21, 0x300}, false);
        add("other modifiers", {20, 0x100}, false);
        add("a key code that only its lower half makes the same", {20 + beyond, 0x300}, false);
        add("a mask that only its lower half makes the same", {20, 0x300 + beyond}, false);
        add("a negative key code", {-1, 0x300}, false);
    }
    void findsKeysThatAnotherProgramHolds()
    {
        QFETCH(const Shortcut, shortcut);
        FakeSymbolicHotkeys service;
        service.hotkeys = std::nullopt;
        service.heldElsewhere = {{20, 0x300}, {0xFFFFFFFF, 0x300}};
        QTEST(isTakenBySystem(shortcut, service), "isTaken");
    }

    void namesTheFirstUserOfTheKeys_data()
    {
        QTest::addColumn<QList<SymbolicHotkey>>("hotkeys");
        QTest::addColumn<bool>("isHeldElsewhere");
        QTest::addColumn<std::optional<KeyUser>>("user");
        const auto add = [](const char *row, const QList<SymbolicHotkey> &hotkeys,
                            bool isHeldElsewhere, const std::optional<KeyUser> &user) {
            QTest::newRow(row) << hotkeys << isHeldElsewhere << user;
        };
        const SymbolicHotkey picture{20, 0x120000, true, u"Screenshot"_s};
        const SymbolicHotkey film{20, 0x120000, true, u"Record"_s};
        const SymbolicHotkey off{20, 0x120000, false, u"Off"_s};
        const KeyUser desktop{KeyUser::Kind::desktop, u"Screenshot"_s};
        add("nobody", {off}, false, std::nullopt);
        add("an action of the desktop", {picture}, false, desktop);
        add("the first of two actions", {off, picture, film}, false, desktop);
        add("an action without a name", {screenshotHotkey}, false, KeyUser{});
        add("another program", {off}, true, KeyUser{KeyUser::Kind::program});
        add("the desktop, which holds the keys itself", {picture}, true, desktop);
    }
    void namesTheFirstUserOfTheKeys()
    {
        QFETCH(const QList<SymbolicHotkey>, hotkeys);
        QFETCH(const bool, isHeldElsewhere);
        FakeSymbolicHotkeys service;
        service.hotkeys = hotkeys;
        if (isHeldElsewhere)
            service.heldElsewhere = {{20, 0x300}};
        QTEST(userOfKeys(screenshot, service), "user");
    }

    void countsKeysThatFollowAKeptSuperKeyAsTaken_data()
    {
        QTest::addColumn<Shortcut>("shortcut");
        QTest::addColumn<bool>("isTaken");
        QTest::newRow("only Super") << Shortcut{20, 0x100} << true;
        QTest::newRow("Super and Shift") << Shortcut{20, 0x300} << false;
        QTest::newRow("Control and Alt") << Shortcut{20, 0x1800} << false;
    }
    void countsKeysThatFollowAKeptSuperKeyAsTaken()
    {
        QFETCH(const Shortcut, shortcut);
        FakeSymbolicHotkeys service;
        QVERIFY(!isTakenBySystem(shortcut, service));
        service.isSuperKeyKept = true;
        QTEST(isTakenBySystem(shortcut, service), "isTaken");
    }

    void namesAnActionOfTheDesktopBeforeTheKeptSuperKey()
    {
        FakeSymbolicHotkeys service;
        service.isSuperKeyKept = true;
        const Shortcut shortcut{20, 0x100};
        QCOMPARE(userOfKeys(shortcut, service), KeyUser{KeyUser::Kind::superKey});
        service.hotkeys = {{20, 0x100000, true, u"Show desktop"_s}};
        QCOMPARE(userOfKeys(shortcut, service),
                 (KeyUser{KeyUser::Kind::desktop, u"Show desktop"_s}));
    }

    void seesAChangeOfTheDesktopsSettings()
    {
        FakeSymbolicHotkeys service;
        service.hotkeys = {screenshotHotkey};
        QVERIFY(isTakenBySystem(screenshot, service));
        service.hotkeys->first().isEnabled = false;
        QVERIFY(!isTakenBySystem(screenshot, service));
        QCOMPARE(service.copies, 2);
    }
};

QTEST_GUILESS_MAIN(SystemCheckTest)
#include "SystemCheckTest.moc"
