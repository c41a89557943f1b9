#include "store/ShortcutStore.h"
#include "fakes/FakePlatform.h"
#include "hotkeys/HotkeyCenter.h"
#include "support/LittleSpace.h"

#include <QDir>
#include <QFile>
#include <QSet>
#include <QTest>
#include <nlohmann/json.hpp>

using namespace Qt::StringLiterals;

namespace
{
LaunchEntry app(const QString &name)
{
    return {.name = name, .target = QCoreApplication::applicationFilePath()};
}

LaunchEntry disabled(LaunchEntry entry)
{
    entry.isEnabled = false;
    return entry;
}

QByteArray fileOf(const QList<LaunchEntry> &entries)
{
    OrderedJson list = OrderedJson::array();
    for (const LaunchEntry &entry : entries)
        list.push_back(entry.toJson());
    return JsonCoding::write(list);
}

/// What a store is made on: fakes, and files of its own. K, L and ; are 40, 37 and 41.
struct Home {
    FakePlatform platform;
    HotkeyCenter center{platform.hotkeys, platform.userDefaults};

    QString folder() const { return platform.applicationSupport.filePath(u"Corvane"_s); }
    QString file() const { return folder() + u"/entries.json"_s; }

    void write(const QByteArray &text)
    {
        QVERIFY(QDir().mkpath(folder()));
        QFile entries(file());
        QVERIFY(entries.open(QIODevice::WriteOnly));
        entries.write(text);
    }
    QByteArray read() const
    {
        QFile entries(file());
        return entries.open(QIODevice::ReadOnly) ? entries.readAll() : QByteArray();
    }
    void storeKeys(const LaunchEntry &entry, qint64 keyCode)
    {
        KeyboardShortcuts::setShortcut(KeyboardShortcuts::Shortcut{keyCode, 256},
                                       entry.shortcutName(), platform.userDefaults, center);
    }
    std::optional<KeyboardShortcuts::Shortcut> keys(const LaunchEntry &entry) const
    {
        return KeyboardShortcuts::getShortcut(entry.shortcutName(), platform.userDefaults);
    }
    QList<quint32> liveKeyCodes() const
    {
        QList<quint32> codes;
        for (const auto &live : platform.hotkeys.live)
            codes << live.keyCode;
        std::ranges::sort(codes);
        return codes;
    }
    void press(quint32 keyCode)
    {
        for (const auto &live : QList(platform.hotkeys.live)) {
            if (live.keyCode == keyCode)
                platform.hotkeys.press(live.id);
        }
    }
    QStringList &opened() { return platform.workspace.opened; }
};

/// A store of three apps with keys, and what its observers saw when it announced a change.
struct FullStore : Home {
    explicit FullStore(const std::function<void(FullStore &)> &prepare = {})
    {
        write(fileOf(entries));
        storeKeys(entries[0], 37);
        storeKeys(entries[1], 40);
        storeKeys(entries[2], 41);
        if (prepare)
            prepare(*this);
        store.emplace(platform.services, center);
        QObject::connect(&*store, &ShortcutStore::willChange, [this] {
            ++notices;
            platform.calls << u"notice"_s;
            seen = {store->entries(), store->paused(), store->error().has_value()};
        });
        platform.calls.clear();
    }

    /// The user-defaults key of an entry's combination.
    QString keysOf(int index) const
    {
        return KeyboardShortcuts::defaultsKey(entries[index].shortcutName());
    }

    struct State {
        QList<LaunchEntry> entries;
        bool paused = false;
        bool hasError = false;
    };

    QList<LaunchEntry> entries{app(u"Mail"_s), app(u"Music"_s), app(u"Files"_s)};
    std::optional<ShortcutStore> store;
    int notices = 0;
    State seen;
};

/// A run of one entry that ends as it is told to.
struct Run : FullStore {
    Run(const LaunchEntry &entry, const std::optional<Error> &error = std::nullopt)
        : FullStore([](FullStore &) {})
    {
        store->run(entry);
        QCoreApplication::processEvents();
        if (!opened().isEmpty())
            platform.workspace.finish(error);
    }
};

const LaunchEntry lostApp{.name = u"Mail"_s, .target = u"/nowhere"_s};
const QString couldNotLoad = u"Your shortcut list could not be loaded."_s;
const QString couldNotSave = u"Your shortcut list could not be saved."_s;
} // namespace

class ShortcutStoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The start

    void sharesTheOneThatIsNamed()
    {
        Home home;
        ShortcutStore store(home.platform.services, home.center);
        ShortcutStore::setShared(store);
        const ShortcutStore other(home.platform.services, home.center);
        QCOMPARE(&ShortcutStore::shared(), &store);
    }

    void startsEmptyOnAFirstStart()
    {
        Home home;
        const ShortcutStore store(home.platform.services, home.center);
        QVERIFY(store.entries().isEmpty());
        QVERIFY(!store.paused());
        QVERIFY(!store.error());
        QVERIFY(QDir(home.folder()).exists());
        QVERIFY(!QFile::exists(home.file()));
    }

    void loadsTheListInTheOrderOfTheFile()
    {
        const FullStore home;
        QCOMPARE(home.store->entries(), home.entries);
        QCOMPARE(home.store->error(), std::nullopt);
    }

    void savesNothingAtTheStart()
    {
        Home home;
        const QByteArray text = " [ ] ";
        home.write(text);
        const ShortcutStore store(home.platform.services, home.center);
        QCOMPARE(home.read(), text);
        QCOMPARE(home.platform.userDefaults.writes, 0);
    }

    void reportsAListThatCannotBeLoaded()
    {
        Home home;
        home.write("{}");
        const ShortcutStore store(home.platform.services, home.center);
        QVERIFY(store.entries().isEmpty());
        QCOMPARE(store.error().value().message, couldNotLoad);
        QCOMPARE(store.error()->details, u"The list is not an array of entries."_s);
    }

    void reportsSettingsThatCannotBeLoadedAfterTheList()
    {
        Home home;
        home.write("{}");
        home.platform.userDefaults.failure = Error{u"It is damaged."_s};
        ShortcutStore store(home.platform.services, home.center);
        QCOMPARE(store.error().value().message, couldNotLoad);
        store.clearError(*store.error());
        QCOMPARE(store.error().value().message, u"Your settings could not be loaded."_s);
        QCOMPARE(store.error()->details, u"It is damaged."_s);
        store.clearError(*store.error());
        QCOMPARE(store.error(), std::nullopt);
    }

    void reportsSettingsThatCannotBeSaved_data()
    {
        using Change = std::function<void(FullStore &)>;
        QTest::addColumn<Change>("change");
        const auto add = [](const char *row, const Change &change) {
            QTest::newRow(row) << change;
        };
        add("the pause", [](FullStore &it) { it.store->setPaused(true); });
        add("new keys", [](FullStore &it) {
            it.store->setShortcut(KeyboardShortcuts::Shortcut{3, 256},
                                  it.entries[0].shortcutName());
        });
        add("no keys", [](FullStore &it) { it.store->resetAllShortcuts(); });
        add("a deleted entry", [](FullStore &it) { it.store->deleteEntry(it.entries[0]); });
        add("what only a view knows",
            [](FullStore &it) { it.platform.userDefaults.setBoolean(u"hasSeenWelcome"_s, true); });
    }
    void reportsSettingsThatCannotBeSaved()
    {
        QFETCH(const std::function<void(FullStore &)>, change);
        FullStore home;
        home.platform.userDefaults.failure = Error{u"No space"_s};
        QSet<QUuid> errors;
        connect(&home.platform.userDefaults, &UserDefaults::changed, this,
                [&] { errors.insert(home.store->error().value().id); });
        change(home);
        QCOMPARE(home.store->error().value().message, u"Your settings could not be saved."_s);
        QCOMPARE(home.store->error()->details, u"No space"_s);
        QCOMPARE(errors.size(), 1);
    }

    void replacesAListThatCannotBeLoadedWithTheFirstChange()
    {
        Home home;
        // There is no isEnabled.
        home.write("[{\"id\":\"1B4E28BA-2FA1-11D2-883F-0016D3CCA427\",\"name\":\"N\","
                   "\"kind\":\"app\",\"target\":\"\"}]");
        ShortcutStore store(home.platform.services, home.center);
        QVERIFY(store.entries().isEmpty());
        QCOMPARE(store.error().value().message, couldNotLoad);
        const auto mail = app(u"Mail"_s);
        store.upsert(mail);
        QCOMPARE(home.read(), fileOf({mail}));
    }

    void registersTheStoredKeysOfEnabledEntries()
    {
        Home home;
        const QList entries{app(u"Mail"_s), disabled(app(u"Music"_s)), app(u"No keys"_s),
                            app(u"Files"_s)};
        home.write(fileOf(entries));
        home.storeKeys(entries[0], 40);
        home.storeKeys(entries[1], 41);
        home.storeKeys(entries[3], 43);
        const ShortcutStore store(home.platform.services, home.center);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({40, 43}));
    }

    void letsAnEnabledEntryHaveTheKeysOfADisabledOneBeforeIt()
    {
        Home home;
        const QList entries{disabled(app(u"Music"_s)), app(u"Mail"_s)};
        home.write(fileOf(entries));
        home.storeKeys(entries[0], 40);
        home.storeKeys(entries[1], 40);
        const ShortcutStore store(home.platform.services, home.center);
        home.press(40);
        QTRY_COMPARE(home.opened().size(), 1);
    }

    void startsPausedIfItWasLeftSo()
    {
        const FullStore home(
            [](FullStore &it) { it.platform.userDefaults.setBoolean(u"pauseAll"_s, true); });
        QVERIFY(home.store->paused());
        QVERIFY(home.platform.hotkeys.live.isEmpty());
    }

    // Changes of the list

    void addsANewEntryAtTheEnd()
    {
        FullStore home;
        const auto entry = app(u"Maps"_s);
        home.store->upsert(entry);
        QCOMPARE(home.store->entries(), home.entries + QList({entry}));
        QCOMPARE(home.read(), fileOf(home.store->entries()));
    }

    void replacesAnEntryInItsPlace()
    {
        FullStore home;
        home.entries[1].name = u"Radio"_s;
        home.store->upsert(home.entries[1]);
        QCOMPARE(home.store->entries(), home.entries);
        QCOMPARE(home.read(), fileOf(home.entries));
    }

    void makesANewEntryLive()
    {
        FullStore home;
        const auto entry = app(u"Maps"_s);
        home.storeKeys(entry, 43);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 40, 41}));
        home.store->upsert(entry);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 40, 41, 43}));
    }

    void takesTheKeysFromAnEntryThatIsReplacedByADisabledOne()
    {
        FullStore home;
        home.store->upsert(disabled(home.entries[1]));
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 41}));
    }

    void runsAnEntryAsItIsWhenItsKeysArePressed()
    {
        FullStore home;
        home.entries[1].target = QDir::tempPath();
        home.store->upsert(home.entries[1]);
        home.press(40);
        QTRY_COMPARE(home.opened(), QStringList({QDir::tempPath()}));
    }

    void deletesAnEntryWithItsKeys()
    {
        FullStore home;
        const LaunchEntry deleted = home.entries.takeAt(1);
        home.store->deleteEntry(deleted);
        QCOMPARE(home.store->entries(), home.entries);
        QCOMPARE(home.read(), fileOf(home.entries));
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 41}));
        QCOMPARE(home.keys(deleted), std::nullopt);
        QVERIFY(!home.center.handlers.contains(deleted.shortcutName().rawValue));
    }

    void deletesAnEntryThatItIsGivenOutOfItsList()
    {
        FullStore home;
        home.store->deleteEntry(home.store->entries().constFirst());
        QCOMPARE(home.store->entries(), home.entries.sliced(1));
    }

    void savesTheListBeforeItRemovesTheKeysOfADeletedEntry()
    {
        FullStore home;
        const LaunchEntry deleted = home.entries.takeAt(1);
        QByteArrayList lists;
        connect(&home.platform.userDefaults, &UserDefaults::changed, this,
                [&] { lists << home.read(); });
        home.store->deleteEntry(deleted);
        QCOMPARE(lists, QByteArrayList({fileOf(home.entries)}));
    }

    void leavesTheKeysOfADeletedEntryWhereTheListCannotBeSaved()
    {
        FullStore home;
        const QByteArray list = home.read();
        QVERIFY(withLittleSpace([&] {
            home.store->deleteEntry(home.entries[1]);
            return home.store->error().has_value();
        }));
        QCOMPARE(home.store->error()->message, couldNotSave);
        QCOMPARE(home.store->entries().size(), 2);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 41}));
        QCOMPARE(home.read(), list);
        // As after the next start.
        home.store.emplace(home.platform.services, home.center);
        QCOMPARE(home.store->entries(), home.entries);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 40, 41}));
    }

    void deletesAllEntriesWithOneId()
    {
        Home home;
        const auto mail = app(u"Mail"_s);
        const auto music = app(u"Music"_s);
        home.write(fileOf({mail, music, mail}));
        ShortcutStore store(home.platform.services, home.center);
        store.deleteEntry(mail);
        QCOMPARE(store.entries(), QList({music}));
    }

    void doesNotRunAnEntryThatIsDeletedBetweenThePressAndTheRun()
    {
        FullStore home;
        home.press(40);
        home.store->deleteEntry(home.entries[1]);
        QCoreApplication::processEvents();
        QVERIFY(home.opened().isEmpty());
    }

    void givesADeletedEntrysKeysToNoNewOne()
    {
        FullStore home;
        home.store->deleteEntry(home.entries[1]);
        const auto anew = app(home.entries[1].name);
        home.store->upsert(anew);
        QCOMPARE(home.keys(anew), std::nullopt);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 41}));
    }

    void switchesAnEntryOffAndOn()
    {
        FullStore home;
        home.store->setEnabled(false, home.entries[1].id);
        home.entries[1].isEnabled = false;
        QCOMPARE(home.store->entries(), home.entries);
        QCOMPARE(home.read(), fileOf(home.entries));
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 41}));
        home.store->setEnabled(true, home.entries[1].id);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 40, 41}));
    }

    void ignoresTheSwitchOfAnUnknownEntry()
    {
        FullStore home;
        QVERIFY(QFile::remove(home.file()));
        home.store->setEnabled(false, QUuid::createUuid());
        QCOMPARE(home.store->entries(), home.entries);
        QCOMPARE(home.notices, 0);
        QVERIFY(!QFile::exists(home.file()));
    }

    void knowsWhichEntriesItHas()
    {
        const FullStore home;
        QVERIFY(home.store->contains(home.entries[2].id));
        QVERIFY(!home.store->contains(QUuid::createUuid()));
    }

    void triesRefusedKeysAgainWithTheNextChange()
    {
        FullStore home([](FullStore &it) { it.platform.hotkeys.refusedKeyCodes.insert(40); });
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 41}));
        home.platform.hotkeys.refusedKeyCodes.clear();
        home.store->setEnabled(false, home.entries[0].id);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({40, 41}));
    }

    void registersKeysThatAreUsedTwiceForBothEntries()
    {
        FullStore home([](FullStore &it) { it.storeKeys(it.entries[2], 40); });
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 40, 40}));
        home.store->deleteEntry(home.entries[1]);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 40}));
    }

    void keepsAChangeThatItCannotSave()
    {
        FullStore home;
        QVERIFY(QDir(home.folder()).removeRecursively());
        QFile inTheWay(home.folder());
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        home.store->setEnabled(false, home.entries[1].id);
        QCOMPARE(home.store->error().value().message, couldNotSave);
        QVERIFY(!home.store->entries()[1].isEnabled);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 41}));
    }

    void makesItsFolderAnewToSave()
    {
        FullStore home;
        QVERIFY(QDir(home.folder()).removeRecursively());
        home.store->deleteEntry(home.entries[0]);
        QCOMPARE(home.read(), fileOf(home.entries.sliced(1)));
    }

    // Keys, and the pause

    void removesAllKeysAndNothingElse()
    {
        FullStore home;
        const QByteArray text = home.read();
        home.store->setEnabled(false, home.entries[0].id);
        home.store->setEnabled(true, home.entries[0].id);
        home.platform.userDefaults.setBoolean(u"pauseAll"_s, false);
        home.platform.userDefaults.writes = 0;

        home.store->resetAllShortcuts();
        QVERIFY(home.platform.hotkeys.live.isEmpty());
        QCOMPARE(home.platform.userDefaults.values.keys(), QStringList({u"pauseAll"_s}));
        QCOMPARE(home.platform.userDefaults.writes, 1);
        QCOMPARE(home.store->entries(), home.entries);
        QCOMPARE(home.read(), text);
    }

    void takesNewKeysAfterAReset()
    {
        FullStore home;
        home.store->resetAllShortcuts();
        home.storeKeys(home.entries[1], 43);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({43}));
    }

    void givesUpAllKeysWhilePaused()
    {
        FullStore home;
        const QByteArray text = home.read();
        home.store->setPaused(true);
        QVERIFY(home.store->paused());
        QVERIFY(home.platform.hotkeys.live.isEmpty());
        for (const LaunchEntry &entry : home.entries)
            QVERIFY(home.center.disabled.contains(entry.shortcutName().rawValue));
        QCOMPARE(home.platform.userDefaults.boolean(u"pauseAll"_s), true);
        QCOMPARE(home.read(), text);
    }

    void takesExactlyTheKeysOfEnabledEntriesAfterThePause()
    {
        FullStore home;
        home.store->setPaused(true);
        home.store->setEnabled(false, home.entries[0].id);
        KeyboardShortcuts::setShortcut(std::nullopt, home.entries[1].shortcutName(),
                                       home.platform.userDefaults, home.center);
        QVERIFY(home.platform.hotkeys.live.isEmpty());
        home.store->setPaused(false);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({41}));
        QCOMPARE(home.platform.userDefaults.boolean(u"pauseAll"_s), false);
    }

    void makesNoNewEntryLiveWhilePaused()
    {
        FullStore home;
        home.store->setPaused(true);
        const auto entry = app(u"Maps"_s);
        home.storeKeys(entry, 43);
        home.store->upsert(entry);
        QVERIFY(home.platform.hotkeys.live.isEmpty());
    }

    // Undo

    void bringsBackADeletedEntry_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("the first") << 0;
        QTest::newRow("one in the middle") << 1;
        QTest::newRow("the last") << 2;
    }
    void bringsBackADeletedEntry()
    {
        QFETCH(const int, index);
        FullStore home;
        const QByteArray list = home.read();
        const auto defaults = home.platform.userDefaults.values;
        home.store->deleteEntry(home.entries[index]);
        QCOMPARE(home.store->undoable(), ShortcutStore::Undoable{home.entries[index]});
        home.store->undo();
        QCOMPARE(home.store->entries(), home.entries);
        QCOMPARE(home.read(), list);
        QCOMPARE(home.platform.userDefaults.values, defaults);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 40, 41}));
        QVERIFY(!home.store->undoable());
        home.press(quint32(home.keys(home.entries[index])->carbonKeyCode));
        QTRY_COMPARE(home.opened(), QStringList({home.entries[index].target}));
    }

    void bringsBackTheOnlyEntry()
    {
        Home home;
        const auto mail = app(u"Mail"_s);
        home.write(fileOf({mail}));
        ShortcutStore store(home.platform.services, home.center);
        store.deleteEntry(mail);
        QCOMPARE(home.read(), fileOf({}));
        store.undo();
        QCOMPARE(store.entries(), QList({mail}));
        QCOMPARE(home.read(), fileOf({mail}));
    }

    void bringsBackADisabledEntryDisabled()
    {
        FullStore home;
        home.entries[1].isEnabled = false;
        home.store->setEnabled(false, home.entries[1].id);
        home.store->deleteEntry(home.entries[1]);
        home.store->undo();
        QCOMPARE(home.store->entries(), home.entries);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 41}));
        home.store->setEnabled(true, home.entries[1].id);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 40, 41}));
    }

    void bringsBackAllEntriesWithOneId()
    {
        Home home;
        const auto mail = app(u"Mail"_s);
        const auto music = app(u"Music"_s);
        home.write(fileOf({mail, music, mail}));
        ShortcutStore store(home.platform.services, home.center);
        store.deleteEntry(mail);
        store.undo();
        QCOMPARE(store.entries(), QList({mail, music, mail}));
    }

    void bringsBackAllKeys()
    {
        FullStore home([](FullStore &it) {
            it.entries[2].isEnabled = false;
            it.write(fileOf(it.entries));
            // Of a later version, perhaps.
            it.platform.userDefaults.setData(it.keysOf(1), "[40]");
        });
        const QByteArray list = home.read();
        const auto defaults = home.platform.userDefaults.values;
        home.store->resetAllShortcuts();
        QCOMPARE(home.store->undoable(), ShortcutStore::Undoable());
        home.store->undo();
        QCOMPARE(home.platform.userDefaults.values, defaults);
        QCOMPARE(home.store->entries(), home.entries);
        QCOMPARE(home.read(), list);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37}));
        QVERIFY(!home.store->undoable());
    }

    void writesOnceToUndo_data()
    {
        QTest::addColumn<std::function<void(FullStore &)>>("change");
        QTest::addColumn<bool>("isListWritten");
        const auto add = [](const char *row, bool isListWritten,
                            const std::function<void(FullStore &)> &change) {
            QTest::newRow(row) << change << isListWritten;
        };
        add("a deletion", true, [](FullStore &it) { it.store->deleteEntry(it.entries[1]); });
        add("a reset", false, [](FullStore &it) { it.store->resetAllShortcuts(); });
    }
    void writesOnceToUndo()
    {
        QFETCH(const std::function<void(FullStore &)>, change);
        FullStore home;
        change(home);
        home.platform.userDefaults.writes = 0;
        QVERIFY(QFile::remove(home.file()));
        // The list comes last: if the program is killed, no entry is without its keys.
        connect(&home.platform.userDefaults, &UserDefaults::changed, this,
                [&] { QVERIFY(!QFile::exists(home.file())); });
        home.store->undo();
        QCOMPARE(home.platform.userDefaults.writes, 1);
        QTEST(QFile::exists(home.file()), "isListWritten");
    }

    void undoesOnlyTheLastChangeAndOnlyOnce()
    {
        FullStore home;
        home.store->deleteEntry(home.entries[0]);
        home.store->deleteEntry(home.entries[1]);
        home.store->undo();
        QCOMPARE(home.store->entries(), home.entries.sliced(1));
        home.notices = 0;
        home.store->undo();
        QCOMPARE(home.store->entries(), home.entries.sliced(1));
        QCOMPARE(home.notices, 0);
    }

    void undoesNothingOnceSomethingElseHasChanged_data()
    {
        QTest::addColumn<std::function<void(FullStore &)>>("change");
        const auto add = [](const char *row, const std::function<void(FullStore &)> &change) {
            QTest::newRow(row) << change;
        };
        add("a new entry", [](FullStore &it) { it.store->upsert(app(u"Maps"_s)); });
        add("an edited entry", [](FullStore &it) { it.store->upsert(it.entries[0]); });
        add("an entry that is switched off",
            [](FullStore &it) { it.store->setEnabled(false, it.entries[0].id); });
        add("new keys", [](FullStore &it) {
            it.store->setShortcut(KeyboardShortcuts::Shortcut{40, 256},
                                  it.entries[0].shortcutName());
        });
        add("removed keys", [](FullStore &it) {
            it.store->setShortcut(std::nullopt, it.entries[0].shortcutName());
        });
        add("an import",
            [](FullStore &it) { QVERIFY(it.store->importData(it.store->exportData())); });
    }
    void undoesNothingOnceSomethingElseHasChanged()
    {
        QFETCH(const std::function<void(FullStore &)>, change);
        FullStore home;
        home.store->deleteEntry(home.entries[1]);
        change(home);
        QVERIFY(!home.store->undoable());
        const auto entries = home.store->entries();
        home.store->undo();
        QCOMPARE(home.store->entries(), entries);
        QCOMPARE(home.keys(home.entries[1]), std::nullopt);
    }

    void undoesAlsoAfterWhatChangesNoEntry_data()
    {
        QTest::addColumn<std::function<void(FullStore &)>>("change");
        const auto add = [](const char *row, const std::function<void(FullStore &)> &change) {
            QTest::newRow(row) << change;
        };
        add("a run", [](FullStore &it) {
            it.store->run(it.entries[0]);
            QCoreApplication::processEvents();
        });
        add("an error", [](FullStore &it) { it.store->report(u"It failed."_s, {u"Why"_s}); });
        add("an editor that is cancelled", [](FullStore &it) { it.store->announceChange(); });
        add("a file that is no export",
            [](FullStore &it) { QVERIFY(!it.store->importData("no export")); });
        add("the switch of an unknown entry",
            [](FullStore &it) { it.store->setEnabled(false, QUuid::createUuid()); });
        add("another deletion of the entry",
            [](FullStore &it) { it.store->deleteEntry(it.entries[1]); });
        add("the pause and its end", [](FullStore &it) {
            it.store->setPaused(true);
            it.store->setPaused(false);
        });
    }
    void undoesAlsoAfterWhatChangesNoEntry()
    {
        QFETCH(const std::function<void(FullStore &)>, change);
        FullStore home;
        home.store->deleteEntry(home.entries[1]);
        change(home);
        home.store->undo();
        QCOMPARE(home.store->entries(), home.entries);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 40, 41}));
    }

    void undoesAResetAlsoAfterAnotherThatRemovesNothing()
    {
        FullStore home;
        home.store->resetAllShortcuts();
        home.store->resetAllShortcuts();
        home.store->undo();
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 40, 41}));
    }

    void offersNoUndoOfAResetThatRemovesNothing()
    {
        Home home;
        home.write(fileOf({app(u"Mail"_s)}));
        ShortcutStore store(home.platform.services, home.center);
        store.resetAllShortcuts();
        QVERIFY(!store.undoable());
    }

    void makesNothingLiveByAnUndoWhilePaused_data() { writesOnceToUndo_data(); }
    void makesNothingLiveByAnUndoWhilePaused()
    {
        QFETCH(const std::function<void(FullStore &)>, change);
        FullStore home;
        change(home);
        home.store->setPaused(true);
        home.store->undo();
        QVERIFY(home.platform.hotkeys.live.isEmpty());
        home.store->setPaused(false);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 40, 41}));
    }

    void makesKeysLiveByAnUndoAfterThePauseInWhichTheyWereRemoved_data()
    {
        writesOnceToUndo_data();
    }
    void makesKeysLiveByAnUndoAfterThePauseInWhichTheyWereRemoved()
    {
        QFETCH(const std::function<void(FullStore &)>, change);
        FullStore home;
        home.store->setPaused(true);
        change(home);
        home.store->setPaused(false);
        home.store->undo();
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 40, 41}));
    }

    void bringsBackWhatCouldNotBeDeletedOnDisk()
    {
        FullStore home;
        const QByteArray list = home.read();
        const auto defaults = home.platform.userDefaults.values;
        QVERIFY(withLittleSpace([&] {
            home.store->deleteEntry(home.entries[1]);
            return home.store->error().has_value();
        }));
        home.store->undo();
        QCOMPARE(home.store->entries(), home.entries);
        QCOMPARE(home.read(), list);
        QCOMPARE(home.platform.userDefaults.values, defaults);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 40, 41}));
    }

    void keepsAnUndoThatItCannotSave()
    {
        FullStore home;
        home.store->deleteEntry(home.entries[1]);
        QVERIFY(withLittleSpace([&] {
            home.store->undo();
            return home.store->error().has_value();
        }));
        QCOMPARE(home.store->error()->message, couldNotSave);
        QCOMPARE(home.store->entries(), home.entries);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({37, 40, 41}));
        // With the next change.
        home.entries[0].isEnabled = false;
        home.store->setEnabled(false, home.entries[0].id);
        QCOMPARE(home.read(), fileOf(home.entries));
    }

    void undoesNothingOnceTheTimeIsOver()
    {
        FullStore home;
        home.store.emplace(home.platform.services, home.center, std::chrono::milliseconds(20));
        home.store->deleteEntry(home.entries[1]);
        std::optional<ShortcutStore::Undoable> announced;
        connect(&*home.store, &ShortcutStore::willChange, this,
                [&] { announced = home.store->undoable(); });
        QTRY_VERIFY(!home.store->undoable());
        QVERIFY(announced);
        home.store->undo();
        QCOMPARE(home.store->entries().size(), 2);
    }

    void hasHalfAMinuteForAnUndoFromTheLastChangeOnAndNoTimerOtherwise()
    {
        FullStore home;
        const auto *const timer = home.store->findChild<QTimer *>();
        QVERIFY(!timer->isActive());
        home.store->deleteEntry(home.entries[1]);
        QVERIFY(timer->isActive());
        QVERIFY(timer->isSingleShot());
        QCOMPARE(timer->intervalAsDuration(), std::chrono::seconds(30));
        home.store->undo();
        QVERIFY(!timer->isActive());
        home.store->deleteEntry(home.entries[1]);
        home.store->upsert(home.entries[0]);
        QVERIFY(!timer->isActive());
    }

    void knowsNothingToUndoAfterAStart()
    {
        FullStore home;
        home.store->deleteEntry(home.entries[1]);
        home.store.emplace(home.platform.services, home.center);
        QVERIFY(!home.store->undoable());
    }

    // Presses

    void opensTheAppWhoseKeysArePressed()
    {
        FullStore home;
        home.press(41);
        QTRY_COMPARE(home.opened(), QStringList({home.entries[2].target}));
    }

    void ignoresKeysThatArePressedAfterItHasGone()
    {
        FullStore home;
        home.store.reset();
        home.press(40);
        QCoreApplication::processEvents();
        QVERIFY(home.opened().isEmpty());
    }

    void looksAtTheEntryOnlyAfterTheCenterIsDone()
    {
        FullStore home;
        home.center.handlers.value(home.entries[1].shortcutName().rawValue)();
        home.store->setPaused(true);
        QCoreApplication::processEvents();
        QVERIFY(home.opened().isEmpty());
    }

    void firesOnlyWhatItShould_data()
    {
        QTest::addColumn<std::function<QUuid(FullStore &)>>("idToFire");
        QTest::addColumn<int>("runs");
        const auto add = [](const char *row, int runs,
                            const std::function<QUuid(FullStore &)> &idToFire) {
            QTest::newRow(row) << idToFire << runs;
        };
        add("an enabled entry", 1, [](FullStore &home) { return home.entries[1].id; });
        add("an enabled entry without keys", 1, [](FullStore &home) {
            home.store->resetAllShortcuts();
            return home.entries[1].id;
        });
        add("a disabled entry", 0, [](FullStore &home) {
            home.store->setEnabled(false, home.entries[1].id);
            return home.entries[1].id;
        });
        add("an unknown id", 0, [](FullStore &) { return QUuid::createUuid(); });
        add("a deleted entry", 0, [](FullStore &home) {
            home.store->deleteEntry(home.entries[1]);
            return home.entries[1].id;
        });
        add("while paused", 0, [](FullStore &home) {
            home.store->setPaused(true);
            return home.entries[1].id;
        });
    }
    void firesOnlyWhatItShould()
    {
        QFETCH(const std::function<QUuid(FullStore &)>, idToFire);
        FullStore home;
        home.store->fire(idToFire(home));
        QCoreApplication::processEvents();
        QTEST(int(home.opened().size()), "runs");
    }

    void takesEntriesWithOneIdForTheSame()
    {
        Home home;
        const auto first = app(u"Mail"_s);
        auto second = first;
        second.target = QDir::tempPath();
        home.write(fileOf({first, second}));
        ShortcutStore store(home.platform.services, home.center);
        store.fire(second.id);
        QTRY_COMPARE(home.opened(), QStringList({first.target}));
    }

    // Runs

    void runsOnALaterTurnOfTheEventLoop()
    {
        FullStore home;
        home.store->run(app(u"Mail"_s));
        QVERIFY(home.opened().isEmpty());
        QCoreApplication::processEvents();
        QCOMPARE(home.opened().size(), 1);
    }

    void runsEvenWhatIsPausedAndDisabled()
    {
        FullStore home;
        home.store->setPaused(true);
        home.store->run(disabled(home.entries[1]));
        QTRY_COMPARE(home.opened().size(), 1);
    }

    void runsTheEntryAsItWasWhenTheRunBegan()
    {
        FullStore home;
        home.store->run(home.entries[1]);
        home.store->deleteEntry(home.entries[1]);
        QTRY_COMPARE(home.opened(), QStringList({home.entries[1].target}));
        home.platform.workspace.finish();
        QCOMPARE(home.platform.notifications.texts().constFirst().first, u"Music"_s);
    }

    void keepsRunsApart()
    {
        FullStore home;
        home.store->run(home.entries[0]);
        home.store->run(home.entries[1]);
        QTRY_COMPARE(home.opened().size(), 2);
        home.platform.workspace.finish(Error{u"No memory"_s});
        home.platform.workspace.finish();
        const auto texts = home.platform.notifications.texts();
        QCOMPARE(texts.size(), 2);
        QCOMPARE(texts[0].first, u"“Mail” failed"_s);
        QCOMPARE(texts[1].first, u"Music"_s);
    }

    void endsARunWhoseStoreHasGone()
    {
        FullStore home;
        home.store->run(home.entries[1]);
        home.store.reset();
        QTRY_COMPARE(home.opened().size(), 1);
        home.platform.workspace.finish(Error{u"No memory"_s});
        QCOMPARE(home.platform.alertSound.beeps, 1);
        QCOMPARE(home.platform.notifications.added.size(), 1);
    }

    void tellsHowARunEnded_data()
    {
        QTest::addColumn<LaunchEntry>("entry");
        QTest::addColumn<bool>("fails");
        QTest::addColumn<int>("beeps");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("body");
        const auto row = [](const char *name, const LaunchEntry &entry,
                            bool fails = false) -> QTestData & {
            return QTest::newRow(name) << entry << fails;
        };
        row("an app that is not there", lostApp)
            << 1 << u"Not found"_s
            << u"The app for “Mail” was not found. It may have been moved or deleted."_s;
        row("an app that fails", app(u"Mail"_s), true)
            << 1 << u"“Mail” failed"_s << u"Could not open the app: No memory"_s;
        row("a website that fails",
            {.name = u"News"_s, .kind = ActionKind::website, .target = u"https://a.org"_s}, true)
            << 1 << u"“News” failed"_s << u"macOS could not open the website."_s;
        row("an app", app(u"Mail"_s)) << 0 << u"Mail"_s << u"Open an app"_s;
        row("a folder", {.name = u"Home"_s, .kind = ActionKind::path, .target = u"/"_s})
            << 0 << u"Home"_s << u"Open a folder or file"_s;
        row("a website",
            {.name = u"News"_s, .kind = ActionKind::website, .target = u"https://a.org"_s})
            << 0 << u"News"_s << u"Open a website"_s;
        row("a Shortcut", {.name = u"Flow"_s, .kind = ActionKind::shortcut, .target = u"F"_s})
            << 0 << u"Flow"_s << u"Run a Shortcut"_s;
    }
    void tellsHowARunEnded()
    {
        QFETCH(const LaunchEntry, entry);
        QFETCH(const bool, fails);
        QFETCH(const QString, title);
        QFETCH(const QString, body);
        const Run run(entry, fails ? std::optional(Error{u"No memory"_s}) : std::nullopt);
        QTEST(run.platform.alertSound.beeps, "beeps");
        QCOMPARE(run.platform.notifications.texts(),
                 (QList<std::pair<QString, QString>>{{title, body}}));
        QCOMPARE(run.store->error(), std::nullopt);
    }

    void tellsOfSuccessOnlyIfTheUserWantsIt_data()
    {
        QTest::addColumn<std::optional<bool>>("showRunNotification");
        QTest::addColumn<bool>("fails");
        QTest::addColumn<int>("posts");
        const std::optional<bool> absent;
        QTest::newRow("success, never decided") << absent << false << 1;
        QTest::newRow("success, wanted") << std::optional(true) << false << 1;
        QTest::newRow("success, not wanted") << std::optional(false) << false << 0;
        QTest::newRow("failure, never decided") << absent << true << 1;
        QTest::newRow("failure, success not wanted") << std::optional(false) << true << 1;
    }
    void tellsOfSuccessOnlyIfTheUserWantsIt()
    {
        QFETCH(const std::optional<bool>, showRunNotification);
        QFETCH(const bool, fails);
        FullStore home;
        if (showRunNotification)
            home.platform.userDefaults.setBoolean(u"showRunNotification"_s, *showRunNotification);
        home.store->run(fails ? lostApp : home.entries[0]);
        QCoreApplication::processEvents();
        if (!fails)
            home.platform.workspace.finish();
        QTEST(int(home.platform.notifications.added.size()), "posts");
        QCOMPARE(home.platform.alertSound.beeps, fails ? 1 : 0);
    }

    void bringsOpenAppsToTheFrontIfTheUserWantsIt_data()
    {
        QTest::addColumn<std::optional<bool>>("bringToFront");
        QTest::addColumn<bool>("isActivating");
        QTest::newRow("never decided") << std::optional<bool>() << true;
        QTest::newRow("wanted") << std::optional(true) << true;
        QTest::newRow("not wanted") << std::optional(false) << false;
    }
    void bringsOpenAppsToTheFrontIfTheUserWantsIt()
    {
        QFETCH(const std::optional<bool>, bringToFront);
        QFETCH(const bool, isActivating);
        FullStore home;
        if (bringToFront)
            home.platform.userDefaults.setBoolean(u"bringToFront"_s, *bringToFront);
        home.store->run(home.entries[0]);
        // It is prepared at once, before the run itself.
        QCOMPARE(home.platform.workspace.prepared,
                 isActivating ? QStringList(home.entries[0].target) : QStringList());
        QCOMPARE(home.platform.workspace.opened, QStringList());
        QCoreApplication::processEvents();
        QCOMPARE(home.platform.workspace.activating, QList<bool>{isActivating});
    }

    void looksForWindowsAtThePress()
    {
        FullStore home;
        home.platform.hotkeys.press(home.platform.hotkeys.live.constFirst().id);
        const QStringList target(home.entries[0].target);
        QCOMPARE(home.platform.workspace.prepared, target);
        QCOMPARE(home.opened(), QStringList());
        QTRY_COMPARE(home.opened(), target);
        QCOMPARE(home.platform.workspace.prepared, target);
    }

    void looksForWindowsAtAFire()
    {
        FullStore home;
        home.center.fire(home.entries[0].shortcutName());
        QCOMPARE(home.platform.workspace.prepared, QStringList(home.entries[0].target));
    }

    void looksForNothingForADeletedEntry()
    {
        FullStore home;
        const HotkeyId id = home.platform.hotkeys.live.constFirst().id;
        home.store->deleteEntry(home.entries[0]);
        home.platform.hotkeys.press(id);
        QCOMPARE(home.platform.workspace.prepared, QStringList());
    }

    void looksForWindowsOfAppsOnly()
    {
        FullStore home;
        for (const ActionKind kind : {ActionKind::path, ActionKind::website, ActionKind::shortcut})
            home.store->run({.name = u"X"_s, .kind = kind, .target = u"/"_s});
        QCoreApplication::processEvents();
        QCOMPARE(home.platform.workspace.prepared, QStringList());
    }

    // Notices

    void announcesEachChangeBeforeIt_data()
    {
        QTest::addColumn<std::function<void(FullStore &)>>("change");
        const auto add = [](const char *row, const std::function<void(FullStore &)> &change) {
            QTest::newRow(row) << change;
        };
        add("a new entry", [](FullStore &home) { home.store->upsert(app(u"Maps"_s)); });
        add("a changed entry", [](FullStore &home) {
            auto entry = home.entries[1];
            entry.name = u"Radio"_s;
            home.store->upsert(entry);
        });
        add("a deleted entry", [](FullStore &home) { home.store->deleteEntry(home.entries[1]); });
        add("an entry that is switched off",
            [](FullStore &home) { home.store->setEnabled(false, home.entries[1].id); });
        add("the pause", [](FullStore &home) { home.store->setPaused(true); });
        add("an error", [](FullStore &home) { home.store->report(u"It failed."_s, {u"Why"_s}); });
        add("new keys", [](FullStore &home) { home.store->resetAllShortcuts(); });
        add("an undo", [](FullStore &home) {
            home.store->deleteEntry(home.entries.takeAt(1));
            home.notices = 0;
            home.store->undo();
        });
        add("a target that has gone missing", [](FullStore &home) {
            home.store->run(lostApp);
            QCoreApplication::processEvents();
        });
    }
    void announcesEachChangeBeforeIt()
    {
        QFETCH(const std::function<void(FullStore &)>, change);
        FullStore home;
        change(home);
        QCOMPARE(home.notices, 1);
        QCOMPARE(home.seen.entries, home.entries);
        QVERIFY(!home.seen.paused);
        QVERIFY(!home.seen.hasError);
    }

    void doesEverythingInItsOrder_data()
    {
        QTest::addColumn<std::function<QStringList(FullStore &)>>("change");
        const auto add = [](const char *row,
                            const std::function<QStringList(FullStore &)> &change) {
            QTest::newRow(row) << change;
        };
        add("a run whose target is missing", [](FullStore &home) {
            home.store->run(lostApp);
            QCoreApplication::processEvents();
            return QStringList{u"beep"_s, u"post"_s, u"notice"_s};
        });
        add("a run that fails", [](FullStore &home) {
            home.store->run(home.entries[0]);
            QCoreApplication::processEvents();
            home.platform.workspace.finish(Error{u"No memory"_s});
            return QStringList{u"beep"_s, u"post"_s};
        });
        add("the pause", [](FullStore &home) {
            home.store->setPaused(true);
            return QStringList{u"notice"_s, u"store pauseAll"_s, u"unregister 37"_s,
                               u"unregister 40"_s, u"unregister 41"_s};
        });
        add("a deleted entry", [](FullStore &home) {
            const QString keys = home.keysOf(1);
            home.store->deleteEntry(home.entries[1]);
            return QStringList{u"unregister 40"_s, u"notice"_s, u"remove "_s + keys};
        });
        add("all keys removed", [](FullStore &home) {
            home.store->resetAllShortcuts();
            return QStringList{u"remove "_s + home.keysOf(0),
                               u"unregister 37"_s,
                               u"remove "_s + home.keysOf(1),
                               u"unregister 40"_s,
                               u"remove "_s + home.keysOf(2),
                               u"unregister 41"_s,
                               u"notice"_s};
        });
    }
    void doesEverythingInItsOrder()
    {
        QFETCH(const std::function<QStringList(FullStore &)>, change);
        FullStore home;
        const QStringList calls = change(home);
        QCOMPARE(home.platform.calls, calls);
    }

    void announcesNothingForOtherOutcomes()
    {
        QCOMPARE(Run(app(u"Mail"_s)).notices, 0);
        QCOMPARE(Run(app(u"Mail"_s), Error{u"No memory"_s}).notices, 0);
    }

    void reportsEachErrorAnew()
    {
        FullStore home;
        home.store->report(u"It failed."_s, {u"Why"_s});
        const auto first = home.store->error();
        home.store->report(u"It failed."_s, {u"Why"_s});
        QCOMPARE(first->message, u"It failed."_s);
        QCOMPARE(first->details, u"Why"_s);
        QVERIFY(home.store->error()->id != first->id);
    }

    void tellsErrorsOneAfterTheOther()
    {
        FullStore home;
        home.store->report(u"It failed."_s, {u"Why"_s});
        home.store->report(u"It failed again."_s, {u"Why"_s});
        QCOMPARE(home.store->error().value().message, u"It failed."_s);
        home.store->clearError(*home.store->error());
        QCOMPARE(home.store->error().value().message, u"It failed again."_s);
        QVERIFY(home.seen.hasError);
        home.store->clearError(*home.store->error());
        QCOMPARE(home.store->error(), std::nullopt);
    }

    void clearsOnlyTheErrorThatWasSeen()
    {
        FullStore home;
        home.store->report(u"It failed."_s, {u"Why"_s});
        const AppError seen = *home.store->error();
        home.store->report(u"It failed."_s, {u"Why now"_s});
        home.notices = 0;
        home.store->clearError(seen);
        QCOMPARE(home.notices, 0);
        QCOMPARE(home.store->error().value().details, u"Why now"_s);
    }

    void tellsOfEqualErrorsOnlyTheLatest()
    {
        FullStore home;
        for (const QString &reason : {u"first"_s, u"second"_s, u"third"_s})
            home.store->report(u"It failed."_s, {reason});
        QCOMPARE(home.store->error().value().details, u"third"_s);
        home.store->clearError(*home.store->error());
        QCOMPARE(home.store->error(), std::nullopt);
    }

    void registersKeysUnderTheNamesThatTheUserKnows()
    {
        FullStore home;
        LaunchEntry entry = home.store->entries().first();
        const QString name = entry.shortcutName().rawValue;
        home.storeKeys(entry, 40);
        home.store->upsert(entry);
        QCOMPARE(home.platform.hotkeys.titles.value(name), entry.name);
        entry.name = u"Renamed"_s;
        home.store->upsert(entry);
        QCOMPARE(home.platform.hotkeys.titles.value(name), u"Renamed"_s);
    }

    void announcesThatTheDesktopHasAnswered()
    {
        FullStore home;
        home.notices = 0;
        home.platform.hotkeys.setReach(HotkeyReach::nowhere);
        QCOMPARE(home.notices, 1);
        QVERIFY(!home.store->canRegisterKeys());
    }
};

QTEST_GUILESS_MAIN(ShortcutStoreTest)
#include "ShortcutStoreTest.moc"
