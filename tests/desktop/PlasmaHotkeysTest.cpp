// Key combinations on a running KWin: who registers them there, and what presses do.

#include "support/Accessible.h"
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

/// Longer than it takes a held key to repeat several times.
constexpr int longHold = 1300;

QDBusMessage ask(const QString &path, const QString &interface, const QString &method,
                 const QVariantList &arguments = {})
{
    auto question = QDBusMessage::createMethodCall(service, path, interface, method);
    question.setArguments(arguments);
    return QDBusConnection::sessionBus().call(question);
}

QDBusMessage ask(const QString &method, const QVariantList &arguments)
{
    return ask(u"/kglobalaccel"_s, u"org.kde.KGlobalAccel"_s, method, arguments);
}

struct Shortcut {
    QString name;
    QString title;
    QList<int> codes;
};

/// What the service has of a component's.
QList<Shortcut> shortcutsOf(const QString &path)
{
    QList<Shortcut> found;
    const auto answer = ask(path, u"org.kde.kglobalaccel.Component"_s, u"allShortcutInfos"_s);
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

/// Another program that has keys, until its end.
class Rival
{
public:
    explicit Rival(int code)
    {
        constexpr uint presentAndNotAutoloaded = 6;
        ask(u"doRegister"_s, {m_id});
        ask(u"setShortcut"_s,
            {m_id, QVariant::fromValue(QList<int>{code}), presentAndNotAutoloaded});
    }
    ~Rival() { ask(u"unregister"_s, {m_id.at(0), m_id.at(1)}); }
    Q_DISABLE_COPY_MOVE(Rival)

private:
    const QStringList m_id{u"rival"_s, u"act"_s, u"Rival"_s, u"Act"_s};
};

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

void switchTo(uint layout)
{
    auto *const bus = QDBusConnection::sessionBus().interface();
    QTRY_VERIFY(bus->isServiceRegistered(u"org.kde.keyboard"_s));
    auto call = QDBusMessage::createMethodCall(u"org.kde.keyboard"_s, u"/Layouts"_s,
                                               u"org.kde.KeyboardLayouts"_s, u"setLayout"_s);
    call << layout;
    QCOMPARE(QDBusConnection::sessionBus().call(call).arguments(), QVariantList{true});
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
    void runTheirEntry()
    {
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.start();
        desk.keyboard.type(controlAltK);
        desk.claimRuns(1);
        desk.keyboard.type(controlAltK);
        desk.claimRuns(2);
        QCOMPARE(desk.program.errorOutput(), QByteArray());
    }

    void runItOnceWhileHeld()
    {
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.start();
        desk.keyboard.press(controlAltK);
        QTest::qWait(longHold);
        desk.keyboard.release(controlAltK);
        QTest::qWait(60);
        desk.keyboard.type(controlAltK);
        desk.claimRuns(2);
    }

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

    void areGivenUpAtTheEnd()
    {
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.start();
        QCOMPARE(desk.program.stop(), 0);
        QCOMPARE(heldCodes(), QList<int>());
    }

    void outliveACrash()
    {
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.start();
        kill(desk.program.processId(), SIGKILL);
        desk.program.exitStatus();
        QCOMPARE(heldCodes(), QList<int>{controlAltCode | Qt::Key_K});
        desk.program.startAgain();
        desk.typeUntilItRuns(controlAltK);
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

    void areNotTakenFromOthers()
    {
        Desk desk;
        auto rival = std::make_unique<Rival>(controlAltCode | Qt::Key_K);
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.program.addApp(desk.app.desktopFile(), storedControlAltJ);
        desk.start({controlAltCode | Qt::Key_J});
        QTRY_COMPARE(shortcutsOf(corvanePath).size(), 1);
        desk.keyboard.type(controlAltK);
        desk.keyboard.type(controlAltJ);
        desk.claimRuns(1);
        // The program tries again when its window is activated.
        rival.reset();
        askForSettings();
        QTRY_COMPARE(heldCodes(),
                     QList<int>({controlAltCode | Qt::Key_J, controlAltCode | Qt::Key_K}));
    }

    void areReportedAsTakenByOthers()
    {
        const Rival rival(controlAltCode | Qt::Key_K);
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
        const Rival rival(controlAltCode | Qt::Key_J);
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
        switchTo(0);
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.start();
        askForSettings();
        const Accessible all = Accessible::program(desk.program.processId());
        press(all, u"Edit"_s);
        press(all, u"Ctrl+Alt+K"_s);
        awaitRecording(all, desk.keyboard);
        switchTo(1);
        switchTo(0);
        switchTo(1);
        const QList<int> controlAltY{KEY_LEFTCTRL, KEY_LEFTALT, KEY_Y};
        desk.keyboard.press(controlAltY);
        QTRY_COMPARE(heldCodes(), QList<int>{controlAltCode | Qt::Key_Z});
        desk.keyboard.release(controlAltY);
        desk.typeUntilItRuns(controlAltY);
        switchTo(0);
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

    void runNothingThatIsRecordedAndHeldOn()
    {
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.start();
        askForSettings();
        const Accessible all = Accessible::program(desk.program.processId());
        press(all, u"Edit"_s);
        for (const auto &[former, keys] :
             {std::pair(u"Ctrl+Alt+K"_s, controlAltJ), std::pair(u"Ctrl+Alt+J"_s, controlAltK),
              std::pair(u"Ctrl+Alt+K"_s, controlAltK)}) {
            press(all, former);
            awaitRecording(all, desk.keyboard);
            desk.keyboard.press(keys);
            const bool isK = keys == controlAltK;
            QTRY_COMPARE(heldCodes(), QList<int>{controlAltCode | (isK ? Qt::Key_K : Qt::Key_J)});
            QTest::qWait(longHold);
            desk.keyboard.release(keys);
            QVERIFY(desk.app.starts().isEmpty());
        }
        // The release has reached the program, and its end of the recording the compositor.
        desk.typeUntilItRuns(controlAltK);
    }

    void areGivenUpWhilePaused()
    {
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.start();
        chooseInTray(u"Pause all shortcuts"_s);
        QTRY_COMPARE(heldCodes(), QList<int>());
        chooseInTray(u"Pause all shortcuts"_s);
        QTRY_COMPARE(heldCodes(), QList<int>{controlAltCode | Qt::Key_K});
        desk.keyboard.type(controlAltK);
        desk.claimRuns(1);
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
        ask(u"setForeignShortcut"_s,
            {id, QVariant::fromValue(QList<int>{controlAltCode | Qt::Key_J})});
        QVERIFY(all.await(u"label"_s, u"Your desktop uses Ctrl+Alt+J for this."_s).isThere());
        desk.keyboard.type(controlAltK);
        desk.keyboard.type(controlAltJ);
        desk.claimRuns(1);
    }

    void followTheLayout()
    {
        setLayouts("us,de,ru");
        switchTo(0);
        Desk desk;
        RecordedApp other;
        desk.program.addApp(desk.app.desktopFile(), storedControlY);
        desk.program.addApp(other.desktopFile(), storedControlZ);
        constexpr int control = int(Qt::ControlModifier);
        desk.start({control | Qt::Key_Y, control | Qt::Key_Z});
        for (const uint layout : {0, 1, 2, 1, 0}) {
            switchTo(layout);
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
        const QStringList command = commandOf(compositor());
        kill(compositor(), SIGKILL);
        // Qt ends its programs with the compositor.
        QCOMPARE(desk->program.exitStatus(), 1);
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
