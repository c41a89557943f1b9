// The program is dark where the desktop is, as the desktop's portal tells it.

#include "support/PrivateBus.h"
#include "support/RecordedService.h"
#include "support/Screen.h"
#include "support/SettingsDesk.h"
#include "support/Windows.h"

#include <QDBusVariant>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;
using Answer = RecordedService::Answer;

namespace
{
const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString group = u"org.freedesktop.appearance"_s;
const QString key = u"color-scheme"_s;

constexpr uint noPreference = 0;
constexpr uint dark = 1;
constexpr uint light = 2;

QVariant boxed(const QVariant &value)
{
    return QVariant::fromValue(QDBusVariant(value));
}

Answer saying(const QVariant &value)
{
    return RecordedService::reply({boxed(boxed(value))});
}

Answer failing()
{
    return [](const QDBusMessage &call, const QDBusConnection &connection) {
        return connection.send(call.createErrorReply(u"org.freedesktop.portal.Error.NotFound"_s,
                                                     u"Requested setting not found"_s));
    };
}

struct Portal : RecordedService {
    explicit Portal(Answer answer)
        : RecordedService(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), service,
                          std::move(answer))
    {
    }

    void change(const QVariant &value) const
    {
        emitSignal(u"/org/freedesktop/portal/desktop"_s, u"org.freedesktop.portal.Settings"_s,
                   u"SettingChanged"_s, {group, key, boxed(value)});
    }
};

/// With an app on Control+Option+K.
struct Desk : SettingsDesk {
    Desk() { addApp(storedControlAltK); }

    /// How light a window is on the whole, up to 255.
    int lightness(const QString &title = u"Corvane"_s) const
    {
        const auto window = windowOnScreen(title);
        if (!window)
            return -1;
        return qGray(screen.picture(geometryOf(*window))
                         .scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                         .pixel(0, 0));
    }
    bool isDark(const QString &title = u"Corvane"_s) const
    {
        const int found = lightness(title);
        return found >= 0 && found < 80;
    }
    bool isLight(const QString &title = u"Corvane"_s) const { return lightness(title) > 200; }

    Screen screen;
};
} // namespace

Q_DECLARE_METATYPE(Answer)

class AppearanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isDarkWhereTheDesktopIs_data()
    {
        QTest::addColumn<Answer>("answer");
        QTest::newRow("as portals say it") << saying(dark);
        QTest::newRow("said with less wrapping") << RecordedService::reply({boxed(dark)});
    }
    void isDarkWhereTheDesktopIs()
    {
        QFETCH(const Answer, answer);
        const Portal portal(answer);
        Desk desk;
        desk.open();
        QTRY_VERIFY(desk.isDark());
        QCOMPARE(portal.calls(u"Read"_s),
                 QStringList(u"/org/freedesktop/portal/desktop | "_s + group + u" | "_s + key));
    }

    void followsTheDesktopWithAllThatIsOpen()
    {
        const Portal portal(saying(noPreference));
        Desk desk;
        desk.open();
        desk.press(u"Add"_s);
        const QString sheet = u"New shortcut"_s;
        desk.sheet(sheet);
        QTRY_VERIFY(desk.isLight() && desk.isLight(sheet));
        portal.change(dark);
        QTRY_VERIFY(desk.isDark() && desk.isDark(sheet));
        portal.change(light);
        QTRY_VERIFY(desk.isLight() && desk.isLight(sheet));
        portal.change(dark);
        QTRY_VERIFY(desk.isDark() && desk.isDark(sheet));
    }

    void staysLightAndUsable_data()
    {
        QTest::addColumn<Answer>("answer");
        QTest::newRow("where the desktop is light") << saying(light);
        QTest::newRow("where the desktop does not care") << saying(noPreference);
        QTest::newRow("where it says what nobody knows") << saying(7u);
        QTest::newRow("where it answers with a text") << saying(u"1"_s);
        QTest::newRow("where it answers with another kind of number") << saying(1);
        QTest::newRow("where it answers nothing") << RecordedService::reply({});
        QTest::newRow("where it answers without wrapping") << RecordedService::reply({dark});
        QTest::newRow("where it knows no such setting") << failing();
        QTest::newRow("where the portal hangs") << Answer(RecordedService::silence);
        QTest::newRow("where the portal dies") << Answer(RecordedService::death);
    }
    void staysLightAndUsable()
    {
        QFETCH(const Answer, answer);
        const Portal portal(answer);
        Desk desk;
        desk.open();
        QTRY_COMPARE(portal.calls(u"Read"_s).size(), 1);
        desk.verifyThatKeysRunTheApp(controlAltK);
        QTRY_VERIFY(desk.isLight());
        QCOMPARE(desk.program.stop(), 0);
        QCOMPARE(desk.program.errorOutput(), QByteArray());
    }

    void asksEachPortalThatComes()
    {
        Desk desk;
        desk.open();
        QTRY_VERIFY(desk.isLight());
        Portal first(saying(dark));
        QTRY_VERIFY(desk.isDark());
        first.die();
        const Portal second(saying(light));
        QTRY_VERIFY(desk.isLight());
        second.change(dark);
        QTRY_VERIFY(desk.isDark());
    }

    void takesAChangeOfMindOverAnAnswerThatIsLate()
    {
        Desk desk;
        Portal portal(RecordedService::silence);
        desk.open();
        QTRY_COMPARE(portal.calls(u"Read"_s).size(), 1);
        portal.change(dark);
        QTRY_VERIFY(desk.isDark());
        // The bus answers in its place now.
        portal.die();
        desk.verifyThatKeysRunTheApp(controlAltK);
        QVERIFY(desk.isDark());
    }

    void takesNoticeOfNoOtherSetting()
    {
        const Portal portal(saying(noPreference));
        Desk desk;
        desk.open();
        QTRY_COMPARE(portal.calls(u"Read"_s).size(), 1);
        portal.emitSignal(u"/org/freedesktop/portal/desktop"_s,
                          u"org.freedesktop.portal.Settings"_s, u"SettingChanged"_s,
                          {group, u"contrast"_s, boxed(dark)});
        desk.verifyThatKeysRunTheApp(controlAltK);
        QVERIFY(desk.isLight());
    }

    void startsNoPortal()
    {
        const QTemporaryDir folder;
        const QString sign = folder.filePath(u"started"_s);
        const PrivateBus bus(service, u"/usr/bin/touch "_s + sign);
        Desk desk;
        desk.program.environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.address());
        desk.program.start();
        desk.awaitHeld(KEY_K);
        desk.verifyThatKeysRunTheApp(controlAltK);
        QVERIFY(!QFile::exists(sign));
    }

    void leavesTheDesktopsOwnColoursAlone()
    {
        const Portal portal(saying(dark));
        Desk desk;
        desk.program.environment.insert(u"XDG_CURRENT_DESKTOP"_s, u"KDE"_s);
        desk.program.environment.insert(u"KDE_SESSION_VERSION"_s, u"5"_s);
        SettingsDesk::write(desk.program.configHome() + u"/kdeglobals"_s,
                            "[Colors:Window]\nBackgroundNormal=200,255,200\n"
                            "[Colors:View]\nBackgroundNormal=220,255,220\nForegroundNormal=0,0,0\n"
                            "[Colors:Button]\nBackgroundNormal=180,240,180\n");
        desk.open();
        QTRY_COMPARE(portal.calls(u"Read"_s).size(), 1);
        desk.verifyThatKeysRunTheApp(controlAltK);
        QTRY_VERIFY(desk.isLight());
    }
};

QTEST_MAIN(AppearanceTest)
#include "AppearanceTest.moc"
