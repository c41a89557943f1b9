// What the user hears and reads when a run ends: the bell, and the desktop's notifications.

#include "support/BellWatch.h"
#include "support/Keyboard.h"
#include "support/PrivateBus.h"
#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"
#include "support/RecordedService.h"

#include <QFile>
#include <QTest>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr StoredKeys controlOptionJ{38, 0x1800};
constexpr StoredKeys controlOptionK{40, 0x1800};
constexpr quint16 controlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
const QString service = u"org.freedesktop.Notifications"_s;

/// What a notification host answers.
RecordedService::Answer host(const QStringList &capabilities)
{
    return [capabilities](const QDBusMessage &message, const QDBusConnection &connection) {
        if (message.member() == u"GetCapabilities")
            return connection.send(message.createReply(QVariant(capabilities)));
        return connection.send(message.createReply(QVariant(1u)));
    };
}

/// The program on a bus of its own. Control+Option+K is for a test's entry, and J for an app.
struct Desk {
    /// The host, if there is one, is a program that the bus can start.
    explicit Desk(const QString &activatableHost = {})
        : bus(activatableHost.isEmpty() ? QString() : service, activatableHost)
    {
        program.environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.address());
    }

    void start()
    {
        program.addApp(app.desktopFile(), controlOptionJ);
        program.start();
        QTRY_VERIFY(keyboard.isGrabbed(KEY_J, controlAlt));
    }
    void useSoundCardThatWritesTo(const QString &path)
    {
        QFile card(program.home.filePath(u".asoundrc"_s));
        QVERIFY(card.open(QIODevice::WriteOnly | QIODevice::Truncate));
        card.write("pcm.!default { type file, file " + path.toUtf8() + ", slave.pcm null }\n");
    }
    void press(int key) { keyboard.type({KEY_LEFTCTRL, KEY_LEFTALT, key}); }

    PrivateBus bus;
    RecordedApp app{"%U"};
    ProgramUnderTest program;
    Keyboard keyboard;
    BellWatch bell;
};

/// The whole call of Notify for a title and a body.
QString notification(const QString &title, const QString &body)
{
    return u"/org/freedesktop/Notifications | Corvane | 0 | org.corvane.Corvane | %1 | %2 | [] | "
           "{desktop-entry: org.corvane.Corvane, suppress-sound: true} | -1"_s.arg(title, body);
}
} // namespace

class OutcomeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void rings_data()
    {
        QTest::addColumn<QByteArray>("kind");
        QTest::addColumn<QString>("target");
        QTest::addColumn<bool>("hasHandler");
        QTest::addColumn<int>("rings");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("body");
        const auto row = [](const char *name, const QByteArray &kind,
                            const QString &target) -> QTestData & {
            return QTest::newRow(name) << kind << target;
        };
        const QString failed = u"“App” failed"_s;
        row("an app that is not there", "app", u"/nowhere/app.desktop"_s)
            << false << 1 << u"Not found"_s
            << u"The app for “App” was not found. It may have been moved or deleted."_s;
        row("an app that cannot be started", "app", u"/usr"_s)
            << false << 1 << failed
            << u"Could not open the app: “/usr” is not an executable program."_s;
        row("a folder that is not there", "path", u"/nowhere"_s)
            << false << 1 << u"Not found"_s
            << u"The file or folder for “App” was not found. It may have been moved or deleted."_s;
        row("a file that nothing opens", "path", u"/usr/bin/env"_s)
            << false << 1 << failed << u"Your desktop could not open “env”."_s;
        row("no web address", "website", u" HTTPS://example.com "_s)
            << false << 1 << failed
            << u"“ HTTPS://example.com ” is not a valid web address. It must start with http:// or "
               "https://."_s;
        row("a web address without a browser", "website", u"https://example.com"_s)
            << false << 1 << failed << u"Your desktop could not open the website."_s;
        row("a Shortcut that nothing runs", "shortcut", u"Flow"_s)
            << false << 1 << failed << u"No program on your computer runs Shortcuts."_s;
        row("an app", "app", u"/usr/bin/true"_s) << false << 0 << u"App"_s << u"Open an app"_s;
        row("a folder", "path", u"/usr"_s) << true << 0 << u"App"_s << u"Open a folder or file"_s;
        row("a web address", "website", u" https://example.com "_s)
            << true << 0 << u"App"_s << u"Open a website"_s;
        row("a Shortcut", "shortcut", u"My Flow & More"_s)
            << true << 0 << u"App"_s << u"Run a Shortcut"_s;
    }
    void rings()
    {
        QFETCH(const QByteArray, kind);
        QFETCH(const QString, target);
        QFETCH(const bool, hasHandler);
        QFETCH(const int, rings);
        QFETCH(const QString, title);
        QFETCH(const QString, body);
        Desk desk;
        const RecordedService notifications(desk.bus.address(), service, host({u"body"_s}));
        if (hasHandler)
            desk.app.openByDefault(
                {"inode/directory", "x-scheme-handler/https", "x-scheme-handler/shortcuts"},
                desk.program.dataHome(), desk.program.configHome());
        desk.program.addEntry(kind, target, controlOptionK);
        desk.start();
        desk.press(KEY_K);
        QTRY_COMPARE(notifications.calls(u"Notify"_s), QStringList({notification(title, body)}));
        QTRY_COMPARE(desk.bell.rings(), rings);
        QTRY_COMPARE(int(desk.app.starts().size()), hasHandler ? 1 : 0);
        QCOMPARE(desk.program.stop(), 0);
        QCOMPARE(desk.bell.rings(), rings);
    }

    void postsEqualNotificationsAnew()
    {
        Desk desk;
        const RecordedService notifications(desk.bus.address(), service, host({}));
        desk.program.addApp(u"/usr/bin/true"_s, controlOptionK);
        desk.start();
        desk.press(KEY_K);
        desk.press(KEY_K);
        const QString each = notification(u"App"_s, u"Open an app"_s);
        QTRY_COMPARE(notifications.calls(u"Notify"_s), QStringList({each, each}));
    }

    void escapesTheBodyForAHostThatReadsMarkup()
    {
        Desk desk;
        const RecordedService notifications(desk.bus.address(), service,
                                            host({u"body"_s, u"body-markup"_s}));
        desk.program.addEntry("website", u"<b>&</b>"_s, controlOptionK);
        desk.start();
        desk.press(KEY_K);
        QTRY_COMPARE(
            notifications.calls(u"Notify"_s),
            QStringList({notification(
                u"“App” failed"_s,
                u"“&lt;b&gt;&amp;&lt;/b&gt;” is not a valid web address. It must start with "
                "http:// or https://."_s)}));
    }

    void postsOnlyFailuresIfTheUserWantsNoMore()
    {
        Desk desk;
        const RecordedService notifications(desk.bus.address(), service, host({}));
        desk.program.addDefault("showRunNotification=false");
        desk.program.addApp(u"/nowhere"_s, controlOptionK);
        desk.start();
        desk.press(KEY_J);
        QTRY_COMPARE(desk.app.starts().size(), 1);
        desk.press(KEY_K);
        QTRY_COMPARE(notifications.calls(u"Notify"_s).size(), 1);
        QVERIFY(notifications.calls(u"Notify"_s).constFirst().contains(u"Not found"_s));
    }

    void startsAHostThatTheBusCanStart()
    {
        const RecordedApp witness;
        Desk desk(QString::fromUtf8(witness.command()));
        desk.start();
        desk.press(KEY_J);
        QTRY_COMPARE(witness.starts().size(), 1);
    }

    void opensAppsWhateverTheHostDoes_data()
    {
        QTest::addColumn<RecordedService::Answer>("answer");
        const auto whenNotified = [](const RecordedService::Answer &answer) {
            return [answer](const QDBusMessage &message, const QDBusConnection &connection) {
                return message.member() == u"Notify" ? answer(message, connection)
                                                     : host({})(message, connection);
            };
        };
        const auto die = [](const QDBusMessage &, const QDBusConnection &connection) {
            QDBusConnection::disconnectFromBus(connection.name());
            return true;
        };
        QTest::newRow("hangs") << RecordedService::Answer(RecordedService::silence);
        QTest::newRow("hangs when it is to show something")
            << RecordedService::Answer(whenNotified(RecordedService::silence));
        QTest::newRow("dies") << RecordedService::Answer(die);
        QTest::newRow("dies when it is to show something")
            << RecordedService::Answer(whenNotified(die));
    }
    void opensAppsWhateverTheHostDoes()
    {
        QFETCH(const RecordedService::Answer, answer);
        Desk desk;
        const RecordedService notifications(desk.bus.address(), service, answer);
        desk.start();
        desk.press(KEY_J);
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QTRY_VERIFY(!notifications.calls(u"GetCapabilities"_s).isEmpty());
        desk.press(KEY_J);
        QTRY_COMPARE(desk.app.starts().size(), 2);
        QCOMPARE(desk.program.stop(), 0);
        QCOMPARE(desk.program.errorOutput(), QByteArray());
    }

    void opensAppsWithoutAHostOrABus_data()
    {
        QTest::addColumn<QString>("busAddress");
        QTest::newRow("no host") << QString();
        QTest::newRow("no bus") << u"unix:path=/nowhere"_s;
    }
    void opensAppsWithoutAHostOrABus()
    {
        QFETCH(const QString, busAddress);
        Desk desk;
        if (!busAddress.isEmpty())
            desk.program.environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, busAddress);
        desk.program.addApp(u"/nowhere"_s, controlOptionK);
        desk.start();
        desk.press(KEY_K);
        QTRY_COMPARE(desk.bell.rings(), 1);
        desk.press(KEY_J);
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QCOMPARE(desk.program.stop(), 0);
        // The sound library may have its own words where there is no sound card.
        QVERIFY(!desk.program.errorOutput().contains("corvane"));
    }

    void playsTheDesktopsSoundWhereThereIsOne()
    {
        Desk desk;
        const RecordedService notifications(desk.bus.address(), service, host({}));
        const QString played = desk.program.home.filePath(u"played"_s);
        desk.useSoundCardThatWritesTo(played);
        desk.program.addApp(u"/nowhere"_s, controlOptionK);
        desk.start();
        desk.press(KEY_K);
        QTRY_COMPARE(notifications.calls(u"Notify"_s).size(), 1);
        QTRY_VERIFY(QFileInfo(played).size() > 0);
        QCOMPARE(desk.program.stop(), 0);
        QCOMPARE(desk.bell.rings(), 0);
    }

    void ringsWhereTheDesktopsSoundHangs()
    {
        Desk desk;
        // A pipe that nobody reads: to open it never ends.
        const QString pipe = desk.program.home.filePath(u"pipe"_s);
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        desk.useSoundCardThatWritesTo(pipe);
        desk.program.addApp(u"/nowhere"_s, controlOptionK);
        desk.start();
        desk.press(KEY_K);
        QTRY_COMPARE(desk.bell.rings(), 1);
        desk.press(KEY_K);
        QTRY_COMPARE(desk.bell.rings(), 2);
        desk.press(KEY_J);
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QCOMPARE(desk.program.stop(), 0);
    }
};

QTEST_GUILESS_MAIN(OutcomeTest)
#include "OutcomeTest.moc"
