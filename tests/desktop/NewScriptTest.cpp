// How users make a Shortcut in the editor: real windows and keys, a recorded text editor, and keys
// that run the new script.

#include "support/Mouse.h"
#include "support/SettingsDesk.h"
#include "support/Windows.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonArray>
#include <QProcess>
#include <QRasterWindow>
#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;
using namespace Role;
using State = Accessible::State;

namespace
{
const QString formTitle = u"New script"_s;

/// Long enough for several repeats of a held key, with the rate that the test sets.
constexpr int longHold = 500;

/// A desk whose recorded app is the text editor and the file manager, while the companion runs
/// Shortcuts.
struct Desk : SettingsDesk {
    Desk()
    {
        const QString applications = program.dataHome() + u"/applications"_s;
        write(applications + u"/org.corvane.Corvane.Shortcuts.desktop"_s,
              "[Desktop Entry]\nType=Application\nName=Shortcuts\nNoDisplay=true\nExec="
                  + QCoreApplication::applicationDirPath().toUtf8()
                  + "/corvane-shortcuts %u\nMimeType=x-scheme-handler/shortcuts;\n");
        QCOMPARE(QProcess::execute(u"update-desktop-database"_s, {applications}), 0);
        app.openByDefault({"text/plain", "inode/directory"}, program.dataHome(),
                          program.configHome());
    }

    QString folder() const { return program.dataHome() + u"/shortcuts"_s; }
    QStringList scripts() const
    {
        return QDir(folder()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }

    /// The editor of a new entry that runs a Shortcut, with the focus in the field for its name.
    Accessible addShortcut()
    {
        open();
        press(u"Add"_s);
        Accessible editor = sheet(u"New shortcut"_s);
        [&] {
            QTRY_VERIFY(editor.find(field, u"Name"_s).is(State::focused));
            keyboard.type({KEY_TAB});
            keyboard.type({KEY_END});
            QVERIFY(editor.await(button, u"New…"_s).isThere());
            keyboard.type({KEY_TAB});
            QTRY_VERIFY(editor.find(field, u"Shortcut"_s).is(State::focused));
        }();
        return editor;
    }

    /// The form for a new script, reached from the field by the keyboard.
    Accessible askForScript(const Accessible &editor)
    {
        keyboard.type({KEY_TAB});
        [&] { QTRY_VERIFY(editor.find(button, u"New…"_s).is(State::focused)); }();
        keyboard.type({KEY_SPACE});
        Accessible form = sheet(formTitle);
        [&] { QTRY_VERIFY(form.find(field, u"Name"_s).is(State::focused)); }();
        return form;
    }

    /// What the recorded app has been started with last.
    QString lastOpened() const
    {
        const QString address = app.starts().constLast()[u"arguments"].toArray().last().toString();
        return QUrl(address).toLocalFile();
    }
};
} // namespace

class NewScriptTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(QProcess::execute(u"xset"_s, {u"r"_s, u"rate"_s, u"200"_s, u"33"_s}), 0);
    }

    void makesAScriptThatTheKeysRun()
    {
        Desk desk;
        const Accessible editor = desk.addShortcut();
        desk.askForScript(editor);
        desk.keyboard.write(u"Tidy up"_s);
        desk.keyboard.type({KEY_ENTER});
        const QString script = desk.folder() + u"/Tidy up"_s;
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QCOMPARE(desk.lastOpened(), script);
        QTRY_VERIFY(editor.is(State::active));
        QTRY_VERIFY(editor.find(field, u"Shortcut"_s).is(State::focused));
        for (const QString &name : {u"Shortcut"_s, u"Name"_s})
            QCOMPARE(editor.find(field, name).text(), u"Tidy up"_s);

        const RecordedApp started;
        QFile file(script);
        QVERIFY(file.open(QIODevice::Append));
        file.write("exec " + started.command() + '\n');
        file.close();
        SettingsDesk::press(editor, u"Record Shortcut"_s);
        QVERIFY(editor.await(button, u"Press the keys…"_s).isThere());
        desk.keyboard.type(controlAltJ);
        QVERIFY(editor.await(button, u"Ctrl+Alt+J"_s).isThere());
        desk.keyboard.type({KEY_ENTER});
        desk.awaitNoSheet();
        desk.awaitHeld(KEY_J);
        desk.keyboard.type(controlAltJ);
        QVERIFY(!started.onlyStart().isEmpty());
    }

    void opensTheFolderThatIsMissing()
    {
        Desk desk;
        const Accessible editor = desk.addShortcut();
        SettingsDesk::press(editor, u"Open Folder"_s);
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QCOMPARE(desk.lastOpened(), desk.folder());
        QVERIFY(QFileInfo(desk.folder()).isDir());
    }

    void makesNothingWhenEscapeClosesTheForm()
    {
        Desk desk;
        const Accessible editor = desk.addShortcut();
        desk.askForScript(editor);
        desk.keyboard.write(u"n"_s);
        // The second key comes before the form has gone.
        desk.keyboard.type({KEY_ESC});
        desk.keyboard.type({KEY_ENTER});
        QTRY_VERIFY(editor.is(State::active));
        QTRY_VERIFY(editor.find(button, u"New…"_s).is(State::focused));
        QCOMPARE(desk.scripts(), QStringList());
        QCOMPARE(editor.find(field, u"Shortcut"_s).text(), QString());
    }

    void makesOneScriptByAHeldKey()
    {
        Desk desk;
        const Accessible editor = desk.addShortcut();
        desk.askForScript(editor);
        desk.keyboard.write(u"n"_s);
        desk.keyboard.press({KEY_ENTER});
        QTRY_VERIFY(editor.is(State::active));
        QTest::qWait(longHold);
        desk.keyboard.release({KEY_ENTER});
        QVERIFY(editor.find(field, u"Shortcut"_s).is(State::focused));
        // Repeats would have pressed Add, which asks for keys.
        QVERIFY(!desk.shows(label, u"Click the key box and press a key combination."_s));
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QCOMPARE(desk.scripts(), QStringList(u"n"_s));
    }

    void makesOneScriptByADoubleClick()
    {
        Desk desk;
        const Accessible editor = desk.addShortcut();
        const Accessible form = desk.askForScript(editor);
        desk.keyboard.write(u"n"_s);
        QTRY_COMPARE(form.find(field, u"Name"_s).text(), u"n"_s);
        const QPoint place = form.find(button, u"Create"_s).geometry().center();
        Mouse mouse;
        mouse.click(place);
        mouse.click(place);
        QTRY_VERIFY(editor.is(State::active));
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QCOMPARE(desk.scripts(), QStringList(u"n"_s));
        QVERIFY(!desk.shows(dialog, formTitle));
    }

    void opensTheTextEditorWhileTheUserIsInAnotherProgram()
    {
        Desk desk;
        const Accessible form = desk.askForScript(desk.addShortcut());
        QVERIFY(form.find(field, u"Name"_s).setText(u"n"_s));
        QRasterWindow other;
        other.setTitle(u"Other"_s);
        other.show();
        other.requestActivate();
        QTRY_VERIFY(!form.is(State::active));
        QCOMPARE(activeTitle(), u"Other"_s);
        SettingsDesk::press(form, u"Create"_s);
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QCOMPARE(activeTitle(), u"Other"_s);
    }

    void endsWithTheFormOpen()
    {
        Desk desk;
        desk.askForScript(desk.addShortcut());
        QCOMPARE(desk.program.stop(), 0);
    }

    void outlivesTheEditorThatAnAssistiveProgramClosesBehindTheForm()
    {
        Desk desk;
        const Accessible editor = desk.addShortcut();
        desk.askForScript(editor);
        SettingsDesk::press(editor, u"Cancel"_s);
        desk.awaitNoSheet();
        desk.press(u"Add"_s);
        QVERIFY(desk.sheet(u"New shortcut"_s).isThere());
    }
};

QTEST_MAIN(NewScriptTest)
#include "NewScriptTest.moc"
