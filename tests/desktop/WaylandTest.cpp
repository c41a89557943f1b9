// In a Wayland session, with its X server within reach.

#include "support/About.h"
#include "support/DesktopBinding.h"
#include "support/Keyboard.h"
#include "support/PrivateBus.h"
#include "support/ProgramOnTheBus.h"
#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"
#include "support/Sway.h"
#include "support/WaylandKeyboard.h"
#include "support/WriteFile.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QRasterWindow>
#include <QRegularExpression>
#include <QTest>
#include <nlohmann/json.hpp>

using namespace Qt::StringLiterals;

namespace
{
constexpr quint16 controlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
const QByteArray noKeys =
    "corvane: key combinations do not work: this desktop does not let apps register them\n";

/// Earlier than a held key repeats for the first time, and later than it repeats from then on.
constexpr int soon = 300;

/// The title of the window that has the focus; empty if none has.
QString focusedTitle()
{
    const QByteArray tree = askSway({u"-t"_s, u"get_tree"_s});
    QList nodes{nlohmann::json::parse(tree.constData(), nullptr, false)};
    while (!nodes.isEmpty()) {
        const auto node = nodes.takeFirst();
        if (node.value("focused", false) && node.value("type", "") == "con")
            return QString::fromStdString(node.value("name", ""));
        for (const auto &child : node.value("nodes", nlohmann::json::array()))
            nodes << child;
    }
    return {};
}

/// The program with an entry that a key binding of sway's runs, by the command that the program
/// tells its users.
struct BoundDesk {
    BoundDesk()
    {
        program.environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.address());
        const QString id = program.addEntry("app", app.desktopFile());
        const QString script = u"DBUS_SESSION_BUS_ADDRESS=%1 "
                               "gapplication action org.corvane.Corvane fire \"'%2'\"\n"
                               "echo >> %3\n"_s.arg(bus.address(), id, answers);
        writeFile(scriptFile, script.toUtf8());
        QFile::remove(answers);
        program.start();
        [this] { QTRY_COMPARE(program.errorOutput(), noKeys); }();
    }

    void hold(int duration)
    {
        keyboard.press(controlAltJ);
        QTest::qWait(duration);
        keyboard.release(controlAltJ);
    }

    /// Claims that the entry has run so often when each call of the binding's has been answered.
    void claimRuns(int runs)
    {
        QTRY_COMPARE(app.starts().size(), runs);
        QTRY_VERIFY(QFileInfo(answers).size() >= binding.acts());
        QCOMPARE(program.stop(), 0);
        QCOMPARE(app.starts().size(), runs);
    }

    const QString scriptFile = swayFolder().filePath(u"fire"_s);
    /// With a line for each call that has been answered.
    const QString answers = swayFolder().filePath(u"answers"_s);
    const QList<int> controlAltJ{KEY_LEFTCTRL, KEY_LEFTALT, KEY_J};
    /// sway may run as another user, whom the bus of the desktop refuses.
    const PrivateBus bus;
    RecordedApp app;
    ProgramUnderTest program;
    DesktopBinding binding{u"sh "_s + scriptFile};
    WaylandKeyboard keyboard;
};

void startOnceMore()
{
    ProgramUnderTest second;
    second.start();
    QCOMPARE(second.exitStatus(), 0);
}

/// Starts the program and asks for its window.
Accessible startWithWindow(ProgramUnderTest &program)
{
    program.isAccessible = true;
    program.start();
    askForSettings();
    return Accessible::program(program.processId());
}
} // namespace

class WaylandTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runsAndSaysThatThereAreNoKeys()
    {
        RecordedApp app;
        ProgramUnderTest program;
        program.addApp(app.desktopFile(), {40, 0x1800});
        program.start();
        QTRY_COMPARE(program.errorOutput(), noKeys);

        const Keyboard keyboard;
        QVERIFY(!keyboard.isGrabbed(KEY_K, controlAlt));
        // Asked to end, it does so from its event loop.
        QCOMPARE(program.stop(), 0);
        QVERIFY(!keyboard.isGrabbed(KEY_K, controlAlt));
        QVERIFY(app.starts().isEmpty());
    }

    void opensItsSettingsInFrontOfANewUser()
    {
        ProgramUnderTest program;
        program.isUserNew = true;
        program.start();
        QTRY_COMPARE(focusedTitle(), u"Corvane"_s);
        QCOMPARE(program.stop(), 0);
        QCOMPARE(program.errorOutput(), noKeys);
    }

    void opensItsSettingsWhereItCannotPlaceItsMenu()
    {
        ProgramUnderTest program;
        program.start();
        QTRY_COMPARE(program.errorOutput(), noKeys);
        // What a panel does for a click on the item.
        auto click =
            QDBusMessage::createMethodCall(u"org.corvane.Corvane"_s, u"/StatusNotifierItem"_s,
                                           u"org.kde.StatusNotifierItem"_s, u"Activate"_s);
        click << 10 << 10;
        const auto isTaken = [&click] {
            return QDBusConnection::sessionBus().call(click).type() == QDBusMessage::ReplyMessage;
        };
        QTRY_VERIFY(isTaken());
        QTRY_COMPARE(focusedTitle(), u"Corvane"_s);
    }

    void showsTheCompositorTheTokenThatItWasHandedOver_data()
    {
        QTest::addColumn<QString>("startupId");
        QTest::newRow("alone") << QString();
        QTest::newRow("beside a startup id") << u"panel_TIME123"_s;
    }
    void showsTheCompositorTheTokenThatItWasHandedOver()
    {
        QFETCH(const QString, startupId);
        ProgramUnderTest program;
        program.environment.insert(u"WAYLAND_DEBUG"_s, u"1"_s);
        program.start();
        QTRY_VERIFY(program.errorOutput().startsWith(noKeys));
        ProgramUnderTest second;
        second.environment.insert(u"XDG_ACTIVATION_TOKEN"_s, u"token-1"_s);
        second.environment.insert(u"DESKTOP_STARTUP_ID"_s, startupId);
        second.start();
        QCOMPARE(second.exitStatus(), 0);
        const QRegularExpression call(u"xdg_activation_v1@\\d+\\.activate\\(\"token-1\""_s);
        QTRY_VERIFY(QString::fromUtf8(program.errorOutput()).contains(call));
    }

    void bringsItsSettingsToTheFrontWhenStartedOnceMore()
    {
        ProgramUnderTest program;
        program.start();
        QTRY_COMPARE(program.errorOutput(), noKeys);
        startOnceMore();
        QTRY_COMPARE(focusedTitle(), u"Corvane"_s);
        QRasterWindow other;
        other.setTitle(u"In use"_s);
        other.resize(300, 200);
        other.show();
        QTRY_COMPARE(focusedTitle(), u"In use"_s);
        startOnceMore();
        QTRY_COMPARE(focusedTitle(), u"Corvane"_s);
    }

    void saysInAboutThatThereAreNoKeys()
    {
        ProgramUnderTest program;
        QCOMPARE(wayInAbout(startWithWindow(program)), u"none; use Copy Command"_s);
    }

    void doesNotOfferToBringAppsToTheFront()
    {
        ProgramUnderTest program;
        const Accessible all = startWithWindow(program);
        QVERIFY(all.await(u"check box"_s, u"Launch at login"_s).isThere());
        const Accessible front = all.find(u"check box"_s, u"Bring open apps to the front"_s);
        QVERIFY(!front.is(Accessible::State::showing));
    }

    void opensANewScriptInTheTextEditor()
    {
        WaylandKeyboard keyboard;
        const RecordedApp app("%f");
        ProgramUnderTest program;
        app.openByDefault({"text/plain"}, program.dataHome(), program.configHome());
        const Accessible all = startWithWindow(program);
        QVERIFY(all.await(u"push button"_s, u"Add"_s).press());
        const Accessible editor = all.await(u"dialog"_s, u"New shortcut"_s);
        QTRY_VERIFY(editor.is(Accessible::State::active));
        keyboard.type({KEY_TAB});
        keyboard.type({KEY_END});
        QVERIFY(all.await(u"push button"_s, u"New…"_s).press());
        const Accessible form = all.await(u"dialog"_s, u"New script"_s);
        QTRY_VERIFY(form.is(Accessible::State::active));
        keyboard.type({KEY_N});
        keyboard.type({KEY_ENTER});
        QCOMPARE(app.onlyStart()[u"arguments"][0].toString(),
                 program.dataHome() + u"/shortcuts/n"_s);
    }

    void runsABoundEntryOnceWhileTheKeysAreHeld()
    {
        BoundDesk desk;
        desk.hold(1300);
        // After a delay of 600 ms sway repeats it every 40 ms.
        QTRY_VERIFY(desk.binding.acts() > 10);
        QTest::qWait(soon);
        QCOMPARE(desk.app.starts().size(), 1);
        desk.keyboard.type(desk.controlAltJ);
        desk.claimRuns(2);
    }

    void runsABoundEntryForEachPress()
    {
        BoundDesk desk;
        desk.keyboard.type(desk.controlAltJ);
        QTest::qWait(soon);
        desk.keyboard.type(desk.controlAltJ);
        desk.claimRuns(2);
    }
};

QTEST_MAIN(WaylandTest)
#include "WaylandTest.moc"
