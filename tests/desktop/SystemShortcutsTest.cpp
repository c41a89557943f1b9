// The settings window warns of keys that the running desktop or another program uses, as they are
// now: real settings, changed with the desktops' own tools while the window is open.

#include "support/RecordedService.h"
#include "support/SettingsDesk.h"
#include "support/Windows.h"

#include <QFile>
#include <QProcess>
#include <QScopeGuard>
#include <QTest>
#include <functional>

using namespace Qt::StringLiterals;
using namespace Role;
using State = Accessible::State;

namespace
{
/// How soon a change has to be seen.
constexpr int aSecond = 1000;

QString warning(const QString &keys, const QString &user)
{
    return u"%1 is already used by %2. It may not work."_s.arg(keys, user);
}

const QString anotherProgram = u"another program"_s;
const QString keyboardSettings = u"Keyboard Settings"_s;
constexpr StoredKeys storedControlAltY{16, 0x1800};

struct Desk : SettingsDesk {
    bool warnsInRow(const QString &user = anotherProgram) const
    {
        return row(u"App"_s).find(label, warning(u"Ctrl+Alt+K"_s, user)).is(State::showing);
    }

    /// A program of the desktop, first in the program's PATH.
    void install(const QString &name, const QByteArray &command)
    {
        const QString path = program.home.filePath(u"bin/"_s + name);
        write(path, "#!/bin/sh\nexec " + command + " \"$@\"\n");
        QVERIFY(QFile::setPermissions(path, QFile::ReadOwner | QFile::ExeOwner));
        program.environment.insert(u"PATH"_s,
                                   program.home.filePath(u"bin:"_s) + qEnvironmentVariable("PATH"));
    }

    /// A tool that changes settings, in the home of the program.
    void change(const QStringList &command) const
    {
        QProcess tool;
        tool.setProcessEnvironment(program.environment);
        tool.start(command.constFirst(), command.sliced(1));
        QVERIFY2(tool.waitForFinished() && tool.exitCode() == 0, tool.readAllStandardError());
    }
};
} // namespace

class SystemShortcutsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void warnsOfWhatAnotherProgramHolds_data()
    {
        QTest::addColumn<bool>("isEnabled");
        QTest::addColumn<bool>("isPaused");
        QTest::newRow("an enabled entry, whose registration is refused") << true << false;
        QTest::newRow("a disabled entry, which has none") << false << false;
        QTest::newRow("an entry while all are paused") << true << true;
    }
    void warnsOfWhatAnotherProgramHolds()
    {
        QFETCH(const bool, isEnabled);
        QFETCH(const bool, isPaused);
        Keyboard rival;
        rival.grab(KEY_K, controlAlt);
        Desk desk;
        desk.program.entriesAreEnabled = isEnabled;
        if (isPaused)
            desk.program.addDefault("pauseAll=true");
        desk.addApp(storedControlAltK);
        desk.open();
        QTRY_VERIFY(desk.warnsInRow());
    }

    void warnsOfNothingThatWeHoldOurselves()
    {
        Desk desk;
        desk.addApp(storedControlAltK);
        desk.program.entriesAreEnabled = false;
        desk.addApp(storedControlAltK);
        desk.open();
        QVERIFY(desk.all.await(label, u"The same keys are used by “App”."_s).isThere());
        QVERIFY(desk.all.findAll(label, warning(u"Ctrl+Alt+K"_s, anotherProgram)).isEmpty());
        desk.verifyThatKeysRunTheApp(controlAltK);
    }

    void keepsItsWarningWhenAnotherEntryIsSwitched()
    {
        Keyboard rival;
        rival.grab(KEY_K, controlAlt);
        Desk desk;
        desk.addApp(storedControlAltK);
        desk.addApp(storedControlAltJ);
        desk.open();
        desk.awaitHeld(KEY_J);
        QTRY_VERIFY(desk.warnsInRow());
        QVERIFY(desk.all.findAll(checkBox, u"Enabled"_s).constLast().toggle());
        desk.awaitFree(KEY_J);
        QVERIFY(!QTest::qWaitFor([&desk] { return !desk.warnsInRow(); }, 200));
    }

    void takesTheKeysWhenTheirRivalHasGoneAndTheWindowComesBack()
    {
        auto rival = std::make_unique<Keyboard>();
        rival->grab(KEY_K, controlAlt);
        Desk desk;
        desk.addApp(storedControlAltK);
        desk.open();
        QTRY_VERIFY(desk.warnsInRow());
        const Accessible window = desk.all.find(u"frame"_s, u"Corvane"_s);
        minimizeWindow(*windowOnScreen(u"Corvane"_s));
        QTRY_VERIFY(!window.is(State::active));
        rival.reset();
        desk.awaitFree(KEY_K);
        desk.show();
        QTRY_VERIFY(!desk.warnsInRow());
        desk.verifyThatKeysRunTheApp(controlAltK);
    }

    void warnsInTheEditorOfKeysJustRecorded()
    {
        Keyboard rival;
        rival.grab(KEY_J, controlAlt);
        Desk desk;
        desk.open();
        desk.press(u"Add"_s);
        const Accessible sheet = desk.sheet(u"New shortcut"_s);
        desk.press(sheet, u"Record Shortcut"_s);
        QVERIFY(sheet.await(button, u"Press the keys…"_s).isThere());
        desk.keyboard.type(controlAltJ);
        const QString warningOfJ = warning(u"Ctrl+Alt+J"_s, anotherProgram);
        QVERIFY(sheet.await(label, warningOfJ).isThere());
        QVERIFY(sheet.await(notice, warningOfJ).isThere());
    }

    // Before xfconfd is there, which owns that name for good.
    void isNotKeptWaitingByADesktopThatHangs_data()
    {
        QTest::addColumn<QString>("desktop");
        QTest::addColumn<QString>("service");
        QTest::addColumn<QString>("firstQuestion");
        QTest::newRow("Plasma") << u"KDE"_s << u"org.kde.kglobalaccel"_s << u"allComponents"_s;
        QTest::newRow("Xfce") << u"XFCE"_s << u"org.xfce.Xfconf"_s << u"GetAllProperties"_s;
    }
    void isNotKeptWaitingByADesktopThatHangs()
    {
        QFETCH(const QString, desktop);
        QFETCH(const QString, service);
        QFETCH(const QString, firstQuestion);
        const RecordedService hanging(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), service,
                                      RecordedService::silence);
        Desk desk;
        desk.program.environment.insert(u"XDG_CURRENT_DESKTOP"_s, desktop);
        desk.addApp(storedControlAltK);
        desk.open();
        QTRY_VERIFY(!hanging.calls(firstQuestion).isEmpty());
        QVERIFY(!desk.warnsInRow());
        desk.verifyThatKeysRunTheApp(controlAltK);
    }

    void warnsWithinASecondOfAChangeOfTheDesktopsSettings_data()
    {
        QTest::addColumn<QString>("desktop");
        QTest::addColumn<QString>("user");
        QTest::addColumn<QStringList>("take");
        QTest::addColumn<QStringList>("free");
        const auto addSchema = [](const char *row, const QString &desktop, const QString &schema,
                                  const QString &key, const QString &taken, const QString &none) {
            QTest::newRow(row) << desktop << QString::fromLatin1(row) + u" (Show desktop)"_s
                               << QStringList{u"gsettings"_s, u"set"_s, schema, key, taken}
                               << QStringList{u"gsettings"_s, u"set"_s, schema, key, none};
        };
        addSchema("GNOME", u"ubuntu:GNOME"_s, u"org.gnome.desktop.wm.keybindings"_s,
                  u"show-desktop"_s, u"['<Control><Alt>k']"_s, u"[]"_s);
        addSchema("Budgie", u"Budgie:GNOME"_s, u"org.gnome.desktop.wm.keybindings"_s,
                  u"show-desktop"_s, u"['<Control><Alt>k']"_s, u"[]"_s);
        addSchema("Cinnamon", u"X-Cinnamon"_s, u"org.cinnamon.desktop.keybindings.wm"_s,
                  u"show-desktop"_s, u"['<Control><Alt>k']"_s, u"[]"_s);
        addSchema("MATE", u"MATE"_s, u"org.mate.Marco.global-keybindings"_s, u"show-desktop"_s,
                  u"'<Control><Alt>k'"_s, u"'disabled'"_s);
        // The user's own ones are in force as soon as that is said.
        const QString xfconf = u"xfconf-query -c xfce4-keyboard-shortcuts -p /commands/custom/"_s;
        QTest::newRow("Xfce") << u"XFCE"_s << u"Xfce (x)"_s
                              << QStringList{u"sh"_s, u"-c"_s,
                                             xfconf + u"override -n -t bool -s true && "_s + xfconf
                                                 + u"'<Primary><Alt>k' -n -t string -s x"_s}
                              << QStringList{u"sh"_s, u"-c"_s, xfconf + u"'<Primary><Alt>k' -r"_s};
        const QString folder = u"mkdir -p $XDG_CONFIG_HOME/lxqt; "_s;
        const QString file = u"$XDG_CONFIG_HOME/lxqt/globalkeyshortcuts.conf"_s;
        const auto write = [&](const QString &enabled) {
            const QString text =
                u"printf '[Control%%2BAlt%%2BK.1]\\nEnabled="_s + enabled + u"\\nExec=x\\n'>"_s;
            return QStringList{u"sh"_s, u"-c"_s, folder + text + file};
        };
        QTest::newRow("LXQt") << u"LXQt"_s << u"LXQt (x)"_s << write(u"true"_s)
                              << write(u"false"_s);
    }
    void warnsWithinASecondOfAChangeOfTheDesktopsSettings()
    {
        QFETCH(const QString, desktop);
        QFETCH(const QString, user);
        QFETCH(const QStringList, take);
        QFETCH(const QStringList, free);
        Desk desk;
        desk.program.environment.insert(u"XDG_CURRENT_DESKTOP"_s, desktop);
        desk.addApp(storedControlAltK);
        desk.open();
        QVERIFY(!desk.warnsInRow(user));
        desk.change(take);
        QTRY_VERIFY_WITH_TIMEOUT(desk.warnsInRow(user), aSecond);
        desk.change(free);
        QTRY_VERIFY_WITH_TIMEOUT(!desk.warnsInRow(user), aSecond);
        desk.verifyThatKeysRunTheApp(controlAltK);
    }

    void leadsFromTheEditorToTheDesktopsKeyboardSettings()
    {
        const QStringList set{u"gsettings"_s, u"set"_s, u"org.gnome.desktop.wm.keybindings"_s,
                              u"show-desktop"_s};
        const RecordedApp page;
        Desk desk;
        desk.program.environment.insert(u"XDG_CURRENT_DESKTOP"_s, u"GNOME"_s);
        desk.install(u"gnome-control-center"_s, page.command());
        desk.addApp(storedControlAltK);
        desk.open();
        desk.press(desk.row(u"App"_s), u"Edit"_s);
        const Accessible sheet = desk.sheet(u"Edit shortcut"_s);
        QVERIFY(!desk.shows(button, keyboardSettings));
        desk.change(set + QStringList{u"['<Control><Alt>k']"_s});
        QTRY_VERIFY(desk.shows(button, keyboardSettings));
        // From Cancel, which comes next.
        QVERIFY(sheet.find(button, u"Cancel"_s).focus());
        desk.keyboard.type({KEY_LEFTSHIFT, KEY_TAB});
        QTRY_VERIFY(sheet.find(button, keyboardSettings).is(State::focused));
        desk.keyboard.type({KEY_SPACE});
        QCOMPARE(text(page.onlyStart()[u"arguments"]), "[\"keyboard\"]");
        desk.change(set + QStringList{u"[]"_s});
        QTRY_VERIFY(!desk.shows(button, keyboardSettings));
        QTRY_VERIFY(sheet.find(button, u"Save"_s).is(State::focused));
    }

    void takesTheKeysThatTheDesktopFreesWithinASecond()
    {
        const QStringList set{u"gsettings"_s, u"set"_s, u"org.gnome.desktop.wm.keybindings"_s,
                              u"show-desktop"_s};
        auto windowManager = std::make_unique<Keyboard>();
        windowManager->grab(KEY_K, controlAlt);
        Desk desk;
        desk.program.environment.insert(u"XDG_CURRENT_DESKTOP"_s, u"GNOME"_s);
        desk.change(set + QStringList{u"['<Control><Alt>k']"_s});
        desk.addApp(storedControlAltK);
        desk.open();
        QTRY_VERIFY(desk.warnsInRow(u"GNOME (Show desktop)"_s));
        desk.change(set + QStringList{u"[]"_s});
        windowManager.reset();
        QTRY_VERIFY_WITH_TIMEOUT(!desk.warnsInRow(u"GNOME (Show desktop)"_s), aSecond);
        QTRY_VERIFY_WITH_TIMEOUT(!desk.warnsInRow(), aSecond);
        desk.verifyThatKeysRunTheApp(controlAltK);
    }

    void findsTheDesktopsKeysInTheLayoutThatIsInUse()
    {
        Desk desk;
        const auto restoreLayout = qScopeGuard([&desk] { desk.change({u"setxkbmap"_s, u"us"_s}); });
        desk.program.environment.insert(u"XDG_CURRENT_DESKTOP"_s, u"GNOME"_s);
        desk.change({u"gsettings"_s, u"set"_s, u"org.gnome.desktop.wm.keybindings"_s,
                     u"show-desktop"_s, u"['<Control><Alt>z']"_s});
        desk.addApp(storedControlAltY);
        desk.open();
        const auto warns = [&desk](const QString &keys) {
            return !desk.all.findAll(label, warning(keys, u"GNOME (Show desktop)"_s)).isEmpty();
        };
        QVERIFY(!warns(u"Ctrl+Alt+Y"_s));
        desk.change({u"setxkbmap"_s, u"us,de"_s});
        desk.keyboard.setGroup(1);
        // The key that says Y on a US keyboard says Z on a German one.
        QTRY_VERIFY_WITH_TIMEOUT(warns(u"Ctrl+Alt+Z"_s), aSecond);
        desk.keyboard.setGroup(0);
        QTRY_VERIFY_WITH_TIMEOUT(!warns(u"Ctrl+Alt+Z"_s), aSecond);
        QVERIFY(!warns(u"Ctrl+Alt+Y"_s));
    }
};

QTEST_GUILESS_MAIN(SystemShortcutsTest)
#include "SystemShortcutsTest.moc"
