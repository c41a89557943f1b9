// Real presses of key combinations, from outside: what is done to the keys, and how often an entry
// runs. The same stories on each desktop where the program registers combinations.

#include "support/About.h"
#include "support/Accessible.h"
#include "support/HotkeyDesktop.h"
#include "support/ProgramOnTheBus.h"
#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"

#include <QTest>
#include <csignal>
#include <functional>

using namespace Qt::StringLiterals;

namespace
{
const QString x11 = u"X11"_s;
const QString plasma = u"Plasma"_s;
const QStringList allWays{x11, plasma};

const QList<int> controlAlt{KEY_LEFTCTRL, KEY_LEFTALT};
const QList<int> controlAltJ = controlAlt + QList<int>{KEY_J};
const QList<int> controlAltK = controlAlt + QList<int>{KEY_K};
const QList<int> controlAltM = controlAlt + QList<int>{KEY_M};
const QList<int> controlAltN = controlAlt + QList<int>{KEY_N};
const QList<int> controlAltY = controlAlt + QList<int>{KEY_Y};
constexpr StoredKeys storedControlAltK{40, 0x1800};
constexpr StoredKeys storedControlAltM{46, 0x1800};
constexpr StoredKeys storedControlAltN{45, 0x1800};
constexpr StoredKeys storedControlAltY{16, 0x1800};

/// Longer than it takes a held key to repeat several times.
constexpr int longHold = 1300;
/// Shorter than any repeat.
constexpr int shortPause = 60;

/// The program with two entries. The stories are about the first one. The second one, on Control,
/// Alt and M, tells that what happened before has been dealt with: the program registers its keys
/// last, because M has the highest key code.
struct Desk {
    const std::unique_ptr<HotkeyDesktop> desktop = HotkeyDesktop::running();
    KeyPresser &keyboard = desktop->keyboard();
    RecordedApp app;
    RecordedApp marker;
    ProgramUnderTest program;
    Accessible windows;

    void start(StoredKeys keys = storedControlAltK)
    {
        program.isAccessible = true;
        program.addApp(app.desktopFile(), keys);
        program.addApp(marker.desktopFile(), storedControlAltM);
        program.start();
        QTRY_VERIFY(isTaken('M'));
    }

    bool isTaken(char letter) const
    {
        const QHash<char, int> keys{{'J', KEY_J}, {'K', KEY_K}, {'M', KEY_M}};
        return desktop->isTaken(keys.value(letter), letter);
    }

    void hold(const QList<int> &keys)
    {
        keyboard.press(keys);
        QTest::qWait(longHold);
        keyboard.release(keys);
    }

    /// Presses the marker's keys until they run it, while nothing else tells whether the program
    /// hears its keys.
    void awaitKeys() { awaitKeys(controlAltM, marker); }
    void awaitKeys(const QList<int> &keys, const RecordedApp &itsApp)
    {
        const qsizetype runs = itsApp.starts().size();
        const auto runsSoon = [&] {
            keyboard.type(keys);
            return QTest::qWaitFor([&] { return itsApp.starts().size() > runs; }, 300);
        };
        QVERIFY(QTest::qWaitFor(runsSoon));
    }

    void openWindow()
    {
        askForSettings();
        windows = Accessible::program(program.processId());
    }

    /// Presses the button of that name once it shows.
    void press(const QString &name) const
    {
        const Accessible button = windows.await(u"push button"_s, name);
        QVERIFY(QTest::qWaitFor([&] { return button.press(); }));
    }

    /// Begins to record other keys for the entry with these, and awaits that a key is heard.
    void record(const QString &formerKeys)
    {
        press(formerKeys);
        const Accessible hint = windows.await(u"label"_s, u"Esc cancels"_s);
        const auto isHeard = [&] {
            keyboard.type({KEY_F7});
            return hint.name() != u"Esc cancels"_s;
        };
        QVERIFY(QTest::qWaitFor(isHeard));
    }

    void awaitRecorded(const QString &keys) const
    {
        QVERIFY(windows.await(u"push button"_s, keys).isThere());
    }

    /// Claims that the entry has run so often, and not more often when all presses so far have been
    /// dealt with.
    void claimRuns(int runs)
    {
        QTRY_VERIFY(app.starts().size() >= runs);
        const qsizetype runsOfMarker = marker.starts().size();
        keyboard.type(controlAltM);
        QTRY_VERIFY(marker.starts().size() > runsOfMarker);
        QCOMPARE(program.stop(), 0);
        QCOMPARE(app.starts().size(), runs);
    }
};

using Story = std::function<void(Desk &)>;

void press(Desk &desk)
{
    desk.start();
    desk.keyboard.type(controlAltK);
    desk.keyboard.type(controlAltK);
    desk.claimRuns(2);
}

void hold(Desk &desk)
{
    desk.start();
    desk.hold(controlAltK);
    desk.claimRuns(1);
}

void pressSoonAfterAHold(Desk &desk)
{
    desk.start();
    desk.hold(controlAltK);
    QTest::qWait(shortPause);
    desk.keyboard.type(controlAltK);
    desk.claimRuns(2);
}

void letTheModifiersGoFirst(Desk &desk)
{
    desk.start();
    for (const int pause : {shortPause, longHold}) {
        desk.keyboard.press(controlAltK);
        desk.keyboard.release(controlAlt);
        QTest::qWait(pause);
        desk.keyboard.release({KEY_K});
        QTest::qWait(shortPause);
    }
    desk.claimRuns(2);
}

void pauseAll(Desk &desk)
{
    desk.start();
    chooseInTray(u"Pause all shortcuts"_s);
    QTRY_VERIFY(!desk.isTaken('K') && !desk.isTaken('M'));
    desk.keyboard.type(controlAltK);
    chooseInTray(u"Pause all shortcuts"_s);
    QTRY_VERIFY(desk.isTaken('K') && desk.isTaken('M'));
    desk.keyboard.type(controlAltK);
    desk.claimRuns(1);
}

void edit(Desk &desk)
{
    desk.start();
    desk.openWindow();
    desk.press(u"Edit"_s);
    desk.record(u"Ctrl+Alt+K"_s);
    desk.keyboard.type(controlAltJ);
    desk.awaitRecorded(u"Ctrl+Alt+J"_s);
    desk.press(u"Save"_s);
    QTRY_VERIFY(desk.isTaken('J') && !desk.isTaken('K'));
    desk.awaitKeys();
    desk.keyboard.type(controlAltK);
    desk.keyboard.type(controlAltJ);
    desk.claimRuns(1);
}

void refuse(Desk &desk)
{
    auto rival = desk.desktop->takeKByAnother();
    desk.start();
    desk.keyboard.type(controlAltK);
    desk.awaitKeys();
    rival.reset();
    QTRY_VERIFY(!desk.isTaken('K'));
    // The program tries again when its window is activated.
    desk.openWindow();
    QTRY_VERIFY(desk.isTaken('K'));
    desk.keyboard.type(controlAltK);
    desk.claimRuns(1);
}

/// Other keys first, and then those that the entry has.
void holdOnWhatIsRecorded(Desk &desk)
{
    desk.start();
    desk.openWindow();
    desk.press(u"Edit"_s);
    for (const QString &former : {u"Ctrl+Alt+K"_s, u"Ctrl+Alt+J"_s}) {
        desk.record(former);
        desk.keyboard.press(controlAltJ);
        desk.awaitRecorded(u"Ctrl+Alt+J"_s);
        QTRY_VERIFY(desk.isTaken('J'));
        QTest::qWait(longHold);
        desk.keyboard.release(controlAltJ);
    }
    desk.awaitKeys();
    desk.keyboard.type(controlAltJ);
    desk.claimRuns(1);
}

void switchTheLayout(Desk &desk)
{
    desk.desktop->setLayouts("us,de,ru");
    desk.start(storedControlAltY);
    constexpr std::pair<quint8, char> layouts[] = {{0, 'Y'}, {1, 'Z'}, {2, 'Y'}, {0, 'Y'}};
    for (const auto &[layout, letter] : layouts) {
        desk.desktop->switchToLayout(layout);
        QTRY_VERIFY(desk.desktop->isTaken(KEY_Y, letter));
        desk.keyboard.type(controlAltY);
    }
    desk.claimRuns(int(std::size(layouts)));
}

void crashAndStart(Desk &desk)
{
    desk.start();
    kill(desk.program.processId(), SIGKILL);
    QCOMPARE(desk.program.exitStatus(), -1);
    desk.keyboard.type(controlAltK);
    // Plasma keeps the keys for a program that crashed. So only new ones, which are registered
    // after K, tell that all keys are registered again.
    const RecordedApp newApp;
    desk.program.addApp(newApp.desktopFile(), storedControlAltN);
    desk.program.writeFiles();
    desk.program.startAgain();
    desk.awaitKeys(controlAltN, newApp);
    desk.keyboard.type(controlAltK);
    desk.claimRuns(1);
}

void quit(Desk &desk)
{
    desk.start();
    chooseInTray(u"Quit"_s);
    QCOMPARE(desk.program.exitStatus(), 0);
    QTRY_VERIFY(!desk.isTaken('K') && !desk.isTaken('M'));
    desk.keyboard.type(controlAltK);
    desk.program.startAgain();
    QTRY_VERIFY(desk.isTaken('M'));
    desk.keyboard.type(controlAltK);
    desk.claimRuns(1);
}
} // namespace

class HotkeyPressesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The first press of another keyboard changes that of the X server, and then the program asks
    // for refused keys again.
    void initTestCase() { HotkeyDesktop::running()->keyboard().type({KEY_F7}); }
    void cleanup() { HotkeyDesktop::running()->setLayouts("us"); }

    void runTheEntryOnceEach_data()
    {
        QTest::addColumn<Story>("story");
        QTest::addColumn<QStringList>("appliesTo");
        const auto add = [](const char *row, const Story &story, const QStringList &appliesTo) {
            QTest::newRow(row) << story << appliesTo;
        };
        add("pressed twice", press, allWays);
        add("held", hold, allWays);
        add("pressed soon after a hold", pressSoonAfterAHold, allWays);
        add("the modifiers are let go first", letTheModifiersGoFirst, allWays);
        add("pressed while paused, and afterwards", pauseAll, allWays);
        add("other keys are recorded", edit, allWays);
        add("refused until another program gives the keys up", refuse, allWays);
        add("held on after they were recorded", holdOnWhatIsRecorded, allWays);
        add("pressed in each layout", switchTheLayout, allWays);
        add("pressed after a crash, and after the next start", crashAndStart, allWays);
        add("pressed after Quit, and after the next start", quit, allWays);
    }
    void runTheEntryOnceEach()
    {
        QFETCH(const Story, story);
        QFETCH(const QStringList, appliesTo);
        Desk desk;
        if (!appliesTo.contains(desk.desktop->way()))
            QSKIP("This cannot happen with this desktop's way to register combinations.");
        story(desk);
        QCOMPARE(desk.program.errorOutput(), QByteArray());
    }

    void areRegisteredAsAboutSays()
    {
        Desk desk;
        desk.start();
        desk.openWindow();
        QCOMPARE(wayInAbout(desk.windows), desk.desktop->way());
    }
};

QTEST_GUILESS_MAIN(HotkeyPressesTest)
#include "HotkeyPressesTest.moc"
