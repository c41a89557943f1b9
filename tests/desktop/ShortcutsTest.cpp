// What links of Shortcuts start, and what the user reads where they start nothing: the companion
// program as the desktop calls it, and as the program reaches it.

#include "support/PrivateBus.h"
#include "support/ProgramOnTheBus.h"
#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"
#include "support/RecordedService.h"
#include "support/SettingsDesk.h"

#include <QCoreApplication>
#include <QDate>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonArray>
#include <QTest>
#include <QTimer>
#include <array>
#include <csignal>
#include <functional>
#include <list>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
const QString service = u"org.freedesktop.Notifications"_s;
const QStringList tidyUp{u"shortcuts://run-shortcut?name=Tidy%20Up"_s};

/// A notification host that reads markup.
bool host(const QDBusMessage &message, const QDBusConnection &connection)
{
    if (message.member() == u"GetCapabilities")
        return connection.send(message.createReply(QVariant(QStringList(u"body-markup"_s))));
    return connection.send(message.createReply(QVariant(1u)));
}

/// One that takes its time, as if it had to be started first.
bool slowHost(const QDBusMessage &message, const QDBusConnection &connection)
{
    QTimer::singleShot(message.member() == u"GetCapabilities" ? 2500 : 0,
                       [message, connection] { host(message, connection); });
    return true;
}

QString ourProgram(const QString &name)
{
    return QCoreApplication::applicationDirPath() + u'/' + name;
}

QByteArray content(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A home with Shortcuts, on a bus of its own.
struct Desk {
    Desk() { program.environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus.address()); }

    void write(const QString &path, const QByteArray &text, mode_t mode = 0644) const
    {
        SettingsDesk::write(path, text);
        chmod(QFile::encodeName(path).constData(), mode);
    }
    void addShortcut(const QString &name, const QByteArray &text, mode_t mode = 0755) const
    {
        write(program.dataHome() + u"/shortcuts/"_s + name, text, mode);
    }
    /// A script or a launcher whose starts are recorded.
    void addRecorded(const QString &name) const
    {
        addShortcut(name,
                    name.endsWith(u".desktop"_s)
                        ? app.content()
                        : "#!/bin/sh\nexec " + app.command() + " \"$@\"\n");
    }
    void addSample(const QString &name) const
    {
        const QByteArray sample = content(QStringLiteral(SAMPLES) + u'/' + name);
        QVERIFY(!sample.isEmpty());
        addShortcut(name, sample);
    }

    /// Starts the program, and leaves it to finish() to await its end.
    void begin(const QStringList &arguments, const QString &name = u"corvane-shortcuts"_s)
    {
        process.setProcessEnvironment(program.environment);
        process.start(ourProgram(name), arguments);
        QVERIFY(process.waitForStarted());
    }

    /// Awaits the end of the program; its exit status, or -1.
    int finish()
    {
        // The test's own services answer meanwhile.
        const bool hasEnded =
            QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 10000);
        errors = process.readAllStandardError();
        return hasEnded && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    int run(const QStringList &arguments, const QString &name = u"corvane-shortcuts"_s)
    {
        begin(arguments, name);
        return finish();
    }

    PrivateBus bus;
    ProgramUnderTest program;
    RecordedApp app{"%u"};
    QProcess process;
    /// What the last run wrote to standard error.
    QByteArray errors;
};

/// The journal of a test, that listens at that path.
class Journal
{
public:
    explicit Journal(const QString &path)
        : m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_un address = {.sun_family = AF_UNIX};
        qstrncpy(address.sun_path, QFile::encodeName(path).constData(), sizeof address.sun_path);
        if (bind(m_socket, reinterpret_cast<sockaddr *>(&address), sizeof address) != 0
            || listen(m_socket, 1) != 0)
            qFatal("cannot listen at %s", qPrintable(path));
    }
    ~Journal() { close(m_socket); }
    Q_DISABLE_COPY_MOVE(Journal)

    /// All that the one who has connected writes until there is nobody left to write.
    QByteArray heard() const
    {
        QFile stream;
        return stream.open(accept(m_socket, nullptr, nullptr), QIODevice::ReadOnly,
                           QFile::AutoCloseHandle)
            ? stream.readAll()
            : QByteArray();
    }

private:
    int m_socket;
};

/// The whole call of Notify for a title and a body.
QString notification(const QString &title, const QString &body)
{
    return u"/org/freedesktop/Notifications | Corvane | 0 | org.corvane.Corvane | %1 | %2 | [] | "
           "{suppress-sound: true} | -1"_s.arg(title, body);
}

using Preparation = std::function<void(Desk &)>;

void removeBus(Desk &desk)
{
    desk.program.environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nowhere"_s);
}

void stopBus(Desk &desk)
{
    QCOMPARE(kill(desk.bus.processId(), SIGSTOP), 0);
}
} // namespace

Q_DECLARE_METATYPE(Preparation)

class ShortcutsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsAScriptAsTheDesktopStartsPrograms()
    {
        Desk desk;
        desk.addRecorded(u"Tidy Up.sh"_s);
        desk.program.environment.insert(u"DESKTOP_STARTUP_ID"_s, u"id_TIME7"_s);
        desk.program.environment.insert(u"XDG_ACTIVATION_TOKEN"_s, u"token"_s);
        QCOMPARE(desk.run(tidyUp), 0);
        const auto start = desk.app.onlyStart();
        QCOMPARE(text(start[u"folder"]), '"' + desk.program.home.path().toUtf8() + '"');
        QCOMPARE(text(start[u"arguments"]), QByteArray("[]"));
        QCOMPARE(text(start[u"input"]), QByteArray("\"/dev/null\""));
        QCOMPARE(text(start[u"descriptors"]), QByteArray("[0,1,2]"));
        QCOMPARE(text(start[u"startupId"]), QByteArray("\"id_TIME7\""));
        QCOMPARE(text(start[u"activationToken"]), QByteArray("\"token\""));
        QVERIFY(start[u"leadsItsSession"].toBool());
        QVERIFY(start[u"hasDefaultSignals"].toBool());
        QCOMPARE(desk.errors, QByteArray());
    }

    void startsALauncher()
    {
        Desk desk;
        const RecordedApp app("--name %c");
        desk.addShortcut(u"Tidy Up.desktop"_s, app.content(), 0644);
        QCOMPARE(desk.run(tidyUp), 0);
        QTRY_COMPARE(app.starts().size(), 1);
        QCOMPARE(text(app.starts().constFirst()[u"arguments"]),
                 QByteArray("[\"--name\",\"Recorded\"]"));
    }

    void writesOutputToTheJournal_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("of a script")
            << u"Tidy Up"_s << QByteArray("#!/bin/sh\necho done\necho what >&2\n");
        QTest::newRow("of a launcher")
            << u"Tidy Up.desktop"_s
            << QByteArray("[Desktop Entry]\nType=Application\nName=Tidy\n"
                          "Exec=sh -c \"echo done; echo what >&2\"\n");
    }
    void writesOutputToTheJournal()
    {
        QFETCH(const QString, file);
        QFETCH(const QByteArray, content);
        Desk desk;
        const QString path = desk.program.home.filePath(u"journal"_s);
        const Journal journal(path);
        desk.program.environment.insert(u"JOURNAL_OF_TEST"_s, path);
        desk.addShortcut(file, content);
        QCOMPARE(desk.run(tidyUp, u"shortcuts-with-journal"_s), 0);
        QCOMPARE(journal.heard(), QByteArray("Tidy Up\n\n6\n0\n0\n0\n0\ndone\nwhat\n"));
        QCOMPARE(desk.errors, QByteArray());
    }

    void saysWhyNothingWasStarted_data()
    {
        QTest::addColumn<Preparation>("prepare");
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("title");
        QTest::addColumn<QString>("reason");
        const QString theShortcut = u"The Shortcut could not run"_s;
        const QString tidyUpCouldNot = u"“Tidy Up” could not run"_s;
        const auto row = [&](const char *description, const QByteArray &script,
                             const QString &reason, mode_t mode = 0755) {
            QTest::newRow(description) << Preparation(
                [script, mode](const Desk &desk) { desk.addShortcut(u"Tidy Up"_s, script, mode); })
                                       << tidyUp << tidyUpCouldNot << reason;
        };
        QTest::newRow("more than one link")
            << Preparation([](const Desk &desk) { desk.addRecorded(u"Tidy Up"_s); })
            << (tidyUp + tidyUp) << theShortcut << u"More than one link was given."_s;
        QTest::newRow("a link of another kind, with markup")
            << Preparation([](const Desk &) {}) << QStringList(u"https://a/<b>"_s) << theShortcut
            << u"“https://a/<b>” is not a link that runs a Shortcut."_s;
        QTest::newRow("a name with a slash")
            << Preparation([](const Desk &) {})
            << QStringList(u"shortcuts://run-shortcut?name=..%2Fa"_s) << theShortcut
            << u"“../a” cannot be the name of a Shortcut."_s;
        QTest::newRow("no such Shortcut")
            << Preparation([](const Desk &) {}) << tidyUp << tidyUpCouldNot
            << u"There is no Shortcut of this name in ~/data/shortcuts."_s;
        row("a file that is not executable", "#!/bin/sh\n",
            u"“Tidy Up” is not executable. Allow it to be executed as a program in its "
            "properties."_s,
            0644);
        row("a script without a first line", "echo\n",
            u"“Tidy Up” is not a program, or a script without a first line such as #!/bin/sh."_s);
        row("a script without its interpreter", "#! /no/perl -w\n",
            u"The program “/no/perl”, which “Tidy Up” needs, is not installed."_s);
    }
    void saysWhyNothingWasStarted()
    {
        QFETCH(const Preparation, prepare);
        QFETCH(const QStringList, arguments);
        QFETCH(const QString, title);
        QFETCH(const QString, reason);
        Desk desk;
        prepare(desk);
        const RecordedService notifications(desk.bus.address(), service, &host);
        QCOMPARE(desk.run(arguments), 1);
        QCOMPARE(desk.errors,
                 "corvane-shortcuts: " + title.toUtf8() + ": " + reason.toUtf8() + '\n');
        QCOMPARE(notifications.calls(u"Notify"_s),
                 QStringList(notification(title, reason.toHtmlEscaped())));
        QVERIFY(desk.app.starts().isEmpty());
    }

    void saysWhatOthersMayChange()
    {
        Desk desk;
        desk.addRecorded(u"Tidy Up"_s);
        const QString folder = desk.program.dataHome() + u"/shortcuts"_s;
        chmod(QFile::encodeName(folder).constData(), 0777);
        QCOMPARE(desk.run(tidyUp), 1);
        QVERIFY(desk.errors.contains("Other users may change “" + folder.toUtf8()));
        QVERIFY(desk.app.starts().isEmpty());
    }

    void endsWhereNobodyShowsNotifications()
    {
        const std::pair<const char *, Preparation> cases[] = {
            {"their host hangs", [](const Desk &) {}},
            {"the bus hangs", stopBus},
            {"there is no bus", removeBus},
        };
        // Each takes the program several seconds.
        std::array<Desk, std::size(cases)> desks;
        std::list<RecordedService> services;
        QElapsedTimer timer;
        timer.start();
        for (size_t index = 0; index < desks.size(); ++index) {
            Desk &desk = desks[index];
            services.emplace_back(desk.bus.address(), service, RecordedService::silence);
            cases[index].second(desk);
            desk.begin(tidyUp);
        }
        for (size_t index = 0; index < desks.size(); ++index) {
            Desk &desk = desks[index];
            QVERIFY2(desk.finish() == 1, cases[index].first);
            QVERIFY2(timer.elapsed() < 9000, cases[index].first);
            QVERIFY2(desk.errors.startsWith("corvane-shortcuts: “Tidy Up” could not run: "),
                     cases[index].first);
        }
    }

    void waitsForASlowHostOfNotifications()
    {
        Desk desk;
        const RecordedService notifications(desk.bus.address(), service, &slowHost);
        QCOMPARE(desk.run(tidyUp), 1);
        QCOMPARE(notifications.calls(u"Notify"_s).size(), 1);
    }

    void needsNoBus_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<Preparation>("prepare");
        QTest::newRow("for a script") << u"Tidy Up"_s << Preparation(removeBus);
        QTest::newRow("for a launcher, though it hangs")
            << u"Tidy Up.desktop"_s << Preparation(stopBus);
    }
    void needsNoBus()
    {
        QFETCH(const QString, file);
        QFETCH(const Preparation, prepare);
        Desk desk;
        prepare(desk);
        desk.addRecorded(file);
        QCOMPARE(desk.run(tidyUp), 0);
        QCOMPARE(desk.app.onlyStart()[u"busAddress"].toString(),
                 desk.program.environment.value(u"DBUS_SESSION_BUS_ADDRESS"_s));
    }

    void startsAScriptBeforeItWaitsForTheBus()
    {
        Desk desk;
        stopBus(desk);
        desk.addRecorded(u"Tidy Up"_s);
        qsizetype earlyStarts = 0;
        QTimer::singleShot(1500, [&] { earlyStarts = desk.app.starts().size(); });
        QCOMPARE(desk.run(tidyUp), 0);
        QCOMPARE(earlyStarts, 1);
        QCOMPARE(desk.app.onlyStart()[u"busAddress"].toString(), desk.bus.address());
    }

    void asksSystemdForAScopeBeforeItEnds()
    {
        Desk desk;
        desk.addRecorded(u"Tidy Up"_s);
        const RecordedService systemd(desk.bus.address(), u"org.freedesktop.systemd1"_s,
                                      RecordedService::silence);
        QCOMPARE(desk.run(tidyUp), 0);
        QTRY_COMPARE(systemd.calls(u"StartTransientUnit"_s).size(), 1);
        QVERIFY(systemd.calls(u"StartTransientUnit"_s).constFirst().contains(u"app-corvane-Tidy"));
    }

    void tellsItsUseWithoutALink()
    {
        Desk desk;
        const RecordedService notifications(desk.bus.address(), service, &host);
        QCOMPARE(desk.run({}), 1);
        QCOMPARE(desk.errors,
                 QByteArray("usage: corvane-shortcuts shortcuts://run-shortcut?name=NAME\n"));
        QVERIFY(notifications.calls(u"Notify"_s).isEmpty());
    }

    void runsTheShortcutOfAnEntry()
    {
        Desk desk;
        const QString applications = desk.program.dataHome() + u"/applications"_s;
        desk.write(applications + u"/org.corvane.Corvane.Shortcuts.desktop"_s,
                   "[Desktop Entry]\nType=Application\nName=Shortcuts\nNoDisplay=true\nExec="
                       + ourProgram(u"corvane-shortcuts"_s).toUtf8()
                       + " %u\nMimeType=x-scheme-handler/shortcuts;\n");
        QCOMPARE(QProcess::execute(u"update-desktop-database"_s, {applications}), 0);
        desk.addRecorded(u"Tidy & Müll 100%.sh"_s);
        const QString id = desk.program.addEntry("shortcut", u"Tidy & Müll 100%"_s);
        // Whom the test asks.
        desk.program.environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s,
                                        qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"));
        desk.program.start();
        askToFire(id);
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QCOMPARE(desk.program.stop(), 0);
    }

    void makesANewNote_data()
    {
        QTest::addColumn<QByteArray>("userFolders");
        QTest::addColumn<QString>("folder");
        QTest::newRow("in the folder that the user has for documents")
            << QByteArray("XDG_DOCUMENTS_DIR=\"$HOME/My Papers\"\n") << u"My Papers"_s;
        QTest::newRow("in Documents") << QByteArray() << u"Documents"_s;
    }
    void makesANewNote()
    {
        QFETCH(const QByteArray, userFolders);
        QFETCH(const QString, folder);
        Desk desk;
        desk.addSample(u"New Note"_s);
        const RecordedApp editor("%f");
        editor.openByDefault({"text/plain"}, desk.program.dataHome(), desk.program.configHome());
        desk.write(desk.program.configHome() + u"/user-dirs.dirs"_s, userFolders);
        const QString note = desk.program.home.filePath(folder + u"/Note "_s)
            + QDate::currentDate().toString(Qt::ISODate);
        const QStringList files{note + u".txt"_s, note + u" 2.txt"_s};
        for (qsizetype i = 0; i < files.size(); ++i) {
            QCOMPARE(desk.run({u"shortcuts://run-shortcut?name=New%20Note"_s}), 0);
            QTRY_COMPARE(editor.starts().size(), i + 1);
            const auto opened = editor.starts().constLast()[u"arguments"].toArray().last();
            QCOMPARE(opened.toString(), files[i]);
            QVERIFY(!content(files[i]).isEmpty());
        }
    }

    void switchesBetweenDarkAndLight()
    {
        Desk desk;
        desk.addSample(u"Dark or Light"_s);
        desk.program.environment.insert(u"GSETTINGS_BACKEND"_s, u"keyfile"_s);
        const auto settings = [&desk] {
            return content(desk.program.configHome() + u"/glib-2.0/settings/keyfile"_s);
        };
        for (const QByteArray wanted : {"'prefer-dark'", "'default'", "'prefer-dark'"}) {
            QCOMPARE(desk.run({u"shortcuts://run-shortcut?name=Dark%20or%20Light"_s}), 0);
            QTRY_VERIFY(settings().contains("color-scheme=" + wanted));
        }
    }

    void saysThatDarkAndLightCannotBeSwitched()
    {
        Desk desk;
        desk.addSample(u"Dark or Light"_s);
        const QString path = desk.program.home.filePath(u"journal"_s);
        const Journal journal(path);
        desk.program.environment.insert(u"JOURNAL_OF_TEST"_s, path);
        // Where no schema is.
        desk.program.environment.insert(u"XDG_DATA_DIRS"_s, u"/nowhere"_s);
        QCOMPARE(desk.run({u"shortcuts://run-shortcut?name=Dark%20or%20Light"_s},
                          u"shortcuts-with-journal"_s),
                 0);
        QVERIFY(journal.heard().endsWith(
            "This desktop has no setting for dark windows that can be switched here.\n"));
    }
};

QTEST_GUILESS_MAIN(ShortcutsTest)
#include "ShortcutsTest.moc"
