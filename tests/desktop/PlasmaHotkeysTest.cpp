// Key combinations on a running KWin: how they are registered there, and what the user sees of it.
// What presses do is in HotkeyPressesTest.

#include "support/Accessible.h"
#include "support/PlasmaKeys.h"
#include "support/PlasmaSettings.h"
#include "support/ProgramOnTheBus.h"
#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"
#include "support/WaylandKeyboard.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTest>
#include <algorithm>
#include <csignal>

using namespace Qt::StringLiterals;

namespace
{
const QString service = u"org.kde.kglobalaccel"_s;
const QString component = u"org.corvane.Corvane"_s;
const QString corvanePath = u"/component/org_corvane_Corvane"_s;

constexpr StoredKeys storedControlAltK{40, 0x1800};
constexpr StoredKeys storedControlAltJ{38, 0x1800};
constexpr StoredKeys storedControlY{16, 0x1000};
constexpr StoredKeys storedControlZ{6, 0x1000};
constexpr int controlAltCode = int(Qt::ControlModifier) | int(Qt::AltModifier);
const QList<int> controlAltK{KEY_LEFTCTRL, KEY_LEFTALT, KEY_K};
const QList<int> controlAltJ{KEY_LEFTCTRL, KEY_LEFTALT, KEY_J};

struct Shortcut {
    QString name;
    QString title;
    QList<int> codes;
};

/// What the service has of a component's.
QList<Shortcut> shortcutsOf(const QString &path)
{
    QList<Shortcut> found;
    const auto question = QDBusMessage::createMethodCall(
        service, path, u"org.kde.kglobalaccel.Component"_s, u"allShortcutInfos"_s);
    const auto answer = QDBusConnection::sessionBus().call(question);
    if (answer.signature() != u"a(ssssssaiai)")
        return found;
    const auto list = answer.arguments().constFirst().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        Shortcut shortcut;
        QString other;
        list.beginStructure();
        list >> shortcut.name >> shortcut.title >> other >> other >> other >> other
            >> shortcut.codes;
        list.endStructure();
        found << shortcut;
    }
    return found;
}

/// The codes that the service has for the program.
QList<int> heldCodes()
{
    QList<int> codes;
    for (const Shortcut &shortcut : shortcutsOf(corvanePath))
        codes += shortcut.codes;
    std::ranges::sort(codes);
    return codes;
}

QString warningOf(const QString &keys, const QString &action)
{
    return u"%1 is already used by Plasma (%2). It may not work."_s.arg(keys, action);
}

pid_t compositor()
{
    return pid_t(QDBusConnection::sessionBus().interface()->servicePid(service).value());
}

QStringList commandOf(pid_t process)
{
    QFile file(u"/proc/%1/cmdline"_s.arg(process));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromLocal8Bit(file.readAll()).split(u'\0', Qt::SkipEmptyParts);
}

/// Starts the compositor as script/desktop does.
void startAgain(QProcess &kwin, const QStringList &command)
{
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"KWIN_WAYLAND_NO_PERMISSION_CHECKS"_s, u"1"_s);
    environment.remove(u"WAYLAND_DISPLAY"_s);
    kwin.setProcessEnvironment(environment);
    kwin.start(command.constFirst(), command.sliced(1));
    QTRY_VERIFY(QDBusConnection::sessionBus().interface()->isServiceRegistered(service));
}

/// Presses the button of that name once it shows.
void press(const Accessible &all, const QString &name)
{
    const Accessible button = all.await(u"push button"_s, name);
    QVERIFY(QTest::qWaitFor([&] { return button.press(); }));
}

/// Awaits that the program records, and has heard a key that it does not take.
void awaitRecording(const Accessible &all, WaylandKeyboard &keyboard)
{
    const Accessible hint = all.await(u"label"_s, u"Esc cancels"_s);
    keyboard.type({KEY_F7});
    QTRY_VERIFY(hint.name() != u"Esc cancels"_s);
}

struct Desk {
    WaylandKeyboard keyboard;
    RecordedApp app;
    ProgramUnderTest program;

    Desk() { program.isAccessible = true; }
    /// Nothing of a program that ends remains for the next one.
    ~Desk()
    {
        if (program.isRunning())
            program.stop();
    }
    Q_DISABLE_COPY_MOVE(Desk)

    void start(const QList<int> &codes = {controlAltCode | Qt::Key_K})
    {
        program.start();
        QTRY_COMPARE(heldCodes(), codes);
    }

    /// Types while nothing tells whether the program is ready.
    void typeUntilItRuns(const QList<int> &keys)
    {
        const qsizetype runs = app.starts().size();
        const auto runs300msLater = [&] {
            keyboard.type(keys);
            return QTest::qWaitFor([&] { return app.starts().size() > runs; }, 300);
        };
        QVERIFY(QTest::qWaitFor(runs300msLater));
    }

    void claimRuns(qsizetype runs) { QTRY_COMPARE(app.starts().size(), runs); }
};
} // namespace

class PlasmaHotkeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // One program for all: it takes long to start on a desktop that has not indexed its programs.
    void areOfAllKinds()
    {
        struct Kind {
            const char *name;
            StoredKeys stored;
            QList<int> keys;
        };
        const Kind kinds[] = {
            {"a digit and Shift", {18, 0x1200}, {KEY_LEFTCTRL, KEY_LEFTSHIFT, KEY_1}},
            {"a sign and Shift",
             {27, 0x1a00},
             {KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFTSHIFT, KEY_MINUS}},
            {"a letter and Shift", {40, 0x1200}, {KEY_LEFTCTRL, KEY_LEFTSHIFT, KEY_K}},
            {"Tab and Shift", {48, 0x1200}, {KEY_LEFTCTRL, KEY_LEFTSHIFT, KEY_TAB}},
            {"Space", {49, 0x900}, {KEY_LEFTMETA, KEY_LEFTALT, KEY_SPACE}},
            {"Return", {36, 0x1000}, {KEY_LEFTCTRL, KEY_ENTER}},
            {"Escape", {53, 0x1000}, {KEY_LEFTCTRL, KEY_ESC}},
            {"Backspace", {51, 0x1800}, {KEY_LEFTCTRL, KEY_LEFTALT, KEY_BACKSPACE}},
            {"Delete", {117, 0x1800}, {KEY_LEFTCTRL, KEY_LEFTALT, KEY_DELETE}},
            {"an arrow", {123, 0x1900}, {KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFTMETA, KEY_LEFT}},
            {"a function key", {96, 0x1000}, {KEY_LEFTCTRL, KEY_F5}},
            {"a function key and Shift",
             {111, 0x1a00},
             {KEY_LEFTCTRL, KEY_LEFTALT, KEY_LEFTSHIFT, KEY_F12}},
            {"Print", {105, 0x1000}, {KEY_LEFTCTRL, KEY_SYSRQ}},
            {"Print and Alt", {105, 0x800}, {KEY_LEFTALT, KEY_SYSRQ}},
            {"Scroll Lock", {107, 0x1000}, {KEY_LEFTCTRL, KEY_SCROLLLOCK}},
            {"Pause", {113, 0x100}, {KEY_LEFTMETA, KEY_PAUSE}},
            {"the menu key", {110, 0x1000}, {KEY_LEFTCTRL, KEY_COMPOSE}},
            {"the key beside the left Shift", {10, 0x1000}, {KEY_LEFTCTRL, KEY_102ND}},
            {"volume", {74, 0x1100}, {KEY_LEFTCTRL, KEY_LEFTMETA, KEY_MUTE}},
        };
        Desk desk;
        for (const Kind &kind : kinds)
            desk.program.addApp(desk.app.desktopFile(), kind.stored);
        desk.program.start();
        QTRY_COMPARE(std::size_t(heldCodes().size()), std::size(kinds));
        for (const Kind &kind : kinds) {
            const qsizetype runs = desk.app.starts().size();
            desk.keyboard.type(kind.keys);
            const auto runsOnce = [&] { return desk.app.starts().size() == runs + 1; };
            QVERIFY2(QTest::qWaitFor(runsOnce), kind.name);
        }
    }

    void leaveNothingOfACrashThatIsNotWantedAnyMore()
    {
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.start();
        kill(desk.program.processId(), SIGKILL);
        desk.program.exitStatus();
        Desk next;
        next.program.addApp(next.app.desktopFile(), storedControlAltJ);
        next.start({controlAltCode | Qt::Key_J});
        next.keyboard.type(controlAltJ);
        next.claimRuns(1);
    }

    void leaveNoActionWhenAnotherProgramHasThem()
    {
        const PlasmaRival rival(controlAltCode | Qt::Key_J);
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltJ);
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        // J is registered first.
        desk.start();
        QTRY_COMPARE(shortcutsOf(corvanePath).size(), 1);
    }

    void areReportedAsTakenByOthers()
    {
        const PlasmaRival rival(controlAltCode | Qt::Key_K);
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.start({});
        askForSettings();
        const Accessible all = Accessible::program(desk.program.processId());
        QVERIFY(all.await(u"label"_s, warningOf(u"Ctrl+Alt+K"_s, u"Rival: Act"_s)).isThere());
    }

    void haveTheNameOfTheirEntry()
    {
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.start();
        QCOMPARE(shortcutsOf(corvanePath).constFirst().title, u"App"_s);
        askForSettings();
        const Accessible all = Accessible::program(desk.program.processId());
        press(all, u"Edit"_s);
        QVERIFY(all.await(u"text"_s, u"Name"_s).setText(u"Editor"_s));
        press(all, u"Save"_s);
        QTRY_COMPARE(shortcutsOf(corvanePath).constFirst().title, u"Editor"_s);
        QCOMPARE(heldCodes(), QList<int>{controlAltCode | Qt::Key_K});
    }

    void areNotWarnedOf()
    {
        const PlasmaRival rival(controlAltCode | Qt::Key_J);
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.program.addApp(desk.app.desktopFile(), storedControlAltJ);
        desk.start();
        askForSettings();
        const Accessible all = Accessible::program(desk.program.processId());
        // The warning of other keys shows that the program has read those of the desktop.
        QVERIFY(all.await(u"label"_s, warningOf(u"Ctrl+Alt+J"_s, u"Rival: Act"_s)).isThere());
        for (const Accessible &label : all.findAll(u"label"_s))
            QVERIFY2(!label.name().startsWith(u"Ctrl+Alt+K is"), qPrintable(label.name()));
    }

    void areRecordedByTheirPlaceInAnyLayout()
    {
        setLayouts("us,de");
        switchToLayout(0);
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.start();
        askForSettings();
        const Accessible all = Accessible::program(desk.program.processId());
        press(all, u"Edit"_s);
        press(all, u"Ctrl+Alt+K"_s);
        awaitRecording(all, desk.keyboard);
        switchToLayout(1);
        switchToLayout(0);
        switchToLayout(1);
        const QList<int> controlAltY{KEY_LEFTCTRL, KEY_LEFTALT, KEY_Y};
        desk.keyboard.press(controlAltY);
        QTRY_COMPARE(heldCodes(), QList<int>{controlAltCode | Qt::Key_Z});
        desk.keyboard.release(controlAltY);
        desk.typeUntilItRuns(controlAltY);
        switchToLayout(0);
        QTRY_COMPARE(heldCodes(), QList<int>{controlAltCode | Qt::Key_Y});
        desk.typeUntilItRuns(controlAltY);
        setLayouts("us");
    }

    void areRecordedWithoutARun()
    {
        Desk desk;
        RecordedApp recorded;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltJ);
        desk.program.addApp(recorded.desktopFile(), storedControlAltK);
        desk.start({controlAltCode | Qt::Key_J, controlAltCode | Qt::Key_K});
        askForSettings();
        const Accessible all = Accessible::program(desk.program.processId());
        press(all, u"Edit"_s);
        press(all, u"Ctrl+Alt+J"_s);
        awaitRecording(all, desk.keyboard);
        desk.keyboard.type(controlAltK);
        QVERIFY(all.await(u"push button"_s, u"Ctrl+Alt+K"_s).isThere());
        press(all, u"Cancel"_s);
        QTRY_COMPARE(heldCodes(),
                     QList<int>({controlAltCode | Qt::Key_J, controlAltCode | Qt::Key_K}));
        // What was to come before these presses has come.
        desk.typeUntilItRuns(controlAltJ);
        QVERIFY(recorded.starts().isEmpty());
    }

    void runWithTheKeysOfTheDesktopsSettings()
    {
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.start();
        askForSettings();
        const Accessible all = Accessible::program(desk.program.processId());
        QVERIFY(all.await(u"label"_s, u"Ctrl+Alt+K"_s).isThere());
        const QStringList id{component, shortcutsOf(corvanePath).constFirst().name, u"Corvane"_s,
                             u"App"_s};
        askKGlobalAccel(u"setForeignShortcut"_s,
                        {id, QVariant::fromValue(QList<int>{controlAltCode | Qt::Key_J})});
        QVERIFY(all.await(u"label"_s, u"Your desktop uses Ctrl+Alt+J for this."_s).isThere());
        desk.keyboard.type(controlAltK);
        desk.keyboard.type(controlAltJ);
        desk.claimRuns(1);
    }

    void followTheLayout()
    {
        setLayouts("us,de,ru");
        switchToLayout(0);
        Desk desk;
        RecordedApp other;
        desk.program.addApp(desk.app.desktopFile(), storedControlY);
        desk.program.addApp(other.desktopFile(), storedControlZ);
        constexpr int control = int(Qt::ControlModifier);
        desk.start({control | Qt::Key_Y, control | Qt::Key_Z});
        for (const uint layout : {0, 1, 2, 1, 0}) {
            switchToLayout(layout);
            desk.typeUntilItRuns({KEY_LEFTCTRL, KEY_Y});
        }
        setLayouts("us");
    }

    void keepNobodyWaitingAtTheEnd()
    {
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.start();
        const pid_t kwin = compositor();
        kill(kwin, SIGSTOP);
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(desk.program.end(), 0);
        const qint64 elapsed = timer.elapsed();
        kill(kwin, SIGCONT);
        // 250 ms, and what the end takes otherwise.
        QVERIFY2(elapsed < 500, qPrintable(QString::number(elapsed)));
        QTRY_COMPARE(heldCodes(), QList<int>());
    }

    // The last, because the keyboard ends with its compositor.
    void comeBackAfterACrashOfTheCompositor()
    {
        auto desk = std::make_unique<Desk>();
        desk->program.addApp(desk->app.desktopFile(), storedControlAltK);
        desk->start();
        const pid_t killed = compositor();
        const QStringList command = commandOf(killed);
        kill(killed, SIGKILL);
        // Qt ends its programs with the compositor.
        QCOMPARE(desk->program.exitStatus(), 1);
        // Until its end it may lock the socket, which the next one needs.
        QTRY_VERIFY(kill(killed, 0) != 0);
        QFile saved(qEnvironmentVariable("XDG_CONFIG_HOME") + u"/kglobalshortcutsrc"_s);
        // The daemon may have saved the component's name, but none of its actions.
        const QByteArray content = saved.open(QIODevice::ReadOnly) ? saved.readAll() : QByteArray();
        QVERIFY(!content.contains("_k_session") && !content.contains("Ctrl+Alt+K"));

        QProcess kwin;
        startAgain(kwin, command);
        desk->program.startAgain();
        // A compositor takes some seconds to start on a busy machine.
        QTRY_COMPARE_WITH_TIMEOUT(heldCodes(), QList<int>{controlAltCode | Qt::Key_K}, 20000);
        WaylandKeyboard().type(controlAltK);
        desk->claimRuns(1);
        desk->program.stop();
        kwin.terminate();
        kwin.waitForFinished();
    }
};

QTEST_GUILESS_MAIN(PlasmaHotkeysTest)
#include "PlasmaHotkeysTest.moc"
