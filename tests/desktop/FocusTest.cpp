// What is started comes to the front, also where the window manager lets nobody steal the focus.
// What a closed panel was opened from gets the focus back, also where the window manager would give
// it to the window that is locked below.

#include "support/Keyboard.h"
#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"
#include "support/SettingsDesk.h"
#include "support/StartupMessages.h"
#include "support/Windows.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRasterWindow>
#include <QTest>
#include <csignal>

using namespace Qt::StringLiterals;
using namespace Role;
using State = Accessible::State;

namespace
{
QString output(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardOutput());
}

/// The id that the program of that window was started with, as its leading window has it.
QString startupIdOf(const QString &title)
{
    const QString hints = output(u"xprop"_s, {u"-name"_s, title, u"WM_HINTS"_s});
    const QString leader = hints.section(u"group leader: "_s, 1).section(u'\n', 0, 0);
    return output(u"xprop"_s, {u"-id"_s, leader, u"_NET_STARTUP_ID"_s}).section(u'"', 1, 1);
}

/// Xfwm, told to let nobody steal the focus, in place of the window manager that is there.
class StrictWindowManager
{
public:
    StrictWindowManager()
    {
        const QString folder =
            qEnvironmentVariable("XDG_CONFIG_HOME") + u"/xfce4/xfconf/xfce-perchannel-xml"_s;
        QFile settings(folder + u"/xfwm4.xml"_s);
        if (!QDir().mkpath(folder) || !settings.open(QIODevice::WriteOnly))
            qFatal("cannot write %s", qPrintable(settings.fileName()));
        settings.write("<channel name=\"xfwm4\" version=\"1.0\"><property name=\"general\" "
                       "type=\"empty\"><property name=\"prevent_focus_stealing\" type=\"bool\" "
                       "value=\"true\"/></property></channel>");
        settings.close();
        m_process.start(u"xfwm4"_s, {u"--replace"_s, u"--compositor=off"_s});
        QTRY_VERIFY(output(u"xprop"_s, {u"-root"_s, u"-notype"_s, u"_NET_SUPPORTED"_s})
                        .contains(u"_NET_WM_FULLSCREEN_MONITORS"_s));
    }
    ~StrictWindowManager()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
};

/// A window in which the user has just typed something.
class WindowInUse : public QRasterWindow
{
public:
    explicit WindowInUse(Keyboard &keyboard)
    {
        setTitle(u"In use"_s);
        resize(300, 200);
        show();
        requestActivate();
        QTRY_COMPARE(activeTitle(), u"In use"_s);
        keyboard.type({KEY_X});
        QTRY_VERIFY(m_hasKey);
    }

protected:
    void keyPressEvent(QKeyEvent *) override { m_hasKey = true; }

private:
    bool m_hasKey = false;
};

// A program that minds the time that its start carries, as GTK does.
const QString gtkProgram = u"/usr/bin/xfwm4-tweaks-settings"_s;
const QString gtkTitle = u"Window Manager Tweaks"_s;

/// The settings window, used by nothing but the keyboard.
struct KeyboardDesk : SettingsDesk {
    /// Goes to the control by the Tab key, wherever the focus is in its window.
    void goTo(const Accessible &control)
    {
        const auto isThere = [&control] { return control.is(State::focused); };
        for (int i = 0; i < 20 && !QTest::qWaitFor(isThere, 100); ++i)
            keyboard.type({KEY_TAB});
        QVERIFY(isThere());
    }

    void pressByKey(const Accessible &window, const QString &name)
    {
        goTo(window.find(button, name));
        keyboard.type({KEY_SPACE});
    }

    /// Opens the sheet for a new entry of the kind so far down in the list of kinds, and its panel.
    Accessible choose(int kind)
    {
        pressByKey(all, u"Add"_s);
        Accessible editor = sheet(u"New shortcut"_s);
        keyboard.type({KEY_TAB});
        for (int i = 0; i < kind; ++i)
            keyboard.type({KEY_DOWN});
        pressByKey(editor, u"Choose…"_s);
        return editor;
    }

    void type(const QList<int> &keys)
    {
        for (const int key : keys)
            keyboard.type({key});
    }

    /// Types into the field, which the Tab key reaches from what has the focus. The window manager
    /// may move the focus to and fro at first.
    void typeInto(const Accessible &typedInto)
    {
        const auto isTyped = [&typedInto] { return typedInto.text().endsWith(u'x'); };
        bool isDone = false;
        for (int i = 0; i < 5 && !isDone; ++i) {
            goTo(typedInto);
            type({KEY_END, KEY_X});
            isDone = QTest::qWaitFor(isTyped, 1000);
        }
        QVERIFY(isDone);
    }
};
} // namespace

class FocusTest : public QObject
{
    Q_OBJECT

private:
    StrictWindowManager m_windowManager;

private Q_SLOTS:
    void isTestedAgainstAWindowManagerThatPreventsTheStealingOfTheFocus()
    {
        Keyboard keyboard;
        const WindowInUse window(keyboard);
        QProcess thief;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DESKTOP_STARTUP_ID"_s, u"thief-1_TIME1"_s);
        thief.setProcessEnvironment(environment);
        thief.start(gtkProgram, QStringList());
        QTRY_VERIFY(windowOnScreen(gtkTitle));
        QCOMPARE(activeTitle(), u"In use"_s);
        thief.kill();
        thief.waitForFinished();
    }

    void bringsWhatItStartsToTheFront_data()
    {
        QTest::addColumn<QByteArray>("startupNotify");
        QTest::newRow("an application that is announced") << QByteArray("StartupNotify=true\n");
        QTest::newRow("one that is not") << QByteArray();
    }
    void bringsWhatItStartsToTheFront()
    {
        QFETCH(const QByteArray, startupNotify);
        ProgramUnderTest program;
        QFile app(program.home.filePath(u"app.desktop"_s));
        QVERIFY(app.open(QIODevice::WriteOnly));
        app.write("[Desktop Entry]\nType=Application\nName=Tweaks\nExec=" + gtkProgram.toUtf8()
                  + '\n' + startupNotify);
        app.close();
        program.addApp(app.fileName(), {40, 0x1800});
        // What the program itself was once started with is of no use.
        program.environment.insert(u"DESKTOP_STARTUP_ID"_s, u"launcher-1_TIME1"_s);
        program.start();
        const auto closed = qScopeGuard([&program] {
            for (const pid_t child : program.children())
                kill(child, SIGKILL);
        });
        Keyboard keyboard;
        QTRY_VERIFY(keyboard.isGrabbed(KEY_K, controlAlt));
        const WindowInUse window(keyboard);
        keyboard.type({KEY_LEFTCTRL, KEY_LEFTALT, KEY_K});
        QTRY_COMPARE(activeTitle(), gtkTitle);
        // By the time of the press, not because it came without any.
        QVERIFY(startupIdOf(gtkTitle).startsWith(u"corvane-"_s));
    }

    void bringsItsSettingsToTheFront_data()
    {
        QTest::addColumn<bool>("isOpen");
        QTest::newRow("for the first time") << false;
        QTest::newRow("when they are open behind another window") << true;
    }
    void bringsItsSettingsToTheFront()
    {
        QFETCH(const bool, isOpen);
        ProgramUnderTest program;
        program.isUserNew = isOpen;
        program.addApp(u"/usr/bin/true"_s, {40, 0x1800});
        program.start();
        Keyboard keyboard;
        QTRY_VERIFY(keyboard.isGrabbed(KEY_K, controlAlt));
        QTRY_COMPARE(windowOnScreen(u"Corvane"_s).has_value(), isOpen);
        const WindowInUse window(keyboard);
        ProgramUnderTest second;
        second.start();
        QTRY_COMPARE(activeTitle(), u"Corvane"_s);
        QCOMPARE(second.exitStatus(), 0);
    }

    void leavesItsSettingsBehindForAnActionLongAgo()
    {
        ProgramUnderTest program;
        program.isUserNew = true;
        program.addApp(u"/usr/bin/true"_s, {40, 0x1800});
        program.start();
        Keyboard keyboard;
        QTRY_VERIFY(windowOnScreen(u"Corvane"_s));
        const WindowInUse window(keyboard);
        ProgramUnderTest second;
        second.environment.insert(u"DESKTOP_STARTUP_ID"_s, u"launcher-1_TIME1"_s);
        second.start();
        // By then the first has answered, and has asked the window manager.
        QCOMPARE(second.exitStatus(), 0);
        const auto attention = [] {
            return output(u"xprop"_s, {u"-name"_s, u"Corvane"_s, u"_NET_WM_STATE"_s})
                .contains(u"_NET_WM_STATE_DEMANDS_ATTENTION"_s);
        };
        QTRY_VERIFY(attention());
        QCOMPARE(activeTitle(), u"In use"_s);
    }

    void givesTheFocusBackToTheEditorOnceAnAppIsChosen()
    {
        KeyboardDesk desk;
        desk.open();
        const Accessible editor = desk.choose(0);
        const Accessible panel = desk.sheet(u"Choose App"_s);
        desk.type({KEY_R, KEY_E, KEY_ENTER});
        QVERIFY(editor.await(label, u"~/data/applications/recorded.desktop"_s).isThere());
        desk.typeInto(editor.find(field, u"Name"_s));
    }

    void givesTheFocusBackToTheEditorOnceAFolderIsChosen()
    {
        KeyboardDesk desk;
        desk.open();
        const Accessible editor = desk.choose(1);
        const Accessible panel = desk.sheet(u"Choose"_s);
        desk.type({KEY_SLASH, KEY_U, KEY_S, KEY_R, KEY_ENTER});
        QVERIFY(editor.await(label, u"/usr"_s).isThere());
        desk.typeInto(editor.find(field, u"Name"_s));
    }

    void givesTheFocusBackToThePanelOnceNoFileIsChosen()
    {
        KeyboardDesk desk;
        desk.open();
        desk.choose(0);
        const Accessible panel = desk.sheet(u"Choose App"_s);
        desk.pressByKey(panel, u"Browse…"_s);
        QTRY_VERIFY(!panel.is(State::active));
        desk.type({KEY_ESC});
        desk.typeInto(panel.find(field, u"Search"_s));
    }

    void givesTheFocusBackToThePanelOnceNoFileIsReplaced()
    {
        KeyboardDesk desk;
        desk.addApp(storedControlAltK);
        KeyboardDesk::write(desk.program.home.filePath(u"Corvane.json"_s), "old");
        desk.open();
        desk.pressByKey(desk.all, u"Export…"_s);
        const Accessible panel = desk.sheet(u"Export"_s);
        desk.type({KEY_ENTER});
        QTRY_VERIFY(!panel.is(State::active));
        desk.type({KEY_ESC});
        desk.typeInto(panel.findAll(field).constLast());
    }

    void bringsTheTextEditorOfANewScriptToTheFront()
    {
        KeyboardDesk desk;
        // What the program itself was once started with is of no use.
        desk.program.environment.insert(u"DESKTOP_STARTUP_ID"_s, u"launcher-1_TIME1"_s);
        desk.app.openByDefault({"text/plain"}, desk.program.dataHome(), desk.program.configHome());
        desk.write(desk.program.dataHome() + u"/applications/recorded.desktop"_s,
                   "[Desktop Entry]\nType=Application\nName=Tweaks\nExec=" + gtkProgram.toUtf8());
        desk.open();
        const auto closed = qScopeGuard([&desk] {
            for (const pid_t child : desk.program.children())
                kill(child, SIGKILL);
        });
        desk.pressByKey(desk.all, u"Add"_s);
        const Accessible editor = desk.sheet(u"New shortcut"_s);
        desk.type({KEY_TAB, KEY_END});
        QVERIFY(editor.await(button, u"New…"_s).isThere());
        desk.pressByKey(editor, u"New…"_s);
        const Accessible form = desk.sheet(u"New script"_s);
        desk.type({KEY_N, KEY_ENTER});
        QTRY_COMPARE(activeTitle(), gtkTitle);
        QVERIFY(startupIdOf(gtkTitle).startsWith(u"corvane-"_s));
    }

    void announcesAnApplicationThatSaysWhenItIsThere()
    {
        StartupMessages messages;
        const RecordedApp app({}, "StartupNotify=true\nIcon=a \"b\" \\\\c\nStartupWMClass=Rec");
        ProgramUnderTest program;
        program.addApp(app.desktopFile(), {40, 0x1800});
        program.start();
        Keyboard keyboard;
        QTRY_VERIFY(keyboard.isGrabbed(KEY_K, controlAlt));
        keyboard.type({KEY_LEFTCTRL, KEY_LEFTALT, KEY_K});
        QTRY_COMPARE(app.starts().size(), 1);
        const auto id = app.starts().constFirst()[u"startupId"].toString();
        QTRY_COMPARE(messages.soFar(),
                     QList({"new: ID=\"" + id.toUtf8()
                            + "\" NAME=\"Recorded\" SCREEN=\"0\" BIN=\"record-start\" ICON=\"a "
                              "\\\"b\\\" \\\\c\" WMCLASS=\"Rec\""}));
    }
};

QTEST_MAIN(FocusTest)
#include "FocusTest.moc"
