#include "platform/linux/base/Session.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
QProcessEnvironment environment(const QStringList &assignments)
{
    QProcessEnvironment made;
    for (const QString &assignment : assignments)
        made.insert(assignment.section(u'=', 0, 0), assignment.section(u'=', 1));
    return made;
}
} // namespace

class SessionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isToldByTheSessionsVariables_data()
    {
        QTest::addColumn<QStringList>("variables");
        QTest::addColumn<SessionType>("type");
        const auto add = [](const char *row, const QStringList &variables, SessionType type) {
            QTest::newRow(row) << variables << type;
        };
        add("an X11 session", {u"DISPLAY=:0"_s, u"XDG_SESSION_TYPE=x11"_s}, SessionType::x11);
        add("an X server without a session", {u"DISPLAY=:0"_s}, SessionType::x11);
        add("a Wayland session with its X server",
            {u"DISPLAY=:0"_s, u"WAYLAND_DISPLAY=wayland-0"_s, u"XDG_SESSION_TYPE=wayland"_s},
            SessionType::wayland);
        add("a Wayland session that only its type tells",
            {u"DISPLAY=:0"_s, u"XDG_SESSION_TYPE=wayland"_s}, SessionType::wayland);
        add("a compositor without a session", {u"WAYLAND_DISPLAY=wayland-0"_s},
            SessionType::wayland);
        add("a text console", {u"XDG_SESSION_TYPE=tty"_s}, SessionType::none);
        add("empty variables", {u"DISPLAY="_s, u"WAYLAND_DISPLAY="_s}, SessionType::none);
    }
    void isToldByTheSessionsVariables()
    {
        QFETCH(const QStringList, variables);
        QTEST(sessionType(environment(variables)), "type");
    }

    void knowsTheDesktop_data()
    {
        QTest::addColumn<QString>("names");
        QTest::addColumn<std::optional<Desktop>>("desktop");
        QTest::addColumn<std::optional<QString>>("desktopName");
        const auto add = [](const char *row, const QString &names, std::optional<Desktop> desktop,
                            const std::optional<QString> &desktopName) {
            QTest::newRow(row) << names << desktop << desktopName;
        };
        add("GNOME", u"GNOME"_s, Desktop::gnome, u"GNOME"_s);
        add("Ubuntu's GNOME", u"ubuntu:GNOME"_s, Desktop::gnome, u"GNOME"_s);
        add("a relative that calls itself so last", u"GNOME-Flashback:GNOME"_s, Desktop::gnome,
            u"GNOME"_s);
        add("Unity, which is one of GNOME's", u"Unity:Unity7:ubuntu"_s, Desktop::gnome, u"Unity"_s);
        add("Pantheon", u"Pantheon"_s, Desktop::gnome, u"Pantheon"_s);
        add("Budgie, which is one of GNOME's, too", u"Budgie:GNOME"_s, Desktop::budgie,
            u"Budgie"_s);
        add("Plasma", u"KDE"_s, Desktop::plasma, u"Plasma"_s);
        add("Xfce", u"XFCE"_s, Desktop::xfce, u"Xfce"_s);
        add("Cinnamon", u"X-Cinnamon"_s, Desktop::cinnamon, u"Cinnamon"_s);
        add("MATE", u"MATE"_s, Desktop::mate, u"MATE"_s);
        add("LXQt", u"LXQt"_s, Desktop::lxqt, u"LXQt"_s);
        add("in other letters", u"lxqt"_s, Desktop::lxqt, u"LXQt"_s);
        add("one that we know not", u"sway"_s, std::nullopt, std::nullopt);
        add("one whose name only begins like another's", u"GNOME-Flashback"_s, std::nullopt,
            std::nullopt);
        add("none", u""_s, std::nullopt, std::nullopt);
    }
    void knowsTheDesktop()
    {
        QFETCH(const QString, names);
        QFETCH(const std::optional<Desktop>, desktop);
        QFETCH(const std::optional<QString>, desktopName);
        const auto session = environment({u"XDG_CURRENT_DESKTOP="_s + names});
        QVERIFY(currentDesktop(session) == desktop);
        QCOMPARE(currentDesktopName(session), desktopName);
    }

    void knowsNoDesktopWithoutItsVariable() { QVERIFY(!currentDesktop(environment({}))); }

    void tellsSessionsApart_data()
    {
        QTest::addColumn<QStringList>("variables");
        QTest::addColumn<QByteArrayList>("names");
        const auto add = [](const char *row, const QStringList &variables,
                            const QByteArrayList &names) {
            QTest::newRow(row) << variables << names;
        };
        add("of X11", {u"DISPLAY=:1"_s}, {":1"});
        add("with its screen", {u"DISPLAY=:10.0"_s}, {":10"});
        add("with its transport", {u"DISPLAY=unix:1.0"_s}, {":1"});
        add("on another machine", {u"DISPLAY=10.0.0.1:0.1"_s}, {"10.0.0.1:0"});
        add("on another machine, by SSH", {u"DISPLAY=localhost:10.0"_s}, {"localhost:10"});
        add("of Wayland",
            {u"DISPLAY=:1"_s, u"WAYLAND_DISPLAY=wayland-1"_s, u"XDG_RUNTIME_DIR=/run/user/1"_s},
            {"/run/user/1/wayland-1", ":1"});
        add("of Wayland without X11",
            {u"WAYLAND_DISPLAY=wayland-1"_s, u"XDG_RUNTIME_DIR=/run/user/1"_s},
            {"/run/user/1/wayland-1"});
        add("none", {}, {});
    }
    void tellsSessionsApart()
    {
        QFETCH(const QStringList, variables);
        QTEST(displayNames(environment(variables)), "names");
    }

    void findsTheCompositor_data()
    {
        QTest::addColumn<QStringList>("variables");
        QTest::addColumn<QString>("path");
        QTest::newRow("by name") << QStringList{u"XDG_RUNTIME_DIR=/run/user/1"_s,
                                                u"WAYLAND_DISPLAY=wayland-1"_s}
                                 << u"/run/user/1/wayland-1"_s;
        QTest::newRow("by path") << QStringList{u"XDG_RUNTIME_DIR=/run/user/1"_s,
                                                u"WAYLAND_DISPLAY=/tmp/w"_s}
                                 << u"/tmp/w"_s;
        QTest::newRow("by default")
            << QStringList{u"XDG_RUNTIME_DIR=/run/user/1"_s} << u"/run/user/1/wayland-0"_s;
    }
    void findsTheCompositor()
    {
        QFETCH(const QStringList, variables);
        QTEST(waylandSocketPath(environment(variables)), "path");
    }

    void findsNobodyWhereNobodyListens()
    {
        const QTemporaryDir folder;
        QVERIFY(!acceptsConnections(folder.filePath(u"wayland-0"_s)));
        QVERIFY(!acceptsConnections(folder.filePath(QString(200, u'x'))));
    }
};

QTEST_APPLESS_MAIN(SessionTest)
#include "SessionTest.moc"
