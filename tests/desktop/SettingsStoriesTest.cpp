// The settings window as its user lives with it: the welcome, what sheets tell and ask, and the
// settings below the list. All of it is seen from outside, with real keys and real files.

#include "support/PrivateBus.h"
#include "support/ProgramOnTheBus.h"
#include "support/RecordedService.h"
#include "support/SettingsDesk.h"
#include "support/Windows.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTest>
#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;
using State = Accessible::State;

namespace
{
const QString launchAtLogin = u"Launch at login"_s;
const QString notifyRuns = u"Show a small notification when a shortcut runs"_s;
const QString welcome = u"Welcome to Corvane"_s;
const QString question = u"Remove the keys from every shortcut?"_s;
const QString noSave = u"Your shortcut list could not be saved."_s;
const QString noLoginItem = u"Launch at login could not be changed."_s;

struct Desk : SettingsDesk {
    QString autostartFolder() const { return program.configHome() + u"/autostart"_s; }
    QString autostartFile() const { return autostartFolder() + u"/org.corvane.Corvane.desktop"_s; }

    /// From now on the login item cannot be changed.
    void preventAutostart() const { write(autostartFolder(), "a file in the folder's place"); }

    /// From now on the list cannot be saved, nor loaded.
    void preventSaving() const
    {
        const QString folder = program.dataHome() + u"/Corvane"_s;
        QVERIFY(!QFileInfo::exists(folder) || QDir().rename(folder, folder + u".former"_s));
        write(folder, "a file in the folder's place");
    }

    Accessible causeError() const
    {
        preventAutostart();
        toggle(launchAtLogin);
        return errorAlert(noLoginItem);
    }

    /// The lines of the settings, which the program writes in another order than the tests.
    QByteArrayList sortedSettings() const
    {
        QByteArrayList lines = settings().split('\n');
        std::ranges::sort(lines);
        return lines;
    }

    void removeAllKeys() const
    {
        press(u"Reset all shortcuts…"_s);
        SettingsDesk::press(alert(question), u"Reset all shortcuts"_s);
        awaitNoSheet();
    }

    /// Programs of these names that record their starts, before all others of the system.
    void addPrograms(const QStringList &names)
    {
        const QString folder = program.home.filePath(u"bin"_s);
        for (const QString &name : names) {
            const QString path = folder + u'/' + name;
            write(path, "#!/bin/sh\nexec " + app.command() + ' ' + name.toUtf8() + '\n');
            QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner));
        }
        const QString others = program.environment.value(u"PATH"_s);
        program.environment.insert(u"PATH"_s, folder + u':' + others);
    }

    /// The argument of each start of the recorded app.
    QByteArrayList started() const
    {
        QByteArrayList names;
        for (const auto &start : app.starts())
            names << start[u"arguments"][0].toString().toUtf8();
        return names;
    }
};

/// What a notification host answers.
bool answerAsHost(const QDBusMessage &call, const QDBusConnection &connection)
{
    const bool isWhatItCan = call.member() == u"GetCapabilities";
    const QVariant answer = isWhatItCan ? QVariant(QStringList()) : QVariant(1u);
    return connection.send(call.createReply(answer));
}

/// On a bus of its own with a notification host. Control+Option+J runs the app; with K, the entry's
/// app is not there.
struct NotifiedDesk : Desk {
    NotifiedDesk()
    {
        program.environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.address());
        addApp(storedControlAltJ);
        program.addApp(u"/nowhere"_s, storedControlAltK);
    }

    /// The window comes by itself to a new user.
    void open()
    {
        program.isUserNew = true;
        program.start();
        awaitWindow();
    }

    void verifyThatRunsAreNotified()
    {
        const qsizetype before = notified().size();
        verifyThatKeysRunTheApp(controlAltJ);
        QTRY_COMPARE(notified().size(), before + 1);
        QVERIFY(notified().constLast().contains(u"Open an app"_s));
    }
    void verifyThatOnlyFailuresAreNotified()
    {
        const qsizetype before = notified().size();
        verifyThatKeysRunTheApp(controlAltJ);
        keyboard.type(controlAltK);
        QTRY_COMPARE(notified().size(), before + 1);
        QVERIFY(notified().constLast().contains(u"Not found"_s));
    }
    QStringList notified() const { return notifications.calls(u"Notify"_s); }

    PrivateBus bus;
    /// Where the program finds the way to the bus that we see its windows on.
    RecordedService accessibility{bus.address(), u"org.a11y.Bus"_s,
                                  RecordedService::reply({Accessible::busAddress()})};
    RecordedService notifications{bus.address(), u"org.freedesktop.Notifications"_s, &answerAsHost};
};

using Act = std::function<void(Desk &desk)>;
using OpenSheet = std::function<Accessible(const Desk &desk)>;
} // namespace

Q_DECLARE_METATYPE(Act)
Q_DECLARE_METATYPE(OpenSheet)

class SettingsStoriesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void welcomesANewUser()
    {
        Desk desk;
        desk.program.isUserNew = true;
        desk.program.start();
        desk.awaitWindow();
        QVERIFY(desk.shows(Role::label, welcome));
        desk.press(u"Got it"_s);
        QTRY_VERIFY(!desk.shows(Role::label, welcome));
        QVERIFY(desk.settings().contains("hasSeenWelcome=true"));
    }

    void doesNotWelcomeTheUserTwice()
    {
        Desk desk;
        desk.program.isUserNew = true;
        desk.addApp(storedControlAltK);
        desk.program.start();
        desk.awaitWindow();
        desk.press(u"Got it"_s);
        QTRY_VERIFY(!desk.shows(Role::label, welcome));
        desk.restart();
        desk.awaitHeld(KEY_K);
        desk.verifyThatKeysRunTheApp(controlAltK);
        QVERIFY(!windowOnScreen(u"Corvane"_s));
        desk.show();
        QVERIFY(!desk.shows(Role::label, welcome));
    }

    void welcomesAUserWhoHasRemovedTheSettings()
    {
        Desk desk;
        desk.open();
        QVERIFY(!desk.shows(Role::label, welcome));
        QCOMPARE(desk.program.stop(), 0);
        QVERIFY(QFile::remove(desk.settingsPath()));
        desk.program.startAgain();
        desk.awaitWindow();
        QVERIFY(desk.shows(Role::label, welcome));
    }

    void removesAllKeysAndNothingElse()
    {
        Desk desk;
        desk.addApp(storedControlAltJ);
        desk.addApp(storedControlAltK);
        desk.open();
        const QByteArray list = desk.list();
        desk.removeAllKeys();
        desk.awaitFree(KEY_J);
        desk.awaitFree(KEY_K);
        QCOMPARE(desk.list(), list);
        QVERIFY(!desk.settings().contains("hotkey."));
        QVERIFY(desk.settings().contains("hasSeenWelcome=true"));
        QCOMPARE(desk.all.findAll(Role::label, u"No keys"_s).size(), 2);
    }

    void keepsAllKeysWhenTheResetIsCancelled()
    {
        Desk desk;
        desk.addApp(storedControlAltK);
        desk.open();
        const QByteArray list = desk.list();
        const QByteArray settings = desk.settings();
        desk.press(u"Reset all shortcuts…"_s);
        SettingsDesk::press(desk.alert(question), u"Cancel"_s);
        desk.awaitNoSheet();
        QCOMPARE(desk.list(), list);
        QCOMPARE(desk.settings(), settings);
        desk.verifyThatKeysRunTheApp(controlAltK);
    }

    void undoesADeletionOrAReset_data()
    {
        QTest::addColumn<Act>("change");
        QTest::addColumn<QString>("text");
        QTest::addColumn<Act>("undo");
        const Act deletes([](Desk &desk) {
            SettingsDesk::press(desk.all.findAll(Role::row).constFirst(), u"Delete"_s);
        });
        const Act resets([](Desk &desk) { desk.removeAllKeys(); });
        const Act byButton([](Desk &desk) { desk.press(u"Undo"_s); });
        const Act byKeys([](Desk &desk) { desk.keyboard.type({KEY_LEFTCTRL, KEY_Z}); });
        const QString deleted = u"“App” was deleted."_s;
        const QString removed = u"The keys of all entries were removed."_s;
        QTest::newRow("a deletion by the button") << deletes << deleted << byButton;
        QTest::newRow("a deletion by Ctrl+Z") << deletes << deleted << byKeys;
        QTest::newRow("a reset by the button") << resets << removed << byButton;
        QTest::newRow("a reset by Ctrl+Z") << resets << removed << byKeys;
    }
    void undoesADeletionOrAReset()
    {
        QFETCH(const Act, change);
        QFETCH(const QString, text);
        QFETCH(const Act, undo);
        Desk desk;
        desk.addApp(storedControlAltJ);
        desk.program.entriesAreEnabled = false;
        desk.addApp(storedControlAltK);
        desk.open();
        const QByteArray list = desk.list();
        const QByteArrayList settings = desk.sortedSettings();
        change(desk);
        desk.awaitFree(KEY_J);
        QVERIFY(desk.all.await(Role::label, text).isThere());
        undo(desk);
        desk.awaitHeld(KEY_J);
        desk.verifyThatKeysRunTheApp(controlAltJ);
        desk.awaitFree(KEY_K);
        QCOMPARE(desk.list(), list);
        QCOMPARE(desk.sortedSettings(), settings);
        QTRY_VERIFY(!desk.shows(Role::label, text));
        QVERIFY(!desk.shows(Role::button, u"Undo"_s));
    }

    void undoesNothingFromBeforeItsStart()
    {
        Desk desk;
        desk.addApp(storedControlAltJ);
        desk.open();
        SettingsDesk::press(desk.row(u"App"_s), u"Delete"_s);
        QVERIFY(desk.all.await(Role::button, u"Undo"_s).isThere());
        desk.restart();
        desk.show();
        desk.keyboard.type({KEY_LEFTCTRL, KEY_Z});
        desk.awaitFree(KEY_J);
        QVERIFY(!desk.shows(Role::button, u"Undo"_s));
        QVERIFY(!desk.hasRow(u"App"_s));
        QCOMPARE(desk.list(), "[]");
    }

    void obeysTheKeysWhileASheetIsOpen_data()
    {
        QTest::addColumn<OpenSheet>("openSheet");
        const auto panelBehind = [](const QString &title) {
            return OpenSheet([title](const Desk &desk) {
                desk.press(title + u'…');
                return desk.sheet(title);
            });
        };
        QTest::newRow("the editor of an entry") << OpenSheet([](const Desk &desk) {
            desk.press(u"Add"_s);
            return desk.sheet(u"New shortcut"_s);
        });
        QTest::newRow("About") << OpenSheet([](const Desk &desk) {
            desk.press(u"About"_s);
            return desk.sheet(u"Corvane"_s);
        });
        QTest::newRow("an alert") << OpenSheet([](const Desk &desk) { return desk.causeError(); });
        QTest::newRow("details") << OpenSheet([](const Desk &desk) {
            SettingsDesk::press(desk.causeError(), u"Show Details"_s);
            return desk.sheet(u"Details"_s);
        });
        QTest::newRow("the question before a reset") << OpenSheet([](const Desk &desk) {
            desk.press(u"Reset all shortcuts…"_s);
            return desk.alert(question);
        });
        QTest::newRow("the panel for an import") << panelBehind(u"Import"_s);
        QTest::newRow("the panel for an export") << panelBehind(u"Export"_s);
    }
    void obeysTheKeysWhileASheetIsOpen()
    {
        QFETCH(const OpenSheet, openSheet);
        Desk desk;
        desk.addApp(storedControlAltK);
        desk.open();
        const Accessible sheet = openSheet(desk);
        desk.verifyThatKeysRunTheApp(controlAltK);
        QVERIFY(sheet.is(State::active));
    }

    void tellsWhenItIsOpenedWhatWentWrongBefore()
    {
        Desk desk;
        desk.preventSaving();
        desk.program.start();
        askForSettings();
        desk.all = Accessible::program(desk.program.processId());
        desk.errorAlert(u"Your shortcut list could not be loaded."_s);
    }

    void tellsWhatWentWrongWhileItWasMinimized()
    {
        Desk desk;
        desk.addApp(storedControlAltK);
        desk.open();
        minimizeWindow(*windowOnScreen(u"Corvane"_s));
        QTRY_VERIFY(!windowOnScreen(u"Corvane"_s));
        desk.preventSaving();
        QVERIFY(desk.row(u"App"_s).find(Role::checkBox, u"Enabled"_s).toggle());
        desk.awaitFree(KEY_K);
        askForSettings();
        SettingsDesk::press(desk.errorAlert(noSave), u"OK"_s);
        desk.awaitNoSheet();
    }

    void isStartedAtLoginOnceTheUserWantsIt()
    {
        Desk desk;
        desk.open();
        QVERIFY(!QFile::exists(desk.autostartFile()));
        desk.toggle(launchAtLogin);
        QTRY_VERIFY(desk.checkBox(launchAtLogin).is(State::checked));
        const QByteArray file = SettingsDesk::content(desk.autostartFile());
        const QByteArray program = QFile::encodeName(desk.program.program);
        QVERIFY2(file.contains("\nExec=\"" + program + "\"\n"), file);
    }

    void isNoLongerStartedAtLoginOnceTheUserWantsThat()
    {
        Desk desk;
        SettingsDesk::write(desk.autostartFile(), desk.app.content());
        desk.open();
        QTRY_VERIFY(desk.checkBox(launchAtLogin).is(State::checked));
        desk.toggle(launchAtLogin);
        QTRY_VERIFY(!desk.checkBox(launchAtLogin).is(State::checked));
        QVERIFY(!QFile::exists(desk.autostartFile()));
    }

    void tellsThatTheUserHasToApprove()
    {
        Desk desk;
        SettingsDesk::write(desk.autostartFile(), desk.app.content() + "Hidden=true\n");
        desk.open();
        QVERIFY(!desk.checkBox(launchAtLogin).is(State::checked));
        QVERIFY(desk.shows(Role::label, u"Switched off in your desktop's startup applications."_s));
        QVERIFY(desk.shows(Role::button, u"Open Startup Applications"_s));
    }

    void tellsThatTheLoginItemCannotBeChanged()
    {
        Desk desk;
        desk.open();
        const Accessible alert = desk.causeError();
        QVERIFY(!desk.checkBox(launchAtLogin).is(State::checked));
        SettingsDesk::press(alert, u"OK"_s);
        desk.awaitNoSheet();
    }

    void seesWhatHasHappenedToTheLoginItemMeanwhile()
    {
        Desk desk;
        desk.open();
        closeWindow(*windowOnScreen(u"Corvane"_s));
        QTRY_VERIFY(!windowOnScreen(u"Corvane"_s));
        SettingsDesk::write(desk.autostartFile(), desk.app.content());
        desk.show();
        QTRY_VERIFY(desk.checkBox(launchAtLogin).is(State::checked));
    }

    void opensThePagesOfTheDesktop()
    {
        Desk desk;
        desk.program.environment.insert(u"XDG_CURRENT_DESKTOP"_s, u"XFCE"_s);
        desk.addPrograms({u"xfce4-notifyd-config"_s, u"xfce4-session-settings"_s});
        SettingsDesk::write(desk.autostartFile(), desk.app.content() + "Hidden=true\n");
        desk.open();
        desk.press(u"Open Notification Settings"_s);
        QTRY_COMPARE(desk.started(), QByteArrayList({"xfce4-notifyd-config"}));
        desk.press(u"Open Startup Applications"_s);
        QTRY_COMPARE(desk.started(),
                     QByteArrayList({"xfce4-notifyd-config", "xfce4-session-settings"}));
    }

    void staysUsableWhereTheDesktopHasNoPages()
    {
        Desk desk;
        desk.program.environment.insert(u"XDG_CURRENT_DESKTOP"_s, u"Unheard-of"_s);
        desk.addPrograms({u"xfce4-notifyd-config"_s});
        desk.open();
        desk.press(u"Open Notification Settings"_s);
        desk.press(u"About"_s);
        desk.sheet(u"Corvane"_s);
        QVERIFY(desk.started().isEmpty());
        QCOMPARE(desk.program.stop(), 0);
        QCOMPARE(desk.program.errorOutput(), QByteArray());
    }

    void notifiesOfFailuresOnlyOnceTheUserWantsNoMore()
    {
        NotifiedDesk desk;
        desk.open();
        QVERIFY(desk.checkBox(notifyRuns).is(State::checked));
        desk.verifyThatRunsAreNotified();
        desk.toggle(notifyRuns);
        desk.verifyThatOnlyFailuresAreNotified();
    }

    void remembersOfWhatItNotifies()
    {
        NotifiedDesk desk;
        desk.open();
        desk.toggle(notifyRuns);
        desk.restart();
        desk.awaitWindow();
        QVERIFY(!desk.checkBox(notifyRuns).is(State::checked));
        desk.verifyThatOnlyFailuresAreNotified();
        desk.toggle(notifyRuns);
        desk.verifyThatRunsAreNotified();
    }
};

QTEST_MAIN(SettingsStoriesTest)
#include "SettingsStoriesTest.moc"
