// The list of entries as its user makes it: the real window, used from outside, and real keys.

#include "support/Mouse.h"
#include "support/ProgramOnTheBus.h"
#include "support/SettingsDesk.h"
#include "support/Windows.h"

#include <QFile>
#include <QJsonArray>
#include <QProcess>
#include <QTest>
#include <functional>
#include <nlohmann/json.hpp>

using namespace Qt::StringLiterals;
using namespace Role;
using State = Accessible::State;

namespace
{
struct Desk : SettingsDesk {
    Accessible addEntry() const
    {
        press(u"Add"_s);
        return sheet(u"New shortcut"_s);
    }
    Accessible edit(const QString &name) const
    {
        press(row(name), u"Edit"_s);
        return sheet(u"Edit shortcut"_s);
    }

    /// Records the keys in the sheet, whose button says this before and that afterwards.
    void record(const Accessible &sheet, const QString &before, const QList<int> &keys,
                const QString &after)
    {
        press(sheet, before);
        QVERIFY(sheet.await(button, u"Press the keys…"_s).isThere());
        keyboard.type(keys);
        QVERIFY(sheet.await(button, after).isThere());
    }

    /// A new entry's sheet, in which the next keys are recorded.
    Accessible startRecording() const
    {
        Accessible sheet = addEntry();
        press(sheet, u"Record Shortcut"_s);
        [&] { QVERIFY(sheet.await(button, u"Press the keys…"_s).isThere()); }();
        return sheet;
    }
};

/// Long enough for several repeats of a held key, with the rate that the tests set.
constexpr int longHold = 500;

using Use = std::function<void(Desk &desk, const Accessible &sheet)>;
} // namespace

Q_DECLARE_METATYPE(Use)

class EntryEditingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(QProcess::execute(u"xset"_s, {u"r"_s, u"rate"_s, u"200"_s, u"33"_s}), 0);
    }

    void addsAnEntryOfEachKind_data()
    {
        QTest::addColumn<QString>("kind");
        QTest::addColumn<Use>("setTarget");
        QTest::addColumn<QByteArray>("opened");
        QTest::newRow("an app") << u"Open an app"_s << Use(&chooseApp) << QByteArray();
        QTest::newRow("a folder") << u"Open a folder or file"_s << Use(&chooseFolder)
                                  << QByteArray("file:///usr/share");
        QTest::newRow("a website") << u"Open a website"_s << Use([](Desk &, const auto &sheet) {
            QVERIFY(sheet.await(field, u"Website"_s).setText(u"https://example.com/a"_s));
        }) << QByteArray("https://example.com/a");
        QTest::newRow("a Shortcut") << u"Run a Shortcut"_s << Use([](Desk &, const auto &sheet) {
            QVERIFY(sheet.await(field, u"Shortcut"_s).setText(u"Tidy"_s));
        }) << QByteArray("shortcuts://run-shortcut?name=Tidy");
    }
    void addsAnEntryOfEachKind()
    {
        QFETCH(const QString, kind);
        QFETCH(const Use, setTarget);
        QFETCH(const QByteArray, opened);
        Desk desk;
        desk.open();
        const Accessible sheet = desk.addEntry();
        QVERIFY(sheet.find(field, u"Name"_s).setText(u"Mine"_s));
        QVERIFY(sheet.findAll(u"combo box"_s).constFirst().choose(kind, desk.keyboard));
        setTarget(desk, sheet);
        desk.record(sheet, u"Record Shortcut"_s, controlAltJ, u"Ctrl+Alt+J"_s);
        QVERIFY(!desk.hasRow(u"Mine"_s));

        QVERIFY(sheet.find(button, u"Add"_s).press());
        QVERIFY(desk.row(u"Mine"_s).find(label, u"Ctrl+Alt+J"_s).isThere());
        desk.awaitNoSheet();
        desk.awaitHeld(KEY_J);
        desk.verifyThatKeysRunTheApp(controlAltJ);
        const auto arguments = desk.app.starts().constLast()[u"arguments"].toArray();
        QCOMPARE(arguments.last().toString().toUtf8(), opened);
    }

    void changesAnEntry()
    {
        Desk desk;
        desk.addApp(storedControlAltK);
        desk.open();
        const Accessible sheet = desk.edit(u"App"_s);
        QVERIFY(sheet.find(field, u"Name"_s).setText(u"Other"_s));
        desk.record(sheet, u"Ctrl+Alt+K"_s, controlAltJ, u"Ctrl+Alt+J"_s);
        // At once, for an entry of the list.
        desk.awaitHeld(KEY_J);
        QVERIFY(sheet.find(button, u"Save"_s).press());
        QVERIFY(desk.row(u"Other"_s).isThere());
        QVERIFY(!desk.hasRow(u"App"_s));
        desk.awaitFree(KEY_K);
        desk.verifyThatKeysRunTheApp(controlAltJ);
    }

    void restoresEverythingWhenItIsCancelled()
    {
        Desk desk;
        desk.addApp(storedControlAltK);
        desk.open();
        const QByteArray before = desk.list();
        const Accessible sheet = desk.edit(u"App"_s);
        QVERIFY(sheet.find(field, u"Name"_s).setText(u"Other"_s));
        desk.record(sheet, u"Ctrl+Alt+K"_s, controlAltJ, u"Ctrl+Alt+J"_s);
        closeWindow(*windowOnScreen(u"Edit shortcut"_s));
        desk.awaitNoSheet();
        QVERIFY(desk.hasRow(u"App"_s));
        QCOMPARE(desk.list(), before);
        desk.awaitFree(KEY_J);
        desk.awaitHeld(KEY_K);
        desk.verifyThatKeysRunTheApp(controlAltK);
    }

    void switchesAnEntryOffAndOn()
    {
        Desk desk;
        desk.addApp(storedControlAltK);
        desk.open();
        const Accessible toggle = desk.row(u"App"_s).find(u"check box"_s, u"Enabled"_s);
        QVERIFY(toggle.is(State::checked));
        QVERIFY(toggle.toggle());
        desk.awaitFree(KEY_K);
        QTRY_VERIFY(!toggle.is(State::checked));
        QVERIFY(toggle.toggle());
        desk.awaitHeld(KEY_K);
        desk.verifyThatKeysRunTheApp(controlAltK);
    }

    void deletesOneEntryByADoubleClick()
    {
        Desk desk;
        desk.addApp(storedControlAltK);
        const QString second = desk.addApp(storedControlAltJ);
        desk.open();
        const QPoint place = desk.row(u"App"_s).find(button, u"Delete"_s).geometry().center();
        Mouse mouse;
        mouse.click(place);
        // The next entry has moved up by then.
        desk.awaitFree(KEY_K);
        mouse.click(place);
        desk.verifyThatKeysRunTheApp(controlAltJ);
        QCOMPARE(nlohmann::json::parse(desk.list().constData()).size(), 1);
        QVERIFY(desk.list().contains(second.toUtf8()));
    }

    void deletesOneEntryByAHeldKey()
    {
        Desk desk;
        desk.addApp(storedControlAltK);
        desk.addApp(storedControlAltJ);
        desk.addApp(storedControlAltJ);
        desk.open();
        const Accessible deleteButton = desk.row(u"App"_s).find(button, u"Delete"_s);
        QVERIFY(deleteButton.focus());
        QTRY_VERIFY(deleteButton.is(State::focused));
        desk.keyboard.press({KEY_SPACE});
        for (int repeat = 0; repeat < 3; ++repeat)
            desk.keyboard.sendLateRepeat(KEY_SPACE, *activeWindow());
        desk.keyboard.release({KEY_SPACE});
        desk.awaitFree(KEY_K);
        desk.verifyThatKeysRunTheApp(controlAltJ);
        QCOMPARE(nlohmann::json::parse(desk.list().constData()).size(), 2);
    }

    void undoesADeletionByADoubleClickAndNothingElse()
    {
        Desk desk;
        for (int count = 0; count < 20; ++count)
            desk.addApp(storedControlAltK);
        desk.open();
        const QByteArray list = desk.list();
        SettingsDesk::press(desk.row(u"App"_s), u"Delete"_s);
        const Accessible undo = desk.all.await(button, u"Undo"_s);
        const QPoint place = undo.geometry().center();
        Mouse mouse;
        mouse.click(place);
        // A row of the list is there by then.
        QTRY_VERIFY(!undo.is(State::showing));
        mouse.click(place);
        mouse.moveTo({});
        desk.verifyThatKeysRunTheApp(controlAltK);
        QCOMPARE(desk.list(), list);
        QVERIFY(!desk.hasSheet());
    }

    void takesAnOfferedShortcut()
    {
        Desk desk;
        const QString shortcut = desk.program.dataHome() + u"/shortcuts/Tidy Up.sh"_s;
        Desk::write(shortcut, "#!/bin/sh\n");
        QVERIFY(QFile::setPermissions(shortcut, QFile::ReadOwner | QFile::ExeOwner));
        desk.open();
        const Accessible sheet = desk.addEntry();
        QTRY_VERIFY(sheet.find(field, u"Name"_s).is(State::focused));
        desk.keyboard.type({KEY_TAB});
        desk.keyboard.type({KEY_END});
        const Accessible typed = sheet.await(field, u"Shortcut"_s);
        desk.keyboard.type({KEY_TAB});
        QTRY_VERIFY(typed.is(State::focused));
        desk.keyboard.type({KEY_U});
        desk.keyboard.type({KEY_DOWN});
        QTRY_COMPARE(typed.text(), u"Tidy Up"_s);
        desk.keyboard.type({KEY_ENTER});
        // What is offered now is closed by Escape, and then the sheet.
        desk.keyboard.type({KEY_BACKSPACE});
        desk.keyboard.type({KEY_ESC});
        desk.keyboard.type({KEY_X});
        QTRY_COMPARE(typed.text(), u"Tidy Ux"_s);
        QVERIFY(!desk.shows(label, u"Please give this shortcut a name."_s));
        desk.keyboard.type({KEY_ESC});
        desk.awaitNoSheet();
    }

    void recordsKeysThatOthersWouldTake_data()
    {
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<QString>("text");
        QTest::newRow("an entry's own") << controlAltK << u"Ctrl+Alt+K"_s;
        QTest::newRow("what would close the window")
            << QList<int>{KEY_LEFTALT, KEY_F4} << u"Alt+F4"_s;
        QTest::newRow("what would save") << QList<int>{KEY_LEFTCTRL, KEY_ENTER} << u"Ctrl+Return"_s;
    }
    void recordsKeysThatOthersWouldTake()
    {
        QFETCH(const QList<int>, keys);
        QFETCH(const QString, text);
        Desk desk;
        desk.addApp(storedControlAltK);
        desk.open();
        desk.awaitHeld(KEY_K);
        const Accessible sheet = desk.addEntry();
        desk.record(sheet, u"Record Shortcut"_s, keys, text);
        QVERIFY(sheet.is(State::active));
        QVERIFY(desk.app.starts().isEmpty());
    }

    void recordsWhereAnInputFieldHasTheFocus()
    {
        Desk desk;
        desk.open();
        const Accessible sheet = desk.addEntry();
        // An assistive program presses without moving the focus.
        QTRY_VERIFY(sheet.find(field, u"Name"_s).is(State::focused));
        QVERIFY(sheet.find(button, u"Record Shortcut"_s).press());
        QVERIFY(sheet.await(button, u"Press the keys…"_s).isThere());
        desk.keyboard.type({KEY_X});
        QVERIFY(sheet.await(label, u"Include Super, Ctrl or Alt"_s).isThere());
        desk.keyboard.type(controlAltJ);
        QVERIFY(sheet.await(button, u"Ctrl+Alt+J"_s).isThere());
        QCOMPARE(sheet.find(field, u"Name"_s).text(), QString());
    }

    void runsOnceForAKeyThatWasTypedHereBeforeItsModifiers()
    {
        Desk desk;
        desk.addApp(storedControlAltK);
        desk.addApp(storedControlAltJ);
        desk.open();
        const Accessible name = desk.addEntry().find(field, u"Name"_s);
        QVERIFY(name.focus());
        desk.keyboard.press({KEY_K});
        QTRY_VERIFY(name.text().startsWith(u"kkk"_s));
        desk.keyboard.press({KEY_LEFTCTRL, KEY_LEFTALT});
        QTest::qWait(longHold);
        desk.keyboard.release({KEY_LEFTCTRL, KEY_LEFTALT, KEY_K});
        desk.keyboard.type(controlAltJ);
        QTRY_COMPARE(desk.app.starts().size(), 2);
        QCOMPARE(desk.program.stop(), 0);
        QCOMPARE(desk.app.starts().size(), 2);
    }

    void swallowsNothingOnceARecordingHasEnded()
    {
        Desk desk;
        desk.addApp(storedControlAltK);
        desk.open();
        const Accessible sheet = desk.startRecording();
        desk.keyboard.type(controlAltJ);
        QTRY_VERIFY(!sheet.find(button, u"Press the keys…"_s).isThere());
        desk.verifyThatKeysRunTheApp(controlAltK);
        desk.keyboard.type({KEY_ESC});
        desk.awaitNoSheet();
    }

    void firesNothingDuringARecording()
    {
        Desk desk;
        const QString id = desk.addApp(storedControlAltK);
        const RecordedApp laterApp;
        const QString laterId = desk.program.addEntry("app", laterApp.desktopFile());
        desk.open();
        const Accessible sheet = desk.startRecording();
        askToFire(id);
        QVERIFY(sheet.find(button, u"Press the keys…"_s).isThere());
        desk.keyboard.type({KEY_ESC});
        QTRY_VERIFY(!sheet.find(button, u"Press the keys…"_s).isThere());
        askToFire(laterId);
        QTRY_COMPARE(laterApp.starts().size(), 1);
        QVERIFY(desk.app.starts().isEmpty());
    }

    void savesNothingByKeysThatAreStillHeldOnceTheyAreRecorded_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("text");
        QTest::newRow("Return") << KEY_ENTER << u"Ctrl+Alt+Return"_s;
        QTest::newRow("Space") << KEY_SPACE << u"Ctrl+Alt+Space"_s;
    }
    void savesNothingByKeysThatAreStillHeldOnceTheyAreRecorded()
    {
        QFETCH(const int, key);
        QFETCH(const QString, text);
        Desk desk;
        desk.program.environment.insert(u"XDG_CURRENT_DESKTOP"_s, u"XFCE"_s);
        desk.addApp(storedControlAltK);
        desk.open();
        const Accessible sheet = desk.edit(u"App"_s);
        desk.press(sheet, u"Ctrl+Alt+K"_s);
        QVERIFY(sheet.await(button, u"Press the keys…"_s).isThere());
        const QList<int> keys{KEY_LEFTCTRL, KEY_LEFTALT, key};
        desk.keyboard.press(keys);
        QVERIFY(sheet.await(button, text).isThere());
        // First with the modifiers, and then without.
        QTest::qWait(longHold);
        desk.keyboard.release({KEY_LEFTCTRL, KEY_LEFTALT});
        QTest::qWait(longHold);
        desk.keyboard.release({key});
        QTRY_VERIFY(sheet.find(button, u"Save"_s).is(State::focused));
        // Had it been saved, this could not bring the former keys back.
        desk.keyboard.type({KEY_ESC});
        desk.awaitNoSheet();
        desk.awaitHeld(KEY_K);
    }

    void swallowsNothingOnceTheRecorderHasLeftTheScreen()
    {
        Desk desk;
        desk.addApp(storedControlAltK);
        desk.open();
        desk.startRecording();
        closeWindow(*windowOnScreen(u"New shortcut"_s));
        desk.awaitNoSheet();
        desk.verifyThatKeysRunTheApp(controlAltK);
    }

    void swallowsNothingOnceTheProgramHasEnded()
    {
        Desk desk;
        desk.open();
        const Accessible sheet = desk.startRecording();
        QVERIFY(!desk.keyboard.grabAll());
        QCOMPARE(desk.program.stop(), 0);
        QTRY_VERIFY(desk.keyboard.grabAll());
    }

    void saysWhatIsNotThereAsLongAsItIsNot()
    {
        Desk desk;
        const QString file = desk.program.home.filePath(u"paper"_s);
        desk.program.addEntry("path", file);
        desk.open();
        const auto isSaid = [&] { return desk.all.find(label, u"Not found"_s).is(State::showing); };
        QVERIFY(desk.all.await(label, u"Not found"_s).isThere());
        QVERIFY(QFile(file).open(QIODevice::WriteOnly));
        QVERIFY(isSaid());
        QVERIFY(desk.row(u"App"_s).find(u"check box"_s, u"Enabled"_s).toggle());
        QTRY_VERIFY(!isSaid());
    }

    void keepsAHalfTypedTextWhenTheListIsRefreshed()
    {
        Desk desk;
        const QString id = desk.program.addEntry("path", u"/nowhere"_s);
        desk.open();
        const Accessible sheet = desk.addEntry();
        desk.keyboard.type({KEY_A});
        desk.keyboard.type({KEY_B});
        desk.keyboard.type({KEY_LEFT});
        QTRY_COMPARE(sheet.find(field, u"Name"_s).text(), u"ab"_s);
        // What is missing is told to all views.
        askToFire(id);
        desk.keyboard.type({KEY_C});
        QTRY_COMPARE(sheet.find(field, u"Name"_s).text(), u"acb"_s);
        QVERIFY(sheet.find(field, u"Name"_s).is(State::focused));
    }

    void comesToTheFrontWithItsSheet()
    {
        Desk desk;
        desk.open();
        const Accessible sheet = desk.addEntry();
        minimizeWindow(*windowOnScreen(u"Corvane"_s));
        QTRY_VERIFY(!windowOnScreen(u"New shortcut"_s));
        askForSettings();
        QTRY_VERIFY(windowOnScreen(u"New shortcut"_s));
        QTRY_VERIFY(sheet.is(State::active));
        QVERIFY(windowOnScreen(u"Corvane"_s));
    }

private:
    static void chooseApp(Desk &desk, const Accessible &sheet)
    {
        QVERIFY(sheet.find(button, u"Choose…"_s).press());
        const Accessible panel = desk.sheet(u"Choose App"_s);
        desk.keyboard.type({KEY_R});
        desk.keyboard.type({KEY_E});
        desk.keyboard.type({KEY_ENTER});
        QVERIFY(sheet.await(label, u"~/data/applications/recorded.desktop"_s).isThere());
    }
    static void chooseFolder(Desk &desk, const Accessible &sheet)
    {
        QVERIFY(sheet.find(button, u"Choose…"_s).press());
        const Accessible panel = desk.sheet(u"Choose"_s);
        QVERIFY(panel.findAll(field).constLast().setText(u"/usr/share"_s));
        QVERIFY(panel.find(button, u"Choose"_s).press());
        QVERIFY(sheet.await(label, u"/usr/share"_s).isThere());
    }
};

QTEST_MAIN(EntryEditingTest)
#include "EntryEditingTest.moc"
