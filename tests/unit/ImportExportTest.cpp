#include "model/ExportFile.h"
#include "support/CpuTime.h"
#include "support/StoreHome.h"

#include <QDir>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;
using KeyboardShortcuts::Shortcut;

namespace
{
LaunchEntry app(const QString &name)
{
    return {.name = name, .target = u"/apps/"_s + name};
}

ExportItem item(const QString &name, std::optional<qint64> keyCode = std::nullopt,
                std::optional<qint64> modifiers = std::nullopt)
{
    ExportItem made{.name = name, .target = u"/apps/"_s + name};
    made.keyCode = keyCode;
    made.modifiers = modifiers;
    return made;
}

ExportItem disabled(ExportItem item)
{
    item.isEnabled = false;
    return item;
}

QByteArray fileOf(const QList<ExportItem> &items)
{
    return ExportFile{.items = items}.encoded();
}

const Shortcut commandN{45, 256};
const Shortcut commandO{31, 256};

/// The store of a user with Mail on ⌘N and Music without keys, and what its observers are told.
struct Home : StoreHome {
    Home()
        : StoreHome({app(u"Mail"_s), app(u"Music"_s)})
    {
        setKeys(mail(), commandN);
        platform.userDefaults.writes = 0;
        platform.calls.clear();
        QObject::connect(&*store, &ShortcutStore::willChange, [this] {
            ++notices;
            platform.calls << u"notice"_s;
            seen = store->entries();
        });
    }

    LaunchEntry mail() const { return store->entries().at(0); }
    LaunchEntry music() const { return store->entries().at(1); }
    QList<LaunchEntry> imported() const { return store->entries().sliced(2); }

    std::optional<Shortcut> keys(const LaunchEntry &entry) const
    {
        return store->getShortcut(entry.shortcutName());
    }
    QList<quint32> liveKeyCodes() const
    {
        QList<quint32> codes;
        for (const auto &live : platform.hotkeys.live)
            codes << live.keyCode;
        std::ranges::sort(codes);
        return codes;
    }
    QString path() const { return platform.applicationSupport.filePath(u"Corvane/entries.json"_s); }
    QByteArray savedBytes() const
    {
        QFile file(path());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }
    QList<LaunchEntry> saved() const
    {
        return EntriesFile(platform.applicationSupport.path()).read().value();
    }

    int notices = 0;
    QList<LaunchEntry> seen;
};

QStringList namesOf(const QList<LaunchEntry> &entries)
{
    QStringList names;
    for (const LaunchEntry &entry : entries)
        names << entry.name;
    return names;
}
} // namespace

class ImportExportTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Export

    void exportsAnEmptyList()
    {
        const StoreHome home;
        QCOMPARE(home.store->exportData(), QByteArray("{\n  \"items\": [],\n  \"version\": 1\n}"));
    }

    void exportsTheListInItsOrderWithItsKeys()
    {
        const LaunchEntry mail = app(u"Mail"_s);
        const LaunchEntry news{.name = u"News"_s,
                               .kind = ActionKind::website,
                               .target = u"https://example.org"_s,
                               .isEnabled = false};
        StoreHome home({mail, news});
        home.setKeys(news, {45, 256});
        const ExportItem exportedNews{.name = u"News"_s,
                                      .kind = ActionKind::website,
                                      .target = u"https://example.org"_s,
                                      .isEnabled = false,
                                      .keyCode = 45,
                                      .modifiers = 256};
        QCOMPARE(home.store->exportData(), fileOf({item(u"Mail"_s), exportedNews}));
    }

    void exportsNoKeysWhereTheStoredOnesCannotBeRead_data()
    {
        QTest::addColumn<QByteArray>("stored");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("no JSON") << QByteArray("keys");
        QTest::newRow("half of a combination") << QByteArray(R"({"carbonKeyCode":12})");
        QTest::newRow("a text") << QByteArray(R"({"carbonKeyCode":"12","carbonModifiers":0})");
        QTest::newRow("absurd depth") << QByteArray(1'000'000, '[');
    }
    void exportsNoKeysWhereTheStoredOnesCannotBeRead()
    {
        QFETCH(const QByteArray, stored);
        Home home;
        home.platform.userDefaults.setData(defaultsKey(home.mail().shortcutName()), stored);
        QCOMPARE(home.store->exportData(), fileOf({item(u"Mail"_s), item(u"Music"_s)}));
    }

    void changesNothingByAnExport()
    {
        Home home;
        const QByteArray bytes = home.savedBytes();
        const auto entries = home.store->entries();
        QVERIFY(!home.store->exportData().isEmpty());
        QCOMPARE(home.store->entries(), entries);
        QCOMPARE(home.savedBytes(), bytes);
        QCOMPARE(home.platform.userDefaults.writes, 0);
        QCOMPARE(home.platform.calls, QStringList());
    }

    // Import

    void addsTheItemsAtTheEndInTheirOrder()
    {
        Home home;
        const auto before = home.store->entries();
        QCOMPARE(home.store->importData(fileOf({item(u"B"_s), item(u"A"_s)})).value(), 2);
        QCOMPARE(home.store->entries().first(2), before);
        QCOMPARE(namesOf(home.imported()), QStringList({u"B"_s, u"A"_s}));
        QCOMPARE(home.saved(), home.store->entries());
    }

    void takesEachItemAsItIs()
    {
        Home home;
        QList<ExportItem> items;
        for (const ActionKind kind : ActionKinds::allCases)
            items << ExportItem{.name = u"“N”\n"_s, .kind = kind, .target = u" 🚀 "_s};
        items << disabled(item(QString()));
        QVERIFY(home.store->importData(fileOf(items)));
        for (int i = 0; i < items.size(); ++i) {
            const LaunchEntry entry = home.imported().at(i);
            QCOMPARE(entry.name, items[i].name);
            QCOMPARE(entry.kind, items[i].kind);
            QCOMPARE(entry.target, items[i].target);
            QCOMPARE(entry.isEnabled, items[i].isEnabled);
        }
    }

    void storesTheKeysOfAnItem_data()
    {
        QTest::addColumn<ExportItem>("item");
        QTest::addColumn<std::optional<Shortcut>>("expected");
        const auto add = [](const char *row, const ExportItem &item,
                            const std::optional<Shortcut> &expected) {
            QTest::newRow(row) << item << expected;
        };
        add("both", item(u"N"_s, 45, 256), Shortcut{45, 256});
        add("a key code only", item(u"N"_s, 12), Shortcut{12, 0});
        add("modifiers only", item(u"N"_s, {}, 256), std::nullopt);
        add("neither", item(u"N"_s), std::nullopt);
        add("the key with code 0", item(u"N"_s, 0, 0), Shortcut{0, 0});
        add("the largest numbers", item(u"N"_s, 4294967295, 4294967295),
            Shortcut{4294967295, 4294967295});
        add("those of a disabled item", disabled(item(u"N"_s, 45, 256)), Shortcut{45, 256});
    }
    void storesTheKeysOfAnItem()
    {
        QFETCH(const ExportItem, item);
        QFETCH(const std::optional<Shortcut>, expected);
        Home home;
        QVERIFY(home.store->importData(fileOf({item})));
        const LaunchEntry entry = home.imported().constFirst();
        QCOMPARE(home.keys(entry), expected);
        QCOMPARE(home.platform.userDefaults.values.contains(defaultsKey(entry.shortcutName())),
                 expected.has_value());
    }

    void givesEachImportIdsOfItsOwn()
    {
        Home home;
        const QByteArray file = home.store->exportData();
        QCOMPARE(home.store->importData(file).value(), 2);
        QCOMPARE(home.store->importData(file).value(), 2);
        QCOMPARE(
            namesOf(home.store->entries()),
            QStringList({u"Mail"_s, u"Music"_s, u"Mail"_s, u"Music"_s, u"Mail"_s, u"Music"_s}));
        QSet<QUuid> ids;
        for (const LaunchEntry &entry : home.store->entries())
            ids << entry.id;
        QCOMPARE(ids.size(), 6);
    }

    void pointsOutThatACopyHasTheSameKeys()
    {
        Home home;
        QVERIFY(home.store->importData(home.store->exportData()));
        const LaunchEntry copy = home.imported().constFirst();
        QCOMPARE(home.store->warnings(copy.shortcutName(), copy.id),
                 QStringList({u"The same keys are used by “Mail”."_s}));
    }

    void bringsAListToAnotherComputer()
    {
        Home home;
        home.store->setEnabled(false, home.mail().id);
        const QByteArray file = home.store->exportData();
        StoreHome other;
        QCOMPARE(other.store->importData(file).value(), 2);
        QCOMPARE(other.store->exportData(), file);
    }

    void countsNoItemsOfAnEmptyFileButSavesTheList()
    {
        Home home;
        const auto entries = home.store->entries();
        QVERIFY(QFile::remove(home.path()));
        QCOMPARE(home.store->importData(fileOf({})).value(), 0);
        QCOMPARE(home.store->entries(), entries);
        QCOMPARE(home.saved(), entries);
    }

    void takesAFileOfAnyVersion()
    {
        Home home;
        ExportFile later{.version = 7, .items = {item(u"Maps"_s, 31, 256)}};
        QCOMPARE(home.store->importData(later.encoded()).value(), 1);
        QCOMPARE(home.keys(home.imported().constFirst()), commandO);
    }

    // Keys that are live

    void makesTheKeysLiveAtOnce()
    {
        Home home;
        QVERIFY(home.store->importData(fileOf(
            {{.name = u"Root"_s, .kind = ActionKind::path, .target = u"/"_s, .keyCode = 31}})));
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({31, 45}));
        const auto live = home.platform.hotkeys.live;
        home.platform.hotkeys.press(live[live[0].keyCode == 31 ? 0 : 1].id);
        QTRY_COMPARE(home.platform.workspace.opened, QStringList({u"file:///"_s}));
    }

    void makesNoDisabledItemLive()
    {
        Home home;
        QVERIFY(home.store->importData(
            fileOf({disabled(item(u"Maps"_s, 31, 256)), item(u"News"_s, 12, 256)})));
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({12, 45}));
        home.store->setEnabled(true, home.imported().constFirst().id);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({12, 31, 45}));
    }

    void makesNothingLiveWhilePaused()
    {
        Home home;
        home.store->setPaused(true);
        QVERIFY(home.store->importData(fileOf({item(u"Maps"_s, 31, 256)})));
        QCOMPARE(home.liveKeyCodes(), QList<quint32>());
        home.store->setPaused(false);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({31, 45}));
    }

    void keepsKeysThatCannotBeLiveInSilence()
    {
        Home home;
        home.platform.hotkeys.refusedKeyCodes.insert(31);
        QCOMPARE(home.store->importData(fileOf({item(u"Maps"_s, 31, 256)})).value(), 1);
        QCOMPARE(home.keys(home.imported().constFirst()), commandO);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({45}));
        QCOMPARE(home.store->error(), std::nullopt);
    }

    void registersKeysThatAreUsedTwiceBehindThoseOfWhoHadThem()
    {
        Home home;
        const auto before = home.platform.hotkeys.live;
        QVERIFY(home.store->importData(fileOf({item(u"Maps"_s, 45, 256)})));
        QCOMPARE(home.platform.hotkeys.live.size(), before.size() + 1);
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({45, 45}));
    }

    // How it does so

    void announcesTheChangeOnceAndBeforeIt()
    {
        Home home;
        const auto before = home.store->entries();
        QVERIFY(home.store->importData(fileOf({item(u"Maps"_s, 31, 256), item(u"News"_s)})));
        QCOMPARE(home.notices, 1);
        QCOMPARE(home.seen, before);
        QCOMPARE(home.platform.calls.constFirst(), u"notice"_s);
    }

    void registersEachItemBeforeItLooksAtWhatIsEnabled()
    {
        Home home;
        home.store->setEnabled(false, home.mail().id);
        home.platform.calls.clear();
        QVERIFY(home.store->importData(
            fileOf({disabled(item(u"Maps"_s, 31, 256)), disabled(item(u"News"_s, 12, 256))})));
        QCOMPARE(home.platform.calls,
                 QStringList({u"notice"_s, u"register 31"_s, u"register 12"_s, u"unregister 31"_s,
                              u"unregister 12"_s}));
    }

    void writesAllKeysTogether()
    {
        Home home;
        QVERIFY(home.store->importData(
            fileOf({item(u"Maps"_s, 31, 256), item(u"News"_s, 12, 256), item(u"A"_s, 0, 256)})));
        QCOMPARE(home.platform.userDefaults.writes, 1);
    }

    void succeedsEvenIfTheListCannotBeSaved()
    {
        Home home;
        const QString folder = home.platform.applicationSupport.filePath(u"Corvane"_s);
        QVERIFY(QDir(folder).removeRecursively());
        QFile inTheWay(folder);
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        QCOMPARE(home.store->importData(fileOf({item(u"Maps"_s, 31, 256)})).value(), 1);
        QCOMPARE(home.store->error().value().message, u"Your shortcut list could not be saved."_s);
        QCOMPARE(namesOf(home.imported()), QStringList({u"Maps"_s}));
        QCOMPARE(home.liveKeyCodes(), QList<quint32>({31, 45}));
    }

    void changesNothingByAFileThatItRefuses_data()
    {
        QTest::addColumn<QByteArray>("file");
        const QByteArray good = fileOf({item(u"Maps"_s, 31, 256), item(u"News"_s, 12, 256)});
        const auto bad = [&good](const QByteArray &from, const QByteArray &to) {
            return QByteArray(good).replace(good.lastIndexOf(from), from.size(), to);
        };
        QTest::newRow("an empty file") << QByteArray();
        QTest::newRow("half a file") << good.first(good.size() / 2);
        QTest::newRow("two files") << good + good;
        QTest::newRow("zero bytes after it") << good + QByteArray(3, '\0');
        QTest::newRow("invalid UTF-8") << bad("News", "\xff");
        QTest::newRow("absurd depth") << QByteArray(1'000'000, '[');
        QTest::newRow("absurd depth in place of a name")
            << bad("\"News\"", QByteArray(1'000'000, '[') + QByteArray(1'000'000, ']'));
        QTest::newRow("no version") << bad("version", "Version");
        QTest::newRow("no items") << bad("items", "Items");
        QTest::newRow("an unknown kind") << bad("\"app\"", "\"folder\"");
        QTest::newRow("an item without a target") << bad("target", "Target");
        QTest::newRow("a key code out of range") << bad("12", "-12");
        QTest::newRow("modifiers that are a text") << bad("256", "\"256\"");
    }
    void changesNothingByAFileThatItRefuses()
    {
        QFETCH(const QByteArray, file);
        Home home;
        const auto entries = home.store->entries();
        const auto defaults = home.platform.userDefaults.values;
        const QByteArray bytes = home.savedBytes();
        const auto handlers = home.center.handlers.size();
        QVERIFY(!home.store->importData(file));
        QCOMPARE(home.store->entries(), entries);
        QCOMPARE(home.platform.userDefaults.values, defaults);
        QCOMPARE(home.platform.userDefaults.writes, 0);
        QCOMPARE(home.savedBytes(), bytes);
        QCOMPARE(home.center.handlers.size(), handlers);
        QCOMPARE(home.platform.calls, QStringList());
        QCOMPARE(home.store->error(), std::nullopt);
    }

    void saysWhatIsWrongWithAFile()
    {
        Home home;
        const QByteArray file = fileOf({item(u"Maps"_s)}).replace("\"app\"", "\"folder\"");
        QCOMPARE(home.store->importData(file).error().description,
                 u"Item 1: “folder” is not a kind of entry."_s);
    }

    void takesALargeFileInTime()
    {
        Home home;
        QList<ExportItem> items;
        for (int i = 0; i < 10'000; ++i)
            items << item(u"N"_s, i, 4096);
        const QByteArray file = fileOf(items);
        const double seconds =
            cpuSeconds([&] { QCOMPARE(home.store->importData(file).value(), 10'000); });
        QVERIFY2(seconds < 3, QByteArray::number(seconds));
        QCOMPARE(home.platform.userDefaults.writes, 1);
        QCOMPARE(home.liveKeyCodes().size(), 10'001);
    }

    void takesAHugeItemInTime()
    {
        Home home;
        QByteArray members;
        for (int i = 0; i < 200'000; ++i)
            members += "\"" + QByteArray::number(i) + "\":null,";
        const QByteArray file = fileOf({item(u"Maps"_s)}).replace("\"name\"", members + "\"name\"");
        const double seconds =
            cpuSeconds([&] { QCOMPARE(home.store->importData(file).value(), 1); });
        QVERIFY2(seconds < 5, QByteArray::number(seconds));
    }
};

QTEST_GUILESS_MAIN(ImportExportTest)
#include "ImportExportTest.moc"
