// The list changes while keys are pressed: the real store on the real hot key service.

#include "fakes/FakePlatform.h"
#include "hotkeys/HotkeyCenter.h"
#include "platform/KeyModifier.h"
#include "platform/Platform.h"
#include "platform/linux/hotkeys/X11HotkeyService.h"
#include "platform/linux/keys/KeyCodes.h"
#include "platform/linux/services/IniUserDefaults.h"
#include "platform/linux/x11/X11Connection.h"
#include "store/ShortcutStore.h"
#include "support/Keyboard.h"
#include "support/RequestCounter.h"

#include <QTemporaryDir>
#include <QTest>
#include <functional>
#include <thread>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

using KeyboardShortcuts::Shortcut;

namespace
{
constexpr Shortcut controlOptionK{40, controlKey | optionKey};
constexpr Shortcut controlOptionJ{38, controlKey | optionKey};
constexpr Shortcut controlOptionL{37, controlKey | optionKey};
const QList<int> controlAltK{KEY_LEFTCTRL, KEY_LEFTALT, KEY_K};
const QList<int> controlAltJ{KEY_LEFTCTRL, KEY_LEFTALT, KEY_J};

/// How the tests' keyboard has a combination.
struct XKeys {
    int key;
    quint16 state;
};

constexpr std::pair<KeyModifier, quint16> modifiers[] = {
    {commandKey, XCB_MOD_MASK_4},
    {shiftKey, XCB_MOD_MASK_SHIFT},
    {optionKey, XCB_MOD_MASK_1},
    {controlKey, XCB_MOD_MASK_CONTROL},
};

XKeys xKeys(const Shortcut &keys)
{
    const auto physical = KeyCodes::physicalKeys(VirtualKey(keys.carbonKeyCode)).constFirst();
    quint16 state = 0;
    for (const auto &[modifier, bit] : modifiers)
        state |= keys.carbonModifiers & modifier ? bit : 0;
    return {int(physical.evdevCode), state};
}

bool isGrabbed(const Shortcut &keys)
{
    return Keyboard().isGrabbed(xKeys(keys).key, xKeys(keys).state);
}

/// Combinations that no program holds, other than Control+Option+K and J. Those with the key K
/// come first, because what is done to them could disturb a press of K most.
QList<Shortcut> freeCombinations(qsizetype count)
{
    QList<qint64> keyCodes = KeyboardShortcuts::keyNames().keys();
    // The keypad and the keys above the arrows.
    keyCodes += {82, 83, 84, 85, 86, 87, 88, 89, 91, 92, 114, 115, 116, 117, 119, 121};
    std::ranges::sort(keyCodes);
    std::ranges::stable_partition(keyCodes, [](qint64 keyCode) { return keyCode == 40; });

    const Keyboard keyboard;
    QList<Shortcut> combinations;
    for (const qint64 keyCode : std::as_const(keyCodes)) {
        for (int mix = 1; mix < 16; ++mix) {
            Shortcut keys{keyCode, 0};
            for (int i = 0; i < 4; ++i)
                keys.carbonModifiers |= mix & (1 << i) ? modifiers[i].first : 0U;
            if (keys != controlOptionK && keys != controlOptionJ
                && !keyboard.isGrabbed(xKeys(keys).key, xKeys(keys).state))
                combinations << keys;
        }
    }
    if (combinations.size() < count)
        qFatal("this keyboard has too few keys");
    return combinations.first(count);
}

LaunchEntry newEntry(const QString &name)
{
    return {.name = name, .kind = ActionKind::website, .target = u"https://corvane.test/"_s + name};
}

/// The store as the program has it, but for what a run opens: a list of entries with
/// combinations, the first two on Control+Option+K and J.
struct Desk {
    explicit Desk(qsizetype otherEntries)
    {
        const auto together = defaults.writeTogether();
        QList<LaunchEntry> entries{onK, onJ};
        setKeys(onK, controlOptionK);
        setKeys(onJ, controlOptionJ);
        for (const Shortcut &keys : freeCombinations(otherEntries)) {
            entries << newEntry(QString::number(entries.size()));
            setKeys(entries.constLast(), keys);
        }
        if (EntriesFile(folder.path()).write(entries))
            qFatal("cannot write the list");
    }

    const LaunchEntry onK = newEntry(u"K"_s);
    const LaunchEntry onJ = newEntry(u"J"_s);
    QTemporaryDir folder;
    X11Connection connection;
    RequestCounter requests{connection.get()};
    UserActivation activation;
    X11HotkeyService service{connection, activation};
    IniUserDefaults defaults{folder.filePath(u"Corvane.conf"_s)};
    FakePlatform fakes;
    Platform platform{
        .hotkeys = service,
        .symbolicHotkeys = fakes.symbolicHotkeys,
        .userDefaults = defaults,
        .workspace = fakes.workspace,
        .notifications = fakes.notifications,
        .alertSound = fakes.alertSound,
        .statusBar = fakes.statusBar,
        .application = fakes.application,
        .eventMonitor = fakes.eventMonitor,
        .installedApplications = fakes.installedApplications,
        .shortcutLibrary = fakes.shortcutLibrary,
        .loginItem = fakes.loginItem,
        .systemSettings = fakes.systemSettings,
        .appearance = fakes.appearance,
        .wording = fakes.wording,
        .applicationSupport = folder.path(),
        .bundleIdentifier = {},
    };
    HotkeyCenter center{service, defaults};
    std::optional<ShortcutStore> store;
    Keyboard keyboard;

    /// Loads the list and takes its keys.
    void start()
    {
        store.emplace(platform, center);
        service.flush();
        service.attachToEventLoop();
    }

    std::optional<Shortcut> keysOf(const LaunchEntry &entry) const
    {
        return KeyboardShortcuts::getShortcut(entry.shortcutName(), defaults);
    }
    void setKeys(const LaunchEntry &entry, const std::optional<Shortcut> &keys)
    {
        KeyboardShortcuts::setShortcut(keys, entry.shortcutName(), defaults, center);
    }
    void rename(LaunchEntry entry)
    {
        entry.name += u'x';
        store->upsert(entry);
    }

    qsizetype runsOf(const LaunchEntry &entry) const
    {
        return fakes.workspace.opened.count(entry.target);
    }

    /// When J has run, all presses before it have been dealt with.
    void awaitAllPresses()
    {
        // J may have been given up and taken again.
        service.flush();
        const auto runs = runsOf(onJ);
        keyboard.type(controlAltJ);
        QTRY_COMPARE(runsOf(onJ), runs + 1);
    }
};

/// What a user does to the list.
using Change = std::function<void(Desk &desk)>;

/// Somebody who presses Control+Option+K again and again.
class Typist
{
public:
    explicit Typist(std::chrono::milliseconds rhythm)
        : m_thread([this, rhythm](const std::stop_token &stop) {
            Keyboard keyboard;
            while (!stop.stop_requested()) {
                keyboard.press(controlAltK);
                std::this_thread::sleep_for(rhythm / 2);
                keyboard.release(controlAltK);
                std::this_thread::sleep_for(rhythm / 2);
                ++m_presses;
            }
        })
    {
    }

    /// All presses are with the X server then.
    int stop()
    {
        m_thread.request_stop();
        m_thread.join();
        return m_presses;
    }

private:
    int m_presses = 0;
    std::jthread m_thread;
};

/// Each kind of change, to entries behind the first two.
void change(Desk &desk, int step, const QList<Shortcut> &unusedKeys)
{
    const QList<LaunchEntry> &entries = desk.store->entries();
    const LaunchEntry entry = entries[2 + step % (entries.size() - 2)];
    switch (step % 6) {
    case 0:
        desk.store->setEnabled(!entry.isEnabled, entry.id);
        break;
    case 1:
        desk.rename(entry);
        break;
    case 2:
        desk.setKeys(entry, unusedKeys[step % unusedKeys.size()]);
        break;
    case 3:
        desk.store->deleteEntry(entry);
        break;
    case 4:
        desk.store->upsert(newEntry(u"new"_s));
        desk.setKeys(entries.constLast(), unusedKeys[step % unusedKeys.size()]);
        break;
    case 5:
        desk.store->setEnabled(!entries[2].isEnabled, entries[2].id);
        break;
    }
}

// What a change costs, in requests. There are four mixes of Caps and Num Lock.
constexpr unsigned int none = 0;
constexpr unsigned int lettingGo = 4;
/// Which keys are down before and after, the grabs, and one that is answered behind them.
constexpr unsigned int taking = 4 + 3;
} // namespace

class ListChangeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void losesNoPressWhileTheListChanges()
    {
        Desk desk(120);
        desk.start();
        const auto unusedKeys = freeCombinations(40);
        Typist typist(10ms);
        for (int step = 0; step < 200; ++step) {
            change(desk, step, unusedKeys);
            // So that changes come at any time between two presses.
            QTest::qWait(step % 10);
        }
        const int presses = typist.stop();

        desk.awaitAllPresses();
        QCOMPARE_GE(presses, 50);
        QCOMPARE(desk.runsOf(desk.onK), presses);
    }

    void losesNoPressWhileManyKeysAreTakenAtOnce()
    {
        Desk desk(0);
        desk.start();
        const auto newKeys = freeCombinations(400);
        for (qsizetype i = 0; i < newKeys.size(); ++i)
            desk.store->upsert(newEntry(u"new"_s));
        QCoreApplication::processEvents();

        Typist typist(2ms);
        QTRY_COMPARE_GE(desk.runsOf(desk.onK), 20);
        {
            const auto together = desk.defaults.writeTogether();
            for (qsizetype i = 0; i < newKeys.size(); ++i)
                desk.setKeys(desk.store->entries()[2 + i], newKeys[i]);
        }
        desk.service.flush();
        QVERIFY(isGrabbed(newKeys.constLast()));
        const auto runs = desk.runsOf(desk.onK);
        QTRY_COMPARE_GE(desk.runsOf(desk.onK), runs + 20);
        const int presses = typist.stop();

        desk.awaitAllPresses();
        QCOMPARE(desk.runsOf(desk.onK), presses);
    }

    void runsForAPressThatComesWithTheAnswerToAChange()
    {
        Desk desk(1);
        desk.start();
        desk.keyboard.type(controlAltK);
        // Asked behind the press, so that it is on its way to the store's connection.
        QVERIFY(!desk.keyboard.isDown(KEY_K));
        desk.setKeys(desk.store->entries().constLast(), freeCombinations(1).constFirst());
        desk.service.flush();
        QTRY_COMPARE(desk.runsOf(desk.onK), 1);
    }

    void runsNothingForKeysThatAreStillDownWhenTheyAreStored()
    {
        Desk desk(0);
        desk.start();
        desk.setKeys(desk.onK, std::nullopt);
        QTRY_VERIFY(!isGrabbed(controlOptionK));

        desk.keyboard.press(controlAltK);
        QTRY_VERIFY(desk.keyboard.isDown(KEY_K));
        desk.setKeys(desk.onK, controlOptionK);
        QTRY_VERIFY(isGrabbed(controlOptionK));
        // Long enough for the key to repeat.
        QTest::qWait(1000);
        desk.keyboard.release(controlAltK);
        desk.awaitAllPresses();
        QCOMPARE(desk.runsOf(desk.onK), 0);

        desk.keyboard.type(controlAltK);
        desk.awaitAllPresses();
        QCOMPARE(desk.runsOf(desk.onK), 1);
    }

    void asksTheServerForWhatHasChangedOnly_data()
    {
        using Change = std::function<void(Desk &, const LaunchEntry &)>;
        QTest::addColumn<Change>("change");
        QTest::addColumn<unsigned int>("requests");
        QTest::addColumn<bool>("isGrabbedThen");
        const auto add = [](const char *row, const Change &change, unsigned int requests,
                            bool isGrabbedThen) {
            QTest::newRow(row) << change << requests << isGrabbedThen;
        };
        add(
            "an entry is turned off",
            [](Desk &desk, const LaunchEntry &entry) { desk.store->setEnabled(false, entry.id); },
            lettingGo, false);
        add(
            "an entry that is on is turned on",
            [](Desk &desk, const LaunchEntry &entry) { desk.store->setEnabled(true, entry.id); },
            none, true);
        add(
            "an entry is turned off and on at once",
            [](Desk &desk, const LaunchEntry &entry) {
                desk.store->setEnabled(false, entry.id);
                desk.store->setEnabled(true, entry.id);
            },
            none, true);
        add(
            "an entry is turned off and then on",
            [](Desk &desk, const LaunchEntry &entry) {
                desk.store->setEnabled(false, entry.id);
                desk.service.flush();
                desk.store->setEnabled(true, entry.id);
            },
            lettingGo + taking, true);
        add(
            "an entry has another name",
            [](Desk &desk, const LaunchEntry &entry) { desk.rename(entry); }, none, true);
        add(
            "an entry is deleted",
            [](Desk &desk, const LaunchEntry &entry) { desk.store->deleteEntry(entry); }, lettingGo,
            false);
        add(
            "an entry has other keys",
            [](Desk &desk, const LaunchEntry &entry) {
                desk.setKeys(entry, freeCombinations(1).constFirst());
            },
            lettingGo + taking, false);
        add(
            "an entry without keys is added",
            [](Desk &desk, const LaunchEntry &) { desk.store->upsert(newEntry(u"new"_s)); }, none,
            true);
    }
    void asksTheServerForWhatHasChangedOnly()
    {
        using Change = std::function<void(Desk &, const LaunchEntry &)>;
        QFETCH(const Change, change);
        QFETCH(const unsigned int, requests);
        QFETCH(const bool, isGrabbedThen);
        Desk desk(998);
        desk.start();
        const LaunchEntry entry = desk.store->entries()[500];
        const Shortcut keys = desk.keysOf(entry).value();
        QVERIFY(isGrabbed(keys));

        const auto before = desk.requests.soFar();
        change(desk, entry);
        desk.service.flush();
        QCOMPARE(desk.requests.soFar() - before, requests);
        QTRY_COMPARE(isGrabbed(keys), isGrabbedThen);
    }

    void triesRefusedKeysAgainWithEachChange()
    {
        auto rival = std::make_unique<Keyboard>();
        const auto refusedKeys = freeCombinations(3);
        Desk desk(998);
        for (const Shortcut &keys : refusedKeys)
            rival->grab(xKeys(keys).key, xKeys(keys).state);
        desk.start();
        const auto cost = [&desk](const LaunchEntry &entry) {
            const auto before = desk.requests.soFar();
            desk.rename(entry);
            desk.service.flush();
            return desk.requests.soFar() - before;
        };
        const LaunchEntry entry = desk.store->entries()[500];

        // The rival has one lock mix of each, so that three are taken and let go again.
        QCOMPARE(cost(entry), 3U * 4 + 3 + 3 * 3);
        QCOMPARE(cost(entry), 3U * 4 + 3 + 3 * 3);
        rival.reset();
        QTRY_VERIFY(!isGrabbed(refusedKeys.constLast()));
        QCOMPARE(cost(entry), 3U * 4 + 3);
        for (const Shortcut &keys : refusedKeys)
            QVERIFY(isGrabbed(keys));
        QCOMPARE(cost(entry), none);
    }

    void leavesTheKeysOfTwoEntriesToTheFirstUntilItGivesThemUp_data()
    {
        QTest::addColumn<QList<Change>>("changes");
        QTest::addColumn<bool>("secondRuns");
        const auto add = [](const char *row, const QList<Change> &changes, bool secondRuns) {
            QTest::newRow(row) << changes << secondRuns;
        };
        const Change switchOff = [](Desk &desk) { desk.store->setEnabled(false, desk.onK.id); };
        const Change switchOn = [](Desk &desk) { desk.store->setEnabled(true, desk.onK.id); };
        const Change pauseAndResume = [](Desk &desk) {
            desk.store->setPaused(true);
            QCoreApplication::processEvents();
            desk.store->setPaused(false);
        };
        const auto record = [](const Shortcut &keys) {
            return [keys](Desk &desk) { desk.setKeys(desk.onK, keys); };
        };
        add("the first stays as it is", {}, false);
        add("the first is renamed", {[](Desk &desk) { desk.rename(desk.onK); }}, false);
        add("the second is renamed",
            {[](Desk &desk) { desk.rename(desk.store->entries().constLast()); }}, false);
        add("the same keys are recorded for the first", {record(controlOptionK)}, false);
        add("other keys are recorded for the first", {record(controlOptionL)}, true);
        add("other keys are recorded for the first, then the same ones again",
            {record(controlOptionL), record(controlOptionK)}, true);
        add("the first is deleted", {[](Desk &desk) { desk.store->deleteEntry(desk.onK); }}, true);
        add("the first is switched off", {switchOff}, true);
        add("the first is switched off and on", {switchOff, switchOn}, true);
        add("all are paused and resumed", {pauseAndResume}, false);
    }
    void leavesTheKeysOfTwoEntriesToTheFirstUntilItGivesThemUp()
    {
        QFETCH(const QList<Change>, changes);
        QFETCH(const bool, secondRuns);
        Desk desk(1);
        desk.start();
        const LaunchEntry second = desk.store->entries().constLast();
        desk.setKeys(second, controlOptionK);
        desk.awaitAllPresses();
        for (const Change &change : changes) {
            change(desk);
            desk.awaitAllPresses();
        }
        desk.keyboard.type(controlAltK);
        desk.awaitAllPresses();
        QCOMPARE(desk.runsOf(desk.onK), secondRuns ? 0 : 1);
        QCOMPARE(desk.runsOf(second), secondRuns ? 1 : 0);
    }
};

QTEST_GUILESS_MAIN(ListChangeTest)
#include "ListChangeTest.moc"
