// The program is dark where the desktop is, as the desktop's portal, its settings or its files
// tell.

#include "support/Panel.h"
#include "support/PrivateBus.h"
#include "support/RecordedService.h"
#include "support/Screen.h"
#include "support/SettingsDesk.h"
#include "support/SettingsManager.h"
#include "support/TrayUser.h"
#include "support/Windows.h"

#include <QDBusVariant>
#include <QFile>
#include <QSaveFile>
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

/// Replaces a file at once, as desktops do with their settings.
void replace(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
    QVERIFY(file.commit());
}

QByteArray plasmaColors(const QByteArray &window, const QByteArray &text)
{
    return "[General]\nColorScheme=Own\n"
           "[Colors:Window]\nBackgroundNormal="
        + window + "\nForegroundNormal=" + text + "\n[Colors:View]\nBackgroundNormal=" + window
        + "\nForegroundNormal=" + text + '\n';
}

QByteArray lxqtColors(const QByteArray &window, const QByteArray &text)
{
    return "[General]\nicon_theme=breeze\n[Palette]\nwindow_color=" + window
        + "\nwindow_text_color=" + text + "\nbase_color=" + window + "\ntext_color=" + text + '\n';
}

/// With an app on Control+Option+K.
struct Desk : SettingsDesk {
    Desk() { addApp(storedControlAltK); }

    /// Adds themes of GTK to the user's.
    void addThemes() const
    {
        addTheme(u"Night"_s, "#202122");
        addTheme(u"Noon-dark"_s, "#f0f1f2");
    }

    void addTheme(const QString &name, const QByteArray &background) const
    {
        write(program.dataHome() + u"/themes/"_s + name + u"/gtk-3.0/gtk.css"_s,
              "@define-color theme_bg_color " + background + ';');
    }

    /// How light a part of the screen is on the whole, up to 255.
    int lightness(const QRect &place) const
    {
        return qGray(screen.picture(place)
                         .scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                         .pixel(0, 0));
    }
    bool isDark(const QRect &place) const { return lightness(place) < 80; }
    bool isLight(const QRect &place) const { return lightness(place) > 200; }

    bool isDark(const QString &title = u"Corvane"_s) const
    {
        const auto window = windowOnScreen(title);
        return window && isDark(geometryOf(*window));
    }
    bool isLight(const QString &title = u"Corvane"_s) const
    {
        const auto window = windowOnScreen(title);
        return window && isLight(geometryOf(*window));
    }

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

    void isDarkWhereTheThemeOfTheDesktopIs()
    {
        Desk desk;
        desk.addThemes();
        SettingsManager manager("Night");
        desk.open();
        QTRY_VERIFY(desk.isDark());
        manager.setTheme("Noon-dark");
        QTRY_VERIFY(desk.isLight());
        manager.setTheme("Night");
        QTRY_VERIFY(desk.isDark());
    }

    void followsTheProgramThatAnnouncesTheTheme()
    {
        Desk desk;
        desk.addThemes();
        desk.open();
        QTRY_VERIFY(desk.isLight());
        {
            const SettingsManager first("Night");
            QTRY_VERIFY(desk.isDark());
            const SettingsManager second("Noon-dark");
            QTRY_VERIFY(desk.isLight());
        }
        const SettingsManager third("Night");
        QTRY_VERIFY(desk.isDark());
    }

    void isLightAgainWithoutATheme()
    {
        Desk desk;
        desk.addThemes();
        {
            const SettingsManager manager("Night");
            desk.open();
            QTRY_VERIFY(desk.isDark());
        }
        QTRY_VERIFY(desk.isLight());
        QCOMPARE(desk.program.stop(), 0);
        QCOMPARE(desk.program.errorOutput(), QByteArray());
    }

    void isDarkWhereTheUserWantsAllProgramsToBe()
    {
        Desk desk;
        SettingsDesk::write(desk.program.configHome() + u"/gtk-3.0/settings.ini"_s,
                            "[Settings]\ngtk-application-prefer-dark-theme=true\n");
        const SettingsManager manager("Adwaita");
        desk.open();
        QTRY_VERIFY(desk.isDark());
    }

    void takesTheWordOfThePortalOverTheTheme()
    {
        const Portal portal(saying(light));
        Desk desk;
        desk.addThemes();
        const SettingsManager manager("Night");
        desk.open();
        QTRY_VERIFY(desk.isLight());
        portal.change(noPreference);
        QTRY_VERIFY(desk.isDark());
    }

    void followsTheColoursInAFile_data()
    {
        QTest::addColumn<QString>("desktop");
        QTest::addColumn<QString>("path");
        QTest::addColumn<QByteArray>("light");
        QTest::addColumn<QByteArray>("dark");
        QTest::newRow("of Plasma")
            << u"KDE"_s << u"/kdeglobals"_s << plasmaColors("239,240,241", "35,38,41")
            << plasmaColors("42,46,50", "252,252,252");
        QTest::newRow("of LXQt") << u"LXQt"_s << u"/lxqt/lxqt.conf"_s
                                 << lxqtColors("#eff0f1", "#232629")
                                 << lxqtColors("#232323", "#e1e6e6");
    }
    void followsTheColoursInAFile()
    {
        QFETCH(const QString, desktop);
        QFETCH(const QString, path);
        QFETCH(const QByteArray, light);
        QFETCH(const QByteArray, dark);
        Desk desk;
        const QString file = desk.program.configHome() + path;
        SettingsDesk::write(file, light);
        desk.program.environment.insert(u"XDG_CURRENT_DESKTOP"_s, desktop);
        desk.program.environment.insert(u"KDE_SESSION_VERSION"_s, u"5"_s);
        desk.open();
        desk.press(u"Add"_s);
        const QString sheet = u"New shortcut"_s;
        desk.sheet(sheet);
        QTRY_VERIFY(desk.isLight() && desk.isLight(sheet));
        replace(file, dark);
        QTRY_VERIFY(desk.isDark() && desk.isDark(sheet));
        // Written in place, by a user with an editor.
        SettingsDesk::write(file, light);
        QTRY_VERIFY(desk.isLight() && desk.isLight(sheet));
        replace(file, dark);
        QTRY_VERIFY(desk.isDark() && desk.isDark(sheet));
    }

    void hasTheDesktopsColoursInTheMenuOfTheTray()
    {
        const Panel panel(Panel::Kind::Trayer);
        TrayUser user;
        Desk desk;
        const QString file = desk.program.configHome() + u"/lxqt/lxqt.conf"_s;
        SettingsDesk::write(file, lxqtColors("#232323", "#e1e6e6"));
        desk.program.environment.insert(u"XDG_CURRENT_DESKTOP"_s, u"LXQt"_s);
        desk.program.start();
        const QRect menu = user.openMenu();
        QTRY_VERIFY(desk.isDark(menu));
        // A change while it is open.
        replace(file, lxqtColors("#eff0f1", "#232629"));
        QTRY_VERIFY(desk.isLight(menu));
        desk.keyboard.type({KEY_ESC});
        QTRY_VERIFY(!user.menu());
        replace(file, lxqtColors("#232323", "#e1e6e6"));
        const QRect again = user.openMenu();
        QTRY_VERIFY(desk.isDark(again));
    }

    void findsTheColoursInAFileThatIsMadeLater()
    {
        Desk desk;
        desk.program.environment.insert(u"XDG_CURRENT_DESKTOP"_s, u"KDE"_s);
        desk.program.environment.insert(u"KDE_SESSION_VERSION"_s, u"5"_s);
        desk.open();
        QTRY_VERIFY(desk.isLight());
        replace(desk.program.configHome() + u"/kdeglobals"_s,
                plasmaColors("42,46,50", "252,252,252"));
        QTRY_VERIFY(desk.isDark());
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
