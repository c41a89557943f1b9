// The settings below the list: login item, notifications, and their pages of the desktop.

#include "support/SettingsWindow.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
const QString launch = u"Launch at login"_s;
const QString notify = u"Show a small notification when a shortcut runs"_s;
const QString approval = u"macOS needs your approval in Login Items."_s;
const QString openItems = u"Open Login Items"_s;
const QString notifyKey = u"showRunNotification"_s;
const QString nowhere = u"This desktop does not let apps register key combinations. Bind its own "
                        "keys to an entry instead."_s;
const QString inSettings = u"Key combinations are kept in this desktop's own keyboard settings."_s;
const QString front = u"Bring open apps to the front"_s;
const QString signs = u"Show keys with Mac signs (⌃⌥⇧⌘)"_s;

/// The window over a desktop with that login item.
struct Footer : SettingsWindow {
    explicit Footer(LoginItemStatus status) { set(status); }

    /// As in the desktop's own settings; the view is told by being shown again.
    void set(LoginItemStatus status)
    {
        platform.loginItem.current = status;
        view->hide();
        view->show();
    }

    /// By the keyboard, since the box may be wider than what a click on it changes.
    void flip(const QString &name)
    {
        QTest::keyClick(checkBox(name), Qt::Key_Space);
        settle();
    }
};
} // namespace

class SettingsFooterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mirrorsTheLoginItem_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<bool>("isOn");
        QTest::addColumn<bool>("needsApproval");
        QTest::newRow("not registered") << 0 << false << false;
        QTest::newRow("enabled") << 1 << true << false;
        QTest::newRow("waiting for approval") << 2 << false << true;
        QTest::newRow("without its program") << 3 << false << false;
    }
    void mirrorsTheLoginItem()
    {
        QFETCH(const int, status);
        QFETCH(const bool, isOn);
        QFETCH(const bool, needsApproval);
        Footer window{LoginItemStatus(status)};
        QCOMPARE(window.isChecked(launch), isOn);
        QCOMPARE(window.shows(approval), needsApproval);
        QCOMPARE(seenButton(*window.view, openItems) != nullptr, needsApproval);
    }

    void asksForTheLoginItemOnceEachTimeItIsShown()
    {
        Footer window(LoginItemStatus::notRegistered);
        settle();
        window.view->hide();
        window.platform.loginItem.reads = 0;
        window.store->announceChange();
        settle();
        QCOMPARE(window.platform.loginItem.reads, 0);
        window.view->show();
        QCOMPARE(window.platform.loginItem.reads, 1);
    }

    void seesWhatTheUserHasDoneInTheDesktopsSettings()
    {
        Footer window(LoginItemStatus::requiresApproval);
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        window.platform.loginItem.current = LoginItemStatus::enabled;
        window.view->activateWindow();
        QTRY_VERIFY(window.isChecked(launch));
        QVERIFY(!window.shows(approval));
    }

    void registersAndUnregistersTheLoginItem()
    {
        Footer window(LoginItemStatus::notRegistered);
        window.flip(launch);
        QCOMPARE(window.platform.loginItem.current, LoginItemStatus::enabled);
        QVERIFY(window.isChecked(launch));
        window.flip(launch);
        QCOMPARE(window.platform.loginItem.current, LoginItemStatus::notRegistered);
        QVERIFY(!window.isChecked(launch));
    }

    void staysOffWhileTheUserHasToApprove()
    {
        Footer window(LoginItemStatus::notRegistered);
        window.platform.loginItem.whenRegistered = LoginItemStatus::requiresApproval;
        window.flip(launch);
        QVERIFY(!window.isChecked(launch));
        QVERIFY(window.shows(approval));
    }

    void springsBackWhenTheLoginItemCannotBeChanged_data()
    {
        QTest::addColumn<int>("status");
        QTest::newRow("on") << 0;
        QTest::newRow("off") << 1;
    }
    void springsBackWhenTheLoginItemCannotBeChanged()
    {
        QFETCH(const int, status);
        Footer window{LoginItemStatus(status)};
        window.platform.loginItem.error = Error{u"read-only"_s};
        const bool before = window.isChecked(launch);
        window.flip(launch);
        QWidget &alert = SettingsWindow::sheet(u"Something went wrong"_s);
        QVERIFY(seenText(alert, u"Launch at login could not be changed."_s));
        QCOMPARE(window.store->error()->details, u"read-only"_s);
        QCOMPARE(window.isChecked(launch), before);
    }

    void opensThePagesOfTheDesktop()
    {
        Footer window(LoginItemStatus::requiresApproval);
        window.click(openItems);
        window.click(u"Open Notification Settings"_s);
        QCOMPARE(window.platform.systemSettings.opened,
                 QStringList({u"login items"_s, u"notifications"_s}));
    }

    void writesTheApprovalLineSmallAndInOrange()
    {
        Footer window(LoginItemStatus::requiresApproval);
        const QWidget *const line = seenText(*window.view, approval);
        QCOMPARE(line->font(), font(TextStyle::caption));
        QCOMPARE(line->palette().color(QPalette::WindowText),
                 color(TextColor::warning, window.view->palette()));
        QCOMPARE(seenButton(*window.view, openItems)->font(), font(TextStyle::caption));
    }

    void showsKeysWithSignsOnlyIfTheUserWantsThem()
    {
        const LaunchEntry news = SettingsWindow::website(u"News"_s);
        SettingsWindow window({news});
        window.setKeys(news, {40, 256});
        window.platform.wording.makeUp();
        settle();
        QWidget *const badge = seenText(*window.view, u"40 and 256"_s);
        QVERIFY(badge);
        QCOMPARE(badge->accessibleDescription(), QString());

        QSignalSpy announcements(&*window.store, &ShortcutStore::willChange);
        QTest::keyClick(window.checkBox(signs), Qt::Key_Space);
        settle();
        QCOMPARE(window.platform.userDefaults.values.value(u"showMacKeySigns"_s), QVariant(true));
        QCOMPARE(announcements.size(), 1);
        QVERIFY(window.shows(u"⌘K"_s));
        QCOMPARE(badge->accessibleDescription(), u"40 and 256"_s);

        QTest::keyClick(window.checkBox(signs), Qt::Key_Space);
        settle();
        QVERIFY(window.shows(u"40 and 256"_s));
        QCOMPARE(badge->accessibleDescription(), QString());
    }

    void showsWhetherRunsAreNotified_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<bool>("isOn");
        QTest::newRow("by default") << QVariant() << true;
        QTest::newRow("switched on") << QVariant(true) << true;
        QTest::newRow("switched off") << QVariant(false) << false;
    }
    void showsWhetherRunsAreNotified()
    {
        QFETCH(const QVariant, stored);
        QFETCH(const bool, isOn);
        SettingsWindow window({}, {{notifyKey, stored}});
        QCOMPARE(window.isChecked(notify), isOn);
    }

    void storesAtOnceWhetherRunsAreNotified()
    {
        Footer window(LoginItemStatus::notRegistered);
        window.flip(notify);
        QCOMPARE(window.platform.userDefaults.values.value(notifyKey), QVariant(false));
        QVERIFY(!ShortcutStore::showRunNotification(window.platform.userDefaults));
        window.flip(notify);
        QCOMPARE(window.platform.userDefaults.values.value(notifyKey), QVariant(true));
    }

    void letsTheUserKeepOpenAppsWhereTheyAre()
    {
        Footer window(LoginItemStatus::notRegistered);
        QVERIFY(window.isChecked(front));
        window.flip(front);
        QCOMPARE(window.platform.userDefaults.values.value(u"bringToFront"_s), QVariant(false));
        QVERIFY(!ShortcutStore::bringToFront(window.platform.userDefaults));
        window.flip(front);
        QVERIFY(ShortcutStore::bringToFront(window.platform.userDefaults));
    }

    void saysNothingOfOpenAppsWhereTheyCannotCome()
    {
        SettingsWindow window;
        QVERIFY(window.checkBox(front));
        window.platform.workspace.isActivating = false;
        window.store->announceChange();
        settle();
        QVERIFY(!window.checkBox(front));
    }

    void seesWhenAnotherPlaceChangesThat()
    {
        Footer window(LoginItemStatus::notRegistered);
        window.platform.userDefaults.setBoolean(notifyKey, false);
        QTRY_VERIFY(!window.isChecked(notify));
    }

    void tellsHowKeysAreRegisteredIfThatIsUnusual_data()
    {
        QTest::addColumn<int>("reach");
        QTest::addColumn<QString>("line");
        QTest::newRow("nowhere") << int(HotkeyReach::nowhere) << nowhere;
        QTest::newRow("in the desktop's settings")
            << int(HotkeyReach::inDesktopSettings) << inSettings;
        QTest::newRow("registered") << int(HotkeyReach::registered) << QString();
        QTest::newRow("not yet known") << int(HotkeyReach::unknown) << QString();
    }
    void tellsHowKeysAreRegisteredIfThatIsUnusual()
    {
        QFETCH(const int, reach);
        QFETCH(const QString, line);
        Footer window(LoginItemStatus::notRegistered);
        window.platform.hotkeys.setReach(HotkeyReach(reach));
        settle();
        QCOMPARE(window.shows(nowhere), line == nowhere);
        QCOMPARE(window.shows(inSettings), line == inSettings);
    }
};

QTEST_MAIN(SettingsFooterTest)
#include "SettingsFooterTest.moc"
