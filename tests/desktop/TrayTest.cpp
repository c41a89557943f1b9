// The tray icon and its menu on real panels, used with a real mouse and real keys.

#include "support/Panel.h"
#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"
#include "support/TrayUser.h"
#include "support/Windows.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QScopeGuard>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
constexpr StoredKeys controlOptionK{40, 0x1800};
/// Z on a German keyboard.
constexpr StoredKeys controlOptionY{16, 0x1800};

/// An icon that is not dimmed has more, on a panel of any color.
constexpr int clearContrast = 150;

void addPanels()
{
    QTest::addColumn<Panel::Kind>("kind");
    QTest::newRow("on xfce4-panel, which shows the menu itself") << Panel::Kind::Xfce;
    QTest::newRow("on lxqt-panel, which leaves it to the program") << Panel::Kind::Lxqt;
    QTest::newRow("on trayer, which knows icons of X11 only") << Panel::Kind::Trayer;
    QTest::newRow("on tint2, which knows icons of X11 only") << Panel::Kind::Tint2;
}

/// A user before a panel, and the program with one application, not yet started.
struct Desk {
    explicit Desk(Panel::Kind kind)
        : panel(kind)
    {
    }

    Panel panel;
    TrayUser user;
    RecordedApp app;
    ProgramUnderTest program;
};

/// A picture of that part of the screen, once nothing moves there any more.
QImage stillPicture(const Screen &screen, const QRect &part)
{
    QImage picture;
    int repetitions = 0;
    const auto isStill = [&] {
        const QImage former = std::exchange(picture, screen.picture(part));
        repetitions = picture == former ? repetitions + 1 : 0;
        return repetitions == 20;
    };
    [&] { QVERIFY(QTest::qWaitFor(isStill)); }();
    return picture;
}

const QList<int> controlComma{KEY_LEFTCTRL, KEY_COMMA};
const QList<int> controlQ{KEY_LEFTCTRL, KEY_Q};
} // namespace

class TrayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasAnIconThatIsClearlyToBeSeen_data() { addPanels(); }
    void hasAnIconThatIsClearlyToBeSeen()
    {
        QFETCH(const Panel::Kind, kind);
        Desk desk(kind);
        desk.program.start();
        const QRect icon = desk.user.awaitIcon();
        QVERIFY(QTest::qWaitFor(
            [&] { return contrast(desk.user.screen.picture(icon)) > clearContrast; }));
    }

    void runsTheEntryThatIsChosen_data() { addPanels(); }
    void runsTheEntryThatIsChosen()
    {
        QFETCH(const Panel::Kind, kind);
        Desk desk(kind);
        desk.program.addApp(desk.app.desktopFile(), controlOptionK);
        desk.program.start();
        desk.user.openMenu();
        desk.user.clickFirstItem();
        QTRY_COMPARE(desk.app.starts().size(), 1);
    }

    void opensItsMenuAfterARightClickToo_data() { addPanels(); }
    void opensItsMenuAfterARightClickToo()
    {
        QFETCH(const Panel::Kind, kind);
        Desk desk(kind);
        desk.program.addApp(desk.app.desktopFile(), controlOptionK);
        desk.program.start();
        // Once before: a panel that has not got the menu yet shows one of its own.
        desk.user.openMenu();
        // A menu shows a moment before it has the keyboard.
        const auto closesSoon = [&desk] {
            desk.user.keyboard.type({KEY_ESC});
            return QTest::qWaitFor([&desk] { return !desk.user.menu(); }, 500);
        };
        QVERIFY(QTest::qWaitFor(closesSoon));
        desk.user.openMenu(Qt::RightButton);
        desk.user.clickFirstItem();
        QTRY_COMPARE(desk.app.starts().size(), 1);
    }

    void quitsFromItsMenu_data() { addPanels(); }
    void quitsFromItsMenu()
    {
        QFETCH(const Panel::Kind, kind);
        Desk desk(kind);
        desk.program.start();
        desk.user.openMenu();
        desk.user.clickLastItem();
        QCOMPARE(desk.program.exitStatus(), 0);
        QTRY_VERIFY(!desk.user.icon());
    }

    void doesNotRunADisabledEntry_data() { addPanels(); }
    void doesNotRunADisabledEntry()
    {
        QFETCH(const Panel::Kind, kind);
        Desk desk(kind);
        const RecordedApp disabled;
        desk.program.entriesAreEnabled = false;
        desk.program.addEntry("app", disabled.desktopFile());
        desk.program.entriesAreEnabled = true;
        desk.program.addApp(desk.app.desktopFile(), controlOptionK);
        desk.program.start();
        desk.user.openMenu();
        // The menu stays open.
        desk.user.clickFirstItem();
        desk.user.clickSecondItem();
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QCOMPARE(disabled.starts().size(), 0);
    }

    void dimsTheIconAndChecksTheItemWhenPaused_data() { addPanels(); }
    void dimsTheIconAndChecksTheItemWhenPaused()
    {
        QFETCH(const Panel::Kind, kind);
        Desk desk(kind);
        TrayUser &user = desk.user;
        desk.program.start();
        const QRect icon = user.awaitIcon();
        const QImage formerMenu = user.screen.picture(user.openMenu());
        // Up from the last item.
        for (int i = 0; i < 3; ++i)
            user.keyboard.type({KEY_UP});
        user.keyboard.type({KEY_ENTER});
        QTRY_VERIFY(!user.menu());
        const auto isDimmed = [&] {
            const int now = contrast(user.screen.picture(icon));
            return now > 30 && now < clearContrast;
        };
        QVERIFY(QTest::qWaitFor(isDimmed));
        const QImage menu = user.screen.picture(user.openMenu());
        QCOMPARE(menu.size(), formerMenu.size());
        QVERIFY(menu != formerMenu);
    }

    void namesKeysInItsOpenMenuAsTheLayoutInUseDoes_data()
    {
        QTest::addColumn<Panel::Kind>("kind");
        QTest::newRow("for a panel that leaves the menu to the program") << Panel::Kind::Lxqt;
        QTest::newRow("for a panel that knows icons of X11 only") << Panel::Kind::Trayer;
    }
    void namesKeysInItsOpenMenuAsTheLayoutInUseDoes()
    {
        QFETCH(const Panel::Kind, kind);
        Desk desk(kind);
        const auto restoreLayout =
            qScopeGuard([] { QProcess::execute(u"setxkbmap"_s, {u"us"_s}); });
        QCOMPARE(QProcess::execute(u"setxkbmap"_s, {u"us,de"_s}), 0);
        desk.program.addApp(desk.app.desktopFile(), controlOptionY);
        desk.program.start();
        const QRect menu = desk.user.openMenu();
        const QImage withY = stillPicture(desk.user.screen, menu);
        desk.user.keyboard.setGroup(1);
        QTRY_VERIFY(desk.user.screen.picture(menu) != withY);
        desk.user.keyboard.setGroup(0);
        QTRY_COMPARE(desk.user.screen.picture(menu), withY);
    }

    void opensTheSettingsWithControlCommaInItsMenu()
    {
        Desk desk(Panel::Kind::Trayer);
        desk.program.start();
        desk.user.openMenu();
        desk.user.keyboard.type(controlComma);
        QTRY_VERIFY(windowOnScreen(u"Corvane"_s));
    }

    void quitsWithControlQInItsMenu()
    {
        Desk desk(Panel::Kind::Trayer);
        desk.program.start();
        desk.user.openMenu();
        desk.user.keyboard.type(controlQ);
        QCOMPARE(desk.program.exitStatus(), 0);
    }

    void leavesTheKeysOfItsMenuAloneWhileThatIsClosed()
    {
        Desk desk(Panel::Kind::Trayer);
        desk.program.start();
        desk.user.openMenu();
        desk.user.keyboard.type({KEY_ESC});
        QTRY_VERIFY(!desk.user.menu());
        // The menu gives the keyboard back only when it has gone.
        QTRY_VERIFY(Keyboard().grabAll());
        desk.user.keyboard.type(controlComma);
        desk.user.keyboard.type(controlQ);
        desk.user.openMenu();
        QVERIFY(!windowOnScreen(u"Corvane"_s));
    }

    void opensTheMenuOf1000EntriesAtOnce()
    {
        Desk desk(Panel::Kind::Trayer);
        for (int i = 0; i < 1000; ++i)
            desk.program.addApp(desk.app.desktopFile(), controlOptionK);
        desk.program.start();
        desk.user.awaitIcon();
        QElapsedTimer clock;
        clock.start();
        desk.user.openMenu();
        QVERIFY(clock.elapsed() < 300);
    }
};

QTEST_GUILESS_MAIN(TrayTest)
#include "TrayTest.moc"
