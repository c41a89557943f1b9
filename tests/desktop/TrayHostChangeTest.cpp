// The tray icon where panels come late, go, return and are replaced by others.

#include "support/Keyboard.h"
#include "support/Panel.h"
#include "support/PrivateBus.h"
#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"
#include "support/TrayUser.h"

#include <QTest>
#include <optional>

using namespace Qt::StringLiterals;

namespace
{
constexpr StoredKeys controlOptionK{40, 0x1800};
constexpr quint16 controlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;

/// The running program with one application, and a user.
struct Desk {
    Desk()
    {
        program.addApp(app.desktopFile(), controlOptionK);
        program.start();
    }

    RecordedApp app;
    ProgramUnderTest program;
    TrayUser user;
};
} // namespace

class TrayHostChangeTest : public QObject
{
    Q_OBJECT

private:
    /// Of the screen without its right end, where notifications are shown.
    QImage picture() const { return m_screen.picture(m_screen.geometry().adjusted(0, 0, -500, 0)); }

    Screen m_screen;
    QImage m_emptyScreen = picture();

private Q_SLOTS:
    void worksWithoutAnyPanel()
    {
        Desk desk;
        QTRY_VERIFY(desk.user.keyboard.isGrabbed(KEY_K, controlAlt));
        desk.user.keyboard.type({KEY_LEFTCTRL, KEY_LEFTALT, KEY_K});
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QCOMPARE(desk.program.stop(), 0);
        QCOMPARE(desk.program.errorOutput(), QByteArray());
    }

    void comesBackWithAPanel_data()
    {
        QTest::addColumn<Panel::Kind>("former");
        QTest::addColumn<Panel::Kind>("next");
        QTest::newRow("xfce4-panel that has crashed") << Panel::Kind::Xfce << Panel::Kind::Xfce;
        QTest::newRow("lxqt-panel that has crashed") << Panel::Kind::Lxqt << Panel::Kind::Lxqt;
        QTest::newRow("trayer that has crashed") << Panel::Kind::Trayer << Panel::Kind::Trayer;
        QTest::newRow("tint2 that has crashed") << Panel::Kind::Tint2 << Panel::Kind::Tint2;
        QTest::newRow("lxqt-panel in place of xfce4-panel")
            << Panel::Kind::Xfce << Panel::Kind::Lxqt;
        QTest::newRow("tint2 in place of trayer") << Panel::Kind::Trayer << Panel::Kind::Tint2;
        QTest::newRow("trayer in place of lxqt-panel") << Panel::Kind::Lxqt << Panel::Kind::Trayer;
        QTest::newRow("xfce4-panel in place of trayer") << Panel::Kind::Trayer << Panel::Kind::Xfce;
    }
    void comesBackWithAPanel()
    {
        QFETCH(const Panel::Kind, former);
        QFETCH(const Panel::Kind, next);
        std::optional<Panel> panel(former);
        Desk desk;
        desk.user.awaitIcon();
        panel.reset();
        // No icon of X11 stays behind without its panel.
        const auto isEmpty = [this] { return picture() == m_emptyScreen; };
        QVERIFY(QTest::qWaitFor(isEmpty));
        panel.emplace(next);
        desk.user.openMenu();
        desk.user.clickFirstItem();
        QTRY_COMPARE(desk.app.starts().size(), 1);
    }

    void appearsInAPanelThatComesLate()
    {
        // One program has a desktop that will show StatusNotifierItems; nobody else is on the
        // session bus of the other.
        Desk desk;
        const PrivateBus bus;
        const RecordedApp otherApp;
        ProgramUnderTest other;
        other.environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.address());
        other.addApp(otherApp.desktopFile(), {38, 0x1800});
        other.start();
        QTRY_VERIFY(desk.user.keyboard.isGrabbed(KEY_K, controlAlt));
        QTRY_VERIFY(desk.user.keyboard.isGrabbed(KEY_J, controlAlt));
        // Both have looked for a tray when their keys work.
        desk.user.keyboard.type({KEY_LEFTCTRL, KEY_LEFTALT, KEY_K});
        desk.user.keyboard.type({KEY_LEFTCTRL, KEY_LEFTALT, KEY_J});
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QTRY_COMPARE(otherApp.starts().size(), 1);

        {
            const Panel panel(Panel::Kind::Lxqt);
            desk.user.openMenu();
            desk.user.clickFirstItem();
            QTRY_COMPARE(desk.app.starts().size(), 2);
            // Or it would move into the next panel.
            QCOMPARE(desk.program.end(), 0);
        }
        const Panel panel(Panel::Kind::Trayer);
        desk.user.openMenu();
        desk.user.clickFirstItem();
        QTRY_COMPARE(otherApp.starts().size(), 2);
    }
};

QTEST_GUILESS_MAIN(TrayHostChangeTest)
#include "TrayHostChangeTest.moc"
