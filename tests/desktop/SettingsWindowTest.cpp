// The settings window: when it opens, and that there is one.

#include "support/Keyboard.h"
#include "support/PrivateBus.h"
#include "support/ProcessRest.h"
#include "support/ProgramOnTheBus.h"
#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"
#include "support/Windows.h"

#include <QGuiApplication>
#include <QScreen>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
constexpr quint16 controlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
const QString title = u"Corvane"_s;

/// The program with an app on Control+Option+K, started.
struct Program {
    enum class User {
        isNew,
        knowsIt,
    };

    explicit Program(User user, int furtherEntries = 0)
    {
        program.isUserNew = user == User::isNew;
        program.addApp(app.desktopFile(), {40, 0x1800});
        for (int index = 0; index < furtherEntries; ++index)
            program.addEntry("website", u"https://example.com/%1"_s.arg(index));
        program.start();
        QTRY_VERIFY(keyboard.isGrabbed(KEY_K, controlAlt));
    }

    void verifyThatItsKeysWork()
    {
        const qsizetype before = app.starts().size();
        keyboard.type({KEY_LEFTCTRL, KEY_LEFTALT, KEY_K});
        QTRY_COMPARE(app.starts().size(), before + 1);
    }

    /// Awaits the window.
    xcb_window_t window() const
    {
        [] {
            QTRY_COMPARE(activeTitle(), title);
            QTRY_VERIFY(windowOnScreen(title));
        }();
        return windowOnScreen(title).value_or(XCB_NONE);
    }

    RecordedApp app;
    ProgramUnderTest program;
    Keyboard keyboard;
};

void awaitInFront(const QString &window)
{
    QTRY_COMPARE(activeTitle(), window);
}

/// A second start, which ends when the first has opened its window.
void startOnceMore()
{
    ProgramUnderTest second;
    second.start();
    QCOMPARE(second.exitStatus(), 0);
}

void openFromTheMenu()
{
    chooseInTray(u"Open Settings"_s);
}

/// Two of them, and the first in use, until the end of the scope.
class Workspaces
{
public:
    Workspaces()
    {
        setWorkspaces(2);
        use(0);
    }
    ~Workspaces() { use(0); }
    Q_DISABLE_COPY_MOVE(Workspaces)

    /// Goes to the second one, on which the window is not.
    void leave() const
    {
        use(1);
        QTRY_VERIFY(!windowOnScreen(title));
    }

private:
    static void use(int workspace)
    {
        switchToWorkspace(workspace);
        QTRY_COMPARE(currentWorkspace(), workspace);
    }
};
} // namespace

class SettingsWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensInFrontOfANewUser()
    {
        Program started(Program::User::isNew);
        const QRect window = geometryOf(started.window());
        QVERIFY(window.width() >= 580 && window.height() >= 480);
        // The frame is part of what is centred.
        const QPoint centre = QGuiApplication::primaryScreen()->availableGeometry().center();
        QVERIFY((window.center() - centre).manhattanLength() < 40);
        started.verifyThatItsKeysWork();
        QCOMPARE(started.program.stop(), 0);
        QCOMPARE(started.program.errorOutput(), QByteArray());
    }

    void staysAwayFromAUserWhoKnowsTheProgram()
    {
        Program started(Program::User::knowsIt);
        started.verifyThatItsKeysWork();
        QVERIFY(!windowOnScreen(title));
    }

    void opensWhenTheProgramIsAskedFor_data()
    {
        QTest::addColumn<void (*)()>("ask");
        QTest::newRow("by a second start") << &startOnceMore;
        QTest::newRow("over the bus") << &askForSettings;
    }
    void opensWhenTheProgramIsAskedFor()
    {
        using Ask = void (*)();
        QFETCH(const Ask, ask);
        Program started(Program::User::knowsIt);
        ask();
        QVERIFY(started.window() != XCB_NONE);
        started.verifyThatItsKeysWork();
    }

    void opensAlsoWithoutABus()
    {
        const auto noBus = [](ProgramUnderTest &program) {
            program.environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nowhere"_s);
            program.start();
        };
        const Keyboard keyboard;
        ProgramUnderTest first;
        first.addApp(u"/usr/bin/true"_s, {40, 0x1800});
        noBus(first);
        QTRY_VERIFY(keyboard.isGrabbed(KEY_K, controlAlt));
        ProgramUnderTest second;
        second.environment.insert(u"XDG_DATA_HOME"_s, first.dataHome());
        noBus(second);
        QTRY_COMPARE(activeTitle(), title);
        QCOMPARE(second.exitStatus(), 0);
    }

    void isWhereItWasAfterItWasClosed()
    {
        Program started(Program::User::isNew);
        const xcb_window_t window = started.window();
        moveWindow(window, {30, 60});
        QTRY_COMPARE(geometryOf(window).topLeft(), QPoint(30, 60));
        const QRect place = geometryOf(window);
        closeWindow(window);
        QTRY_VERIFY(!windowOnScreen(title));
        started.verifyThatItsKeysWork();
        startOnceMore();
        // Qt gives it another id when it was closed.
        const xcb_window_t reopened = started.window();
        QTRY_COMPARE(geometryOf(reopened), place);
    }

    void comesBackWhenItIsMinimized()
    {
        Program started(Program::User::isNew);
        const xcb_window_t window = started.window();
        minimizeWindow(window);
        QTRY_VERIFY(!windowOnScreen(title));
        startOnceMore();
        QCOMPARE(started.window(), window);
    }

    void comesToTheWorkspaceInUse_data()
    {
        QTest::addColumn<void (*)()>("ask");
        QTest::addColumn<bool>("isMinimized");
        using Ask = void (*)();
        const auto row = [](const char *name, Ask ask, bool isMinimized) {
            QTest::newRow(name) << ask << isMinimized;
        };
        row("by a second start", &startOnceMore, false);
        row("by a second start, minimized", &startOnceMore, true);
        row("over the bus", &askForSettings, false);
        row("from the menu", &openFromTheMenu, false);
        row("from the menu, minimized", &openFromTheMenu, true);
    }
    void comesToTheWorkspaceInUse()
    {
        using Ask = void (*)();
        QFETCH(const Ask, ask);
        QFETCH(const bool, isMinimized);
        const Workspaces workspaces;
        Program started(Program::User::knowsIt);
        askForSettings();
        const xcb_window_t window = started.window();
        const QRect place = geometryOf(window);
        if (isMinimized) {
            minimizeWindow(window);
            QTRY_VERIFY(!windowOnScreen(title));
        }
        workspaces.leave();
        ask();
        QCOMPARE(started.window(), window);
        QCOMPARE(workspaceOf(window), 1);
        QCOMPARE(currentWorkspace(), 1);
        QTRY_COMPARE(geometryOf(window), place);
    }

    void bringsItsSheetToTheWorkspaceInUse()
    {
        const Workspaces workspaces;
        Program started(Program::User::knowsIt);
        askForSettings();
        const xcb_window_t window = started.window();
        // By way of Add.
        started.keyboard.type({KEY_SPACE});
        const QString sheet = u"New shortcut"_s;
        QTRY_COMPARE(activeTitle(), sheet);
        workspaces.leave();
        askForSettings();
        QTRY_COMPARE(activeTitle(), sheet);
        QCOMPARE(workspaceOf(activeWindow().value_or(XCB_NONE)), 1);
        QTRY_COMPARE(workspaceOf(window), 1);
        QVERIFY(windowOnScreen(title));
    }

    void leavesTheMachineAloneOnceItIsClosed()
    {
        Program first(Program::User::knowsIt, 1000);
        const pid_t process = first.program.processId();
        awaitRest(process);
        const qint64 before = ownKilobytes(process);
        startOnceMore();
        awaitInFront(title);
        // By way of Add, the new entry's name and its kind.
        first.keyboard.type({KEY_SPACE});
        awaitInFront(u"New shortcut"_s);
        first.keyboard.type({KEY_TAB});
        first.keyboard.type({KEY_TAB});
        first.keyboard.type({KEY_SPACE});
        awaitInFront(u"Choose App"_s);
        first.keyboard.type({KEY_ESC});
        awaitInFront(u"New shortcut"_s);
        first.keyboard.type({KEY_ESC});
        awaitInFront(title);
        closeWindow(*windowOnScreen(title));
        QTRY_VERIFY(!windowOnScreen(title));
        awaitRest(process);
        // Qt ends threads and clears its cache of images after 30 s without use.
        QVERIFY(isAtRestFor(process, 32000));
        const qint64 grown = ownKilobytes(process) - before;
        qInfo("it has grown by %lld KB, from %lld KB", grown, before);
        QVERIFY(grown <= 8 * 1024);
    }
};

QTEST_MAIN(SettingsWindowTest)
#include "SettingsWindowTest.moc"
