#include "model/ShortcutStore.h"
#include "fakes/FakePlatform.h"
#include "hotkeys/HotkeyCenter.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// What a store is made on: fakes, and files of its own.
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
    void write(const QList<LaunchEntry> &entries)
    {
        Json list = Json::array();
        for (const LaunchEntry &entry : entries)
            list.push_back(entry.toJson());
        write(JsonCoding::write(list));
    }
    void storeKeys(const LaunchEntry &entry, qint64 keyCode)
    {
        KeyboardShortcuts::setShortcut(KeyboardShortcuts::Shortcut{keyCode, 256},
                                       entry.shortcutName(), platform.userDefaults, center);
    }
    QList<quint32> liveKeyCodes() const
    {
        QList<quint32> codes;
        for (const auto &live : platform.hotkeys.live)
            codes << live.keyCode;
        return codes;
    }
};

LaunchEntry app(const QString &name)
{
    return {.name = name, .target = QCoreApplication::applicationFilePath()};
}

const QString couldNotLoad = u"Your shortcut list could not be loaded."_s;
} // namespace

class ShortcutStoreTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsEmptyOnAFirstStart()
    {
        Home home;
        const ShortcutStore store(home.platform.services, home.center);
        QVERIFY(store.entries().isEmpty());
        QVERIFY(!store.error());
        QVERIFY(QDir(home.folder()).exists());
        QVERIFY(!QFile::exists(home.file()));
    }

    void loadsAnEmptyList()
    {
        Home home;
        home.write("[]");
        const ShortcutStore store(home.platform.services, home.center);
        QVERIFY(store.entries().isEmpty());
        QVERIFY(!store.error());
    }

    void loadsTheListInTheOrderOfTheFile()
    {
        Home home;
        const QList entries{app(u"Mail"_s), app(u"Music"_s), app(u"Files"_s)};
        home.write(entries);
        const ShortcutStore store(home.platform.services, home.center);
        QCOMPARE(store.entries(), entries);
    }

    void reportsAListThatCannotBeReadAndLeavesItAsItIs_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("empty file") << QByteArray("");
        QTest::newRow("no JSON") << QByteArray("shortcuts");
        QTest::newRow("no array") << QByteArray("{}");
        QTest::newRow("a record that lacks isEnabled")
            << QByteArray(R"([{"id":"1B4E28BA-2FA1-11D2-883F-0016D3CCA427","name":"N",)"
                          R"("kind":"app","target":""}])");
    }
    void reportsAListThatCannotBeReadAndLeavesItAsItIs()
    {
        QFETCH(const QByteArray, text);
        Home home;
        home.write(text);
        const ShortcutStore store(home.platform.services, home.center);
        QVERIFY(store.entries().isEmpty());
        QCOMPARE(store.error().value().message, couldNotLoad);
        QVERIFY(!store.error()->details.isEmpty());
        QFile file(home.file());
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), text);
    }

    void reportsAListThatIsThereButOutOfReach()
    {
        Home home;
        QVERIFY(QDir().mkpath(home.folder()));
        QVERIFY(QFile::link(u"/nowhere/entries.json"_s, home.file()));
        const ShortcutStore store(home.platform.services, home.center);
        QCOMPARE(store.error().value().message, couldNotLoad);
    }

    void reportsAFolderThatCannotBeMade()
    {
        Home home;
        QFile inTheWay(home.folder());
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        const ShortcutStore store(home.platform.services, home.center);
        QCOMPARE(store.error().value().message, couldNotLoad);
    }

    void reportsASystemWithoutAFolderForData()
    {
        Home home;
        home.platform.services.applicationSupport.clear();
        const ShortcutStore store(home.platform.services, home.center);
        QCOMPARE(store.error().value().message, couldNotLoad);
    }

    void registersTheStoredKeysOfEnabledEntries()
    {
        Home home;
        auto disabled = app(u"Music"_s);
        disabled.isEnabled = false;
        const QList entries{app(u"Mail"_s), disabled, app(u"No keys"_s), app(u"Files"_s)};
        home.write(entries);
        home.storeKeys(entries[0], 40);
        home.storeKeys(entries[1], 41);
        home.storeKeys(entries[3], 43);
        const ShortcutStore store(home.platform.services, home.center);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({40, 43}));
    }

    void letsAnEnabledEntryHaveTheKeysOfADisabledOneBeforeIt()
    {
        Home home;
        auto disabled = app(u"Music"_s);
        disabled.isEnabled = false;
        const QList entries{disabled, app(u"Mail"_s)};
        home.write(entries);
        home.storeKeys(entries[0], 40);
        home.storeKeys(entries[1], 40);
        const ShortcutStore store(home.platform.services, home.center);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({40}));
        home.platform.hotkeys.press(home.platform.hotkeys.live.constFirst().id);
        QTRY_COMPARE(home.platform.workspace.opened.size(), 1);
    }

    void opensTheAppWhoseKeysArePressed()
    {
        Home home;
        auto second = app(u"Music"_s);
        second.target = QDir::tempPath();
        home.write(QList{app(u"Mail"_s), second});
        home.storeKeys(second, 41);
        const ShortcutStore store(home.platform.services, home.center);
        home.platform.hotkeys.press(home.platform.hotkeys.live.constFirst().id);
        QTRY_COMPARE(home.platform.workspace.opened, QStringList({second.target}));
    }

    void runsOnALaterTurnOfTheEventLoop()
    {
        Home home;
        ShortcutStore store(home.platform.services, home.center);
        store.run(app(u"Mail"_s));
        QVERIFY(home.platform.workspace.opened.isEmpty());
        QCoreApplication::processEvents();
        QCOMPARE(home.platform.workspace.opened.size(), 1);
    }

    void firesNoDisabledEntry()
    {
        Home home;
        auto disabled = app(u"Mail"_s);
        disabled.isEnabled = false;
        home.write(QList{disabled});
        ShortcutStore store(home.platform.services, home.center);
        store.fire(disabled.id);
        QCoreApplication::processEvents();
        QVERIFY(home.platform.workspace.opened.isEmpty());
    }

    void takesEntriesWithOneIdForTheSame()
    {
        Home home;
        const auto first = app(u"Mail"_s);
        auto second = first;
        second.name = u"Post"_s;
        second.target = QDir::tempPath();
        home.write(QList{first, second});
        ShortcutStore store(home.platform.services, home.center);
        store.fire(second.id);
        QTRY_COMPARE(home.platform.workspace.opened, QStringList({first.target}));
    }

    void firesNothingForAnUnknownId()
    {
        Home home;
        home.write(QList{app(u"Mail"_s)});
        ShortcutStore store(home.platform.services, home.center);
        store.fire(QUuid::createUuid());
        QCoreApplication::processEvents();
        QVERIFY(home.platform.workspace.opened.isEmpty());
    }

    void ignoresKeysThatArePressedAfterItHasGone()
    {
        Home home;
        const auto mail = app(u"Mail"_s);
        home.write(QList{mail});
        home.storeKeys(mail, 40);
        {
            const ShortcutStore store(home.platform.services, home.center);
        }
        home.platform.hotkeys.press(home.platform.hotkeys.live.constFirst().id);
        QCoreApplication::processEvents();
        QVERIFY(home.platform.workspace.opened.isEmpty());
    }

    void reportsEachErrorAnew()
    {
        Home home;
        ShortcutStore store(home.platform.services, home.center);
        store.report(u"It failed."_s, {u"Why"_s});
        const auto first = store.error();
        store.report(u"It failed."_s, {u"Why"_s});
        QCOMPARE(first->message, u"It failed."_s);
        QCOMPARE(first->details, u"Why"_s);
        QVERIFY(store.error()->id != first->id);
    }
};

QTEST_GUILESS_MAIN(ShortcutStoreTest)
#include "ShortcutStoreTest.moc"
