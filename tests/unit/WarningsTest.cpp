#include "fakes/FakePlatform.h"
#include "hotkeys/HotkeyCenter.h"
#include "model/DefaultsKeys.h"
#include "store/ShortcutStore.h"

#include <QSignalSpy>
#include <QTest>
#include <functional>

using namespace Qt::StringLiterals;
using KeyboardShortcuts::Shortcut;

namespace
{
const Shortcut commandK{40, 256};
const Shortcut commandL{37, 256};

/// The desktop's own ⌘K.
const SymbolicHotkey systemCommandK{40, 0x100000, true};

const QString takenBySystem = u"⌘K is already used by macOS. It may not work."_s;

LaunchEntry named(const QString &name)
{
    return {.name = name, .target = u"/bin/true"_s};
}

QString usedBy(const QString &name)
{
    return u"The same keys are used by “"_s + name + u"”."_s;
}

/// A store on fakes, made of a list in which Mail and Music have the same keys.
struct Home {
    explicit Home(const QList<LaunchEntry> &others = {})
    {
        const auto setKeys = [this](const LaunchEntry &entry, const Shortcut &keys) {
            KeyboardShortcuts::setShortcut(keys, entry.shortcutName(), platform.userDefaults,
                                           center);
        };
        setKeys(mail, commandK);
        setKeys(music, commandK);
        setKeys(files, commandL);
        if (EntriesFile(platform.applicationSupport.path()).write(list() + others))
            qFatal("cannot write the list");
        store.emplace(platform.services, center);
    }

    QList<LaunchEntry> list() const { return {mail, music, files, news}; }

    void setKeys(const LaunchEntry &entry, const std::optional<Shortcut> &keys)
    {
        store->setShortcut(keys, entry.shortcutName());
    }
    void storeData(const LaunchEntry &entry, const QByteArray &data)
    {
        platform.userDefaults.setData(KeyboardShortcuts::defaultsKey(entry.shortcutName()), data);
    }
    QStringList warningsOf(const LaunchEntry &entry) const
    {
        return store->warnings(entry.shortcutName(), entry.id);
    }

    FakePlatform platform;
    HotkeyCenter center{platform.hotkeys, platform.userDefaults};
    const LaunchEntry mail = named(u"Mail"_s);
    const LaunchEntry music = named(u"Music"_s);
    const LaunchEntry files = named(u"Files"_s);
    /// Without keys.
    const LaunchEntry news = named(u"News"_s);
    std::optional<ShortcutStore> store;
};
} // namespace

class WarningsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void warnsOfNothingWithoutKeys()
    {
        Home home;
        home.platform.symbolicHotkeys.hotkeys = {{0, 0, true}};
        home.storeData(home.music, "no JSON");
        QCOMPARE(home.warningsOf(home.news), QStringList());
        QCOMPARE(home.platform.symbolicHotkeys.copies, 0);
    }

    void warnsOfNothingIfTheKeysCannotBeRead()
    {
        Home home;
        home.storeData(home.mail, "no JSON");
        home.storeData(home.music, "no JSON");
        QCOMPARE(home.warningsOf(home.mail), QStringList());
    }

    void warnsOfTheSystemFirstAndThenOfEachEntryInTheOrderOfTheList()
    {
        Home home({named(u"Music"_s), named(u""_s)});
        home.platform.symbolicHotkeys.hotkeys = {systemCommandK};
        for (const LaunchEntry &entry : home.store->entries().last(2))
            home.setKeys(entry, commandK);
        QCOMPARE(home.warningsOf(home.mail),
                 QStringList({takenBySystem, usedBy(u"Music"_s), usedBy(u"Music"_s),
                              u"The same keys are used by another entry."_s}));
    }

    void namesTheUserOfTheKeysInTheWordsOfTheSystem()
    {
        Home home;
        home.platform.wording.makeUp();
        home.platform.symbolicHotkeys.hotkeys = {{40, 0x100000, true, u"Close window"_s}};
        home.platform.symbolicHotkeys.heldElsewhere = {{37, 256}};
        QCOMPARE(home.warningsOf(home.mail).value(0), u"40 and 256 for Close window"_s);
        QCOMPARE(home.warningsOf(home.files), QStringList(u"37 and 256 of a program"_s));
    }

    void warnsWithSignsIfTheUserPrefersThem()
    {
        Home home;
        home.platform.wording.makeUp();
        home.platform.userDefaults.setBoolean(DefaultsKeys::showMacKeySigns, true);
        home.platform.symbolicHotkeys.hotkeys = {systemCommandK};
        QCOMPARE(home.warningsOf(home.mail).value(0), u"⌘K for "_s);
    }

    void showsANameAsItIs()
    {
        Home home;
        auto entry = home.music;
        entry.name = u" %1 “&<b>” "_s;
        home.store->upsert(entry);
        QCOMPARE(home.warningsOf(home.mail), QStringList({usedBy(entry.name)}));
    }

    void comparesExactlyTheTwoStoredNumbers_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<bool>("conflicts");
        const auto add = [](const char *row, const QByteArray &data, bool conflicts) {
            QTest::newRow(row) << data << conflicts;
        };
        add("the same numbers, written by others",
            "{ \"carbonModifiers\": 256, \"x\": 1, \"carbonKeyCode\": 40 }", true);
        add("another key", "{\"carbonKeyCode\":41,\"carbonModifiers\":256}", false);
        add("another mask", "{\"carbonKeyCode\":40,\"carbonModifiers\":768}", false);
        add("another mask that reads the same", "{\"carbonKeyCode\":40,\"carbonModifiers\":257}",
            false);
        add("no JSON", "command-k", false);
        add("a member is missing", "{\"carbonKeyCode\":40}", false);
        add("the key code is a text", "{\"carbonKeyCode\":\"40\",\"carbonModifiers\":256}", false);
    }
    void comparesExactlyTheTwoStoredNumbers()
    {
        QFETCH(const QByteArray, data);
        QFETCH(const bool, conflicts);
        Home home;
        home.storeData(home.music, data);
        QCOMPARE(home.warningsOf(home.mail),
                 conflicts ? QStringList(usedBy(u"Music"_s)) : QStringList());
    }

    void reportsAnEntryAgainstItselfUnlessItIsExcluded()
    {
        Home home;
        const auto name = home.files.shortcutName();
        QCOMPARE(home.store->warnings(name, home.files.id), QStringList());
        QCOMPARE(home.store->warnings(name), QStringList({usedBy(u"Files"_s)}));
        home.store->setEnabled(false, home.files.id);
        QCOMPARE(home.store->warnings(name), QStringList());
    }

    void warnsOfADisabledEntryAsSoonAsItIsEnabled()
    {
        Home home;
        home.store->setEnabled(false, home.music.id);
        QCOMPARE(home.warningsOf(home.mail), QStringList());
        home.store->setEnabled(true, home.music.id);
        QCOMPARE(home.warningsOf(home.mail), QStringList({usedBy(u"Music"_s)}));
    }

    void warnsADisabledEntryToo()
    {
        Home home;
        home.store->setEnabled(false, home.mail.id);
        QCOMPARE(home.warningsOf(home.mail), QStringList({usedBy(u"Music"_s)}));
    }

    void warnsAnEntryThatIsNotInTheListYet()
    {
        Home home;
        const auto draft = named(u"Draft"_s);
        home.setKeys(draft, commandL);
        QCOMPARE(home.warningsOf(draft), QStringList({usedBy(u"Files"_s)}));
        QCOMPARE(home.warningsOf(home.files), QStringList());
    }

    void warnsWhilePausedToo()
    {
        Home home;
        home.store->setPaused(true);
        QCOMPARE(home.warningsOf(home.mail), QStringList({usedBy(u"Music"_s)}));
    }

    void asksTheDesktopAnewEachTime()
    {
        Home home;
        QCOMPARE(home.warningsOf(home.mail).size(), 1);
        home.platform.symbolicHotkeys.hotkeys = {systemCommandK};
        QCOMPARE(home.warningsOf(home.mail).size(), 2);
        home.platform.symbolicHotkeys.hotkeys = std::nullopt;
        QCOMPARE(home.warningsOf(home.mail).size(), 1);
    }

    void warnsOnceOfKeysThatTheDesktopAndAnotherProgramHave()
    {
        Home home;
        home.platform.symbolicHotkeys.hotkeys = {systemCommandK};
        home.platform.symbolicHotkeys.heldElsewhere = {{40, 256}};
        QCOMPARE(home.warningsOf(home.mail), QStringList({takenBySystem, usedBy(u"Music"_s)}));
    }

    void tellsOfNewsOfTheDesktop()
    {
        Home home;
        QSignalSpy notices(&*home.store, &ShortcutStore::willChange);
        Q_EMIT home.platform.symbolicHotkeys.changed();
        QCOMPARE(notices.count(), 1);
    }

    void changesNothing()
    {
        Home home;
        const auto before = home.platform.userDefaults.values;
        const int writes = home.platform.userDefaults.writes;
        home.platform.calls.clear();
        home.warningsOf(home.mail);
        home.store->shortcutText(home.mail);
        QCOMPARE(home.platform.userDefaults.values, before);
        QCOMPARE(home.platform.userDefaults.writes, writes);
        QCOMPARE(home.platform.calls, QStringList());
        QCOMPARE(home.store->entries(), home.list());
    }

    void isUpToDateAfterEachChange_data()
    {
        QTest::addColumn<std::function<void(Home &)>>("change");
        QTest::addColumn<QStringList>("users");
        const auto add = [](const char *row, const QStringList &users,
                            const std::function<void(Home &)> &change) {
            QTest::newRow(row) << change << users;
        };
        add("nothing", {u"Music"_s}, [](Home &) {});
        add("a new entry", {u"Music"_s, u"Maps"_s}, [](Home &home) {
            const auto maps = named(u"Maps"_s);
            home.setKeys(maps, commandK);
            home.store->upsert(maps);
        });
        add("a renamed entry", {u"Radio"_s}, [](Home &home) {
            auto radio = home.music;
            radio.name = u"Radio"_s;
            home.store->upsert(radio);
        });
        add("an entry that is replaced by a disabled one", {}, [](Home &home) {
            auto music = home.music;
            music.isEnabled = false;
            home.store->upsert(music);
        });
        add("a deleted entry", {}, [](Home &home) { home.store->deleteEntry(home.music); });
        add("a deleted entry before the one that conflicts", {u"Files"_s}, [](Home &home) {
            home.setKeys(home.files, commandK);
            home.store->deleteEntry(home.music);
        });
        add("an entry that is switched off", {},
            [](Home &home) { home.store->setEnabled(false, home.music.id); });
        add("all keys removed", {}, [](Home &home) { home.store->resetAllShortcuts(); });
        add("all keys removed and some recorded again", {u"Music"_s}, [](Home &home) {
            home.store->resetAllShortcuts();
            home.setKeys(home.mail, commandL);
            home.setKeys(home.music, commandL);
        });
        add("a deleted entry that is brought back", {u"Music"_s}, [](Home &home) {
            home.store->deleteEntry(home.music);
            home.store->undo();
        });
        add("all keys brought back", {u"Music"_s}, [](Home &home) {
            const auto maps = named(u"Maps"_s);
            home.setKeys(maps, commandK);
            home.store->resetAllShortcuts();
            QVERIFY(home.warningsOf(maps).isEmpty());
            home.store->undo();
        });
        add("keys that another entry gets", {u"Music"_s, u"Files"_s},
            [](Home &home) { home.setKeys(home.files, commandK); });
        add("keys that another entry loses", {},
            [](Home &home) { home.setKeys(home.music, std::nullopt); });
        add("another entry's other keys", {},
            [](Home &home) { home.setKeys(home.music, commandL); });
        add("other keys of its own", {u"Files"_s},
            [](Home &home) { home.setKeys(home.mail, commandL); });
        add("keys within changes that are written together", {u"Files"_s}, [](Home &home) {
            const auto together = home.platform.userDefaults.writeTogether();
            home.setKeys(home.files, commandK);
            QCOMPARE(home.warningsOf(home.mail).size(), 2);
            home.setKeys(home.music, std::nullopt);
        });
    }
    void isUpToDateAfterEachChange()
    {
        QFETCH(const std::function<void(Home &)>, change);
        QFETCH(const QStringList, users);
        Home home;
        home.warningsOf(home.mail);
        // Who reads in the notice sees the old state, and must not keep it for others.
        connect(&*home.store, &ShortcutStore::willChange, this,
                [&home] { home.warningsOf(home.mail); });
        change(home);
        QStringList expected;
        for (const QString &user : users)
            expected << usedBy(user);
        QCOMPARE(home.warningsOf(home.mail), expected);
    }

    void readsEachCombinationOnceForItsRowAndOnceForAllOthers()
    {
        QList<LaunchEntry> many;
        for (int i = 0; i < 996; ++i)
            many << named(QString::number(i));
        Home home(many);
        for (int i = 0; i < many.size(); ++i)
            home.setKeys(many[i], Shortcut{i / 2, 4096});
        home.platform.userDefaults.reads = 0;
        qsizetype warnings = 0;
        for (const LaunchEntry &entry : home.store->entries())
            warnings += home.warningsOf(entry).size();
        QCOMPARE(home.store->entries().size(), 1000);
        QCOMPARE(warnings, 2 + many.size());
        QCOMPARE(home.platform.userDefaults.reads, 2 * 1000);
    }

    void showsTheKeysOfARow_data()
    {
        QTest::addColumn<std::optional<Shortcut>>("keys");
        QTest::addColumn<QString>("text");
        QTest::newRow("keys") << std::optional<Shortcut>({0, 0x300}) << u"⇧⌘A"_s;
        QTest::newRow("a key without a name") << std::optional<Shortcut>({105, 0}) << u"Key 105"_s;
        QTest::newRow("no keys") << std::optional<Shortcut>() << u"No keys"_s;
    }
    void showsTheKeysOfARow()
    {
        QFETCH(const std::optional<Shortcut>, keys);
        Home home;
        home.setKeys(home.mail, keys);
        QTEST(home.store->shortcutText(home.mail), "text");
    }

    void showsKeysThatCannotBeReadAsNone()
    {
        Home home;
        home.storeData(home.mail, "no JSON");
        QCOMPARE(home.store->shortcutText(home.mail), u"No keys"_s);
    }
};

QTEST_GUILESS_MAIN(WarningsTest)
#include "WarningsTest.moc"
