// How key combinations are registered, by the session's variables.

#include "platform/linux/hotkeys/HotkeyWay.h"

#include <QTest>

using namespace Qt::StringLiterals;

class HotkeyWayTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dependsOnTheSession_data()
    {
        QTest::addColumn<QString>("variables");
        QTest::addColumn<HotkeyWay>("way");
        const auto add = [](const char *name, const QString &variables, HotkeyWay way) {
            QTest::newRow(name) << variables << way;
        };
        add("X11", u"DISPLAY=:0"_s, HotkeyWay::x11);
        add("Plasma on X11", u"DISPLAY=:0 XDG_CURRENT_DESKTOP=KDE"_s, HotkeyWay::x11);
        add("Plasma", u"WAYLAND_DISPLAY=wayland-0 XDG_CURRENT_DESKTOP=KDE"_s, HotkeyWay::plasma);
        add("Plasma beside its X server",
            u"WAYLAND_DISPLAY=wayland-0 DISPLAY=:1 XDG_CURRENT_DESKTOP=KDE"_s, HotkeyWay::plasma);
        add("a desktop based on Plasma", u"WAYLAND_DISPLAY=w XDG_CURRENT_DESKTOP=Other:KDE"_s,
            HotkeyWay::plasma);
        add("sway", u"WAYLAND_DISPLAY=wayland-1 XDG_CURRENT_DESKTOP=sway"_s, HotkeyWay::none);
        add("GNOME", u"WAYLAND_DISPLAY=wayland-0 XDG_CURRENT_DESKTOP=GNOME"_s, HotkeyWay::none);
        add("a nameless Wayland session", u"XDG_SESSION_TYPE=wayland"_s, HotkeyWay::none);
        add("no display", u"XDG_CURRENT_DESKTOP=KDE"_s, HotkeyWay::none);
    }
    void dependsOnTheSession()
    {
        QFETCH(const QString, variables);
        QProcessEnvironment environment;
        for (const QString &variable : variables.split(u' '))
            environment.insert(variable.section(u'=', 0, 0), variable.section(u'=', 1));
        QTEST(chooseHotkeyWay(environment), "way");
    }
};

QTEST_GUILESS_MAIN(HotkeyWayTest)
#include "HotkeyWayTest.moc"
