// What can be opened, how it is started, and what is said where that fails.

#include "platform/linux/launch/LinuxWorkspace.h"
#include "platform/linux/activation/ServerTime.h"
#include "platform/linux/activation/StartupNotification.h"
#include "support/RecordedApp.h"
#include "support/RecordedService.h"
#include "support/WriteFile.h"

#include <QDBusObjectPath>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{
const UserActivation someActivation{.x11Time = 123456};

/// Opens an application and awaits how that ends: an empty text is success.
QString openApplication(const QString &path, UserActivation activation = someActivation)
{
    LinuxWorkspace workspace(activation, nullptr);
    const auto outcome = std::make_shared<std::optional<QString>>();
    workspace.openApplication(path, {}, [outcome](const std::optional<Error> &error) {
        *outcome = error ? error->description : QString();
    });
    return QTest::qWaitFor([outcome] { return outcome->has_value(); }) ? **outcome : u"hangs"_s;
}

/// Has the workspace open something, and awaits whether that worked.
template <typename Target>
bool isOpened(void (LinuxWorkspace::*open)(const Target &, std::function<void(bool)>),
              const Target &target)
{
    UserActivation activation = someActivation;
    LinuxWorkspace workspace(activation, nullptr);
    const auto outcome = std::make_shared<std::optional<bool>>();
    (workspace.*open)(target, [outcome](bool isOpened) { *outcome = isOpened; });
    return QTest::qWaitFor([outcome] { return outcome->has_value(); }) && **outcome;
}

/// Opens a file, a folder or an address.
bool open(const QUrl &url)
{
    return isOpened(&LinuxWorkspace::open, url);
}

/// Opens a file in the text editor, or a folder.
bool openToEdit(const QString &path)
{
    return isOpened(&LinuxWorkspace::openToEdit, path);
}

/// A file with that content.
class File
{
public:
    File(const QString &name, const QByteArray &content, bool isExecutable = false)
        : m_path(m_folder.filePath(name))
    {
        QFile file(m_path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
            qFatal("cannot write %s", qPrintable(m_path));
        if (isExecutable)
            file.setPermissions(file.permissions() | QFile::ExeOwner);
    }

    QString path() const { return m_path; }
    QString folder() const { return m_folder.path(); }

private:
    QTemporaryDir m_folder;
    QString m_path;
};

/// This program, but that another loader has to load it.
QByteArray programWithLoader(const QByteArray &path)
{
    QFile file(QCoreApplication::applicationFilePath());
    if (!file.open(QIODevice::ReadOnly))
        qFatal("cannot read %s", qPrintable(file.fileName()));
    QByteArray content = file.readAll();
    const QByteArray loader = "/lib64/ld-linux-x86-64.so.2";
    return content.replace(content.indexOf(loader), loader.size(),
                           path.leftJustified(loader.size(), '\0'));
}

/// Has programs looked for in that folder only, until the end of the returned value.
auto usePath(const QString &folder)
{
    const QByteArray before = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(folder));
    return qScopeGuard([before] { qputenv("PATH", before); });
}

QString busAddress()
{
    return qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
}

QByteArray variable(const char *name)
{
    return qgetenv(name);
}
} // namespace

class LinuxWorkspaceTest : public QObject
{
    Q_OBJECT

private:
    const RecordedApp m_handler{"%U"};
    /// How often the default applications have been written.
    int m_writes = 0;

    void useUsualHandler()
    {
        m_handler.openByDefault({"inode/directory", "text/plain", "x-scheme-handler/https",
                                 "x-scheme-handler/shortcuts", newScheme()},
                                qEnvironmentVariable("XDG_DATA_HOME"),
                                qEnvironmentVariable("XDG_CONFIG_HOME"));
        awaitThatTheyAreRead();
    }

    /// Makes an application with that .desktop file the only one for text; none if it is empty.
    void useTextEditor(const QByteArray &content, const QString &file = u"editor.desktop"_s)
    {
        writeFile(qEnvironmentVariable("XDG_DATA_HOME") + u"/applications/"_s + file, content);
        writeFile(qEnvironmentVariable("XDG_CONFIG_HOME") + u"/mimeapps.list"_s,
                  "[Default Applications]\ninode/directory=recorded.desktop\n" + newScheme()
                      + "=recorded.desktop\ntext/plain=" + file.toUtf8() + '\n');
        awaitThatTheyAreRead();
    }

    QByteArray newScheme() { return "x-scheme-handler/written" + QByteArray::number(++m_writes); }

    /// GIO takes notice of new default applications after a while.
    void awaitThatTheyAreRead() const
    {
        const QUrl address(u"written%1:"_s.arg(m_writes));
        QTRY_VERIFY(DesktopApp::defaultFor(address));
    }

private Q_SLOTS:
    void initTestCase() { useUsualHandler(); }

    // Applications

    void opensADesktopFileInTheHomeFolder()
    {
        const RecordedApp app("--name %c --file %k");
        QCOMPARE(openApplication(app.desktopFile()), QString());
        const auto start = app.onlyStart();
        QCOMPARE(text(start[u"folder"]), '"' + QDir::homePath().toUtf8() + '"');
        QCOMPARE(text(start[u"arguments"]),
                 "[\"--name\",\"Recorded\",\"--file\",\"" + app.desktopFile().toUtf8() + "\"]");
    }

    void opensADesktopFileInTheFolderThatItNames()
    {
        const RecordedApp app({}, "Path=/usr/share");
        QCOMPARE(openApplication(app.desktopFile()), QString());
        QCOMPARE(text(app.onlyStart()[u"folder"]), QByteArray("\"/usr/share\""));
    }

    void opensADesktopFileInTheRootFolderWithoutAHome()
    {
        const auto restored = qScopeGuard([home = variable("HOME")] { qputenv("HOME", home); });
        qputenv("HOME", "/dev/null");
        const RecordedApp app;
        QCOMPARE(openApplication(app.desktopFile()), QString());
        QCOMPARE(text(app.onlyStart()[u"folder"]), QByteArray("\"/\""));
    }

    void opensAnExecutableFile()
    {
        const RecordedApp app;
        const File program(u"program with blanks"_s, "#!/bin/sh\nexec " + app.command() + '\n',
                           true);
        QCOMPARE(openApplication(program.path()), QString());
        QVERIFY(!app.onlyStart().empty());
    }

    void opensAnApplicationInATerminal()
    {
        const RecordedApp app("two \"more words\"", "Terminal=true\nPath=/usr/share");
        // What terminals have in common: the command comes last.
        const File terminal(u"xterm"_s, "#!/bin/sh\nshift\nexec \"$@\"\n", true);
        const auto restored = usePath(terminal.folder());
        // Like the program itself.
        std::signal(SIGXFSZ, SIG_IGN);
        QCOMPARE(openApplication(app.desktopFile()), QString());
        const auto start = app.onlyStart();
        QCOMPARE(text(start[u"arguments"]), QByteArray("[\"two\",\"more words\"]"));
        QCOMPARE(text(start[u"folder"]), QByteArray("\"/usr/share\""));
        QCOMPARE(text(start[u"leadsItsSession"]), QByteArray("true"));
        QCOMPARE(text(start[u"descriptors"]), QByteArray("[0,1,2]"));
        QCOMPARE(text(start[u"hasDefaultSignals"]), QByteArray("true"));
        QVERIFY(text(start[u"startupId"]).endsWith("_TIME123456\""));
    }

    void activatesAnApplicationOnTheBus()
    {
        const RecordedApp app({}, "DBusActivatable=true");
        const File file(u"org.example.Two-Words.desktop"_s, app.content());
        const RecordedService service(busAddress(), u"org.example.Two-Words"_s,
                                      RecordedService::reply({}));
        QCOMPARE(openApplication(file.path()), QString());
        const QStringList calls = service.calls(u"Activate"_s);
        QCOMPARE(calls.size(), 1);
        QVERIFY(calls.constFirst().startsWith(
            u"/org/example/Two_Words | {desktop-startup-id: corvane-"_s));
        QVERIFY(calls.constFirst().endsWith(u"_TIME123456}"_s));
        QVERIFY(app.starts().isEmpty());
    }

    void startsAnApplicationWhoseFileCannotBeANameOnTheBus()
    {
        const RecordedApp app({}, "DBusActivatable=true");
        QCOMPARE(openApplication(app.desktopFile()), QString());
        QVERIFY(!app.onlyStart().empty());
    }

    void saysWhatTheBusSaid()
    {
        const RecordedApp app({}, "DBusActivatable=true");
        const File file(u"org.example.Refusal.desktop"_s, app.content());
        const RecordedService service(
            busAddress(), u"org.example.Refusal"_s,
            [](const QDBusMessage &message, const QDBusConnection &connection) {
                return connection.send(
                    message.createErrorReply(QDBusError::AccessDenied, u"Not now"_s));
            });
        QCOMPARE(openApplication(file.path()), u"Not now"_s);
    }

    void saysWhyItCannotOpenAnApplication_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<bool>("isExecutable");
        QTest::addColumn<QString>("reason");
        const auto addDesktopFile = [](const char *row, const QByteArray &lines,
                                       const QString &reason) {
            QTest::newRow(row) << u"org.example.X.desktop"_s
                               << "[Desktop Entry]\nType=Application\nName=X\n" + lines << false
                               << reason;
        };
        const QString notStarted = u"The app could not be started."_s;
        addDesktopFile("a program that is not there", "Exec=/nowhere/program --new %U\n",
                       u"The program “/nowhere/program” is not installed."_s);
        addDesktopFile("a program that is not in the path", "Exec=\"my program\"\n",
                       u"The program “my program” is not installed."_s);
        addDesktopFile("a program to be tried that is not there", "Exec=true\nTryExec=trier\n",
                       u"The program “trier” is not installed."_s);
        addDesktopFile("an Exec line that is none", "Exec=\"record\n", notStarted);
        addDesktopFile("a folder that is not there", "Exec=true\nPath=/nowhere\n",
                       u"The folder “/nowhere”, in which “true” should run, cannot be opened."_s);
        addDesktopFile("a terminal where there is none", "Exec=true\nTerminal=true\n",
                       u"Unable to find terminal required for application"_s);
        addDesktopFile("a service that is not there", "Exec=true\nDBusActivatable=true\n",
                       u"The name org.example.X was not provided by any .service files"_s);
        QTest::newRow("no desktop file")
            << u"x.desktop"_s << QByteArray("hello") << false << notStarted;
        const auto addProgram = [](const char *row, const QByteArray &content,
                                   const QString &reason, bool isExecutable = true) {
            QTest::newRow(row) << u"x"_s << content << isExecutable << reason;
        };
        const QString noProgram =
            u"“x” is not a program, or a script without a first line such as #!/bin/sh."_s;
        addProgram("a file that is no program", "hello", noProgram);
        addProgram("an empty file", "", noProgram);
        addProgram("a script whose first line names nothing", "#!\n", noProgram);
        addProgram("a program for nobody", "#!/bin/sh\n", u"“%1” is not an executable program."_s,
                   false);
        addProgram("a script without its interpreter", "#! /nowhere/foo -w\n",
                   u"The program “/nowhere/foo”, which “x” needs, is not installed."_s);
        addProgram("a script of one line without its interpreter", "#!/nowhere/foo",
                   u"The program “/nowhere/foo”, which “x” needs, is not installed."_s);
        addProgram("a script whose interpreter is no program", "#!/etc/passwd\n",
                   u"“/etc/passwd”, which “x” needs, is not an executable program."_s);
        addProgram("a script of Windows", "#!/bin/sh\r\necho\r\n",
                   u"The lines of the script end as on Windows. Save it with the line ends of "
                   "Linux."_s);
        addProgram("a program of another computer",
                   QByteArray("\x7f"
                              "ELF",
                              4),
                   u"“x” is not a program for this kind of computer."_s);
        addProgram("a program without its loader", programWithLoader("/nowhere/ld.so"),
                   u"The program “/nowhere/ld.so”, which “x” needs, is not installed."_s);
    }
    void saysWhyItCannotOpenAnApplication()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, content);
        QFETCH(const bool, isExecutable);
        QFETCH(const QString, reason);
        const File file(name, content, isExecutable);
        // There is "true", and no terminal.
        const File program(u"true"_s, "#!/bin/sh\n", true);
        const auto restored = usePath(program.folder());
        QCOMPARE(openApplication(file.path()),
                 reason.contains(u"%1"_s) ? reason.arg(file.path()) : reason);
    }

    void saysThatAProgramHasGoneSinceItWasStarted()
    {
        const QTemporaryDir folder;
        const QString program = folder.filePath(u"program"_s);
        QVERIFY(QFile::copy(u"/bin/true"_s, program));
        const File app(u"org.example.X.desktop"_s,
                       "[Desktop Entry]\nType=Application\nName=X\nExec=" + program.toUtf8()
                           + '\n');
        UserActivation activation;
        LinuxWorkspace workspace(activation, nullptr);
        QStringList outcomes;
        const auto note = [&outcomes](const std::optional<Error> &error) {
            outcomes << (error ? error->description : QString());
        };
        workspace.openApplication(app.path(), {}, note);
        QVERIFY(QFile::remove(program));
        workspace.openApplication(app.path(), {}, note);
        QCOMPARE(outcomes,
                 QStringList({QString(), u"The program “%1” is not installed."_s.arg(program)}));
    }

    void waitsForNoPipeInPlaceOfADesktopFile()
    {
        const QTemporaryDir folder;
        const QString pipe = folder.filePath(u"x.desktop"_s);
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), S_IRWXU), 0);
        QCOMPARE(openApplication(pipe), u"The app could not be started."_s);
    }

    void saysThatAFolderIsNoProgram()
    {
        QCOMPARE(openApplication(u"/usr"_s), u"“/usr” is not an executable program."_s);
    }

    // What windows come to the front by, and what children live in

    void givesAnApplicationTheTimeOfTheUsersAction()
    {
        const RecordedApp first;
        const RecordedApp second;
        QCOMPARE(openApplication(first.desktopFile()), QString());
        QCOMPARE(openApplication(second.desktopFile()), QString());
        const QByteArray firstId = text(first.onlyStart()[u"startupId"]);
        const QByteArray secondId = text(second.onlyStart()[u"startupId"]);
        QVERIFY(firstId.endsWith("_TIME123456\""));
        QVERIFY(secondId.endsWith("_TIME123456\""));
        QVERIFY(firstId != secondId);
    }

    void givesOneApplicationTheTokenOfTheCompositor_data()
    {
        QTest::addColumn<QByteArray>("furtherLines");
        QTest::newRow("its own program") << QByteArray();
        QTest::newRow("in a terminal") << QByteArray("Terminal=true");
    }
    void givesOneApplicationTheTokenOfTheCompositor()
    {
        QFETCH(const QByteArray, furtherLines);
        const File terminal(u"xterm"_s, "#!/bin/sh\nshift\nexec \"$@\"\n", true);
        const auto restored = usePath(terminal.folder());
        const RecordedApp first({}, furtherLines);
        const RecordedApp second({}, furtherLines);
        UserActivation activation{.activationToken = "token-1"};
        LinuxWorkspace workspace(activation, nullptr);
        workspace.openApplication(first.desktopFile(), {}, [](const auto &) {});
        workspace.openApplication(second.desktopFile(), {}, [](const auto &) {});
        QCOMPARE(text(first.onlyStart()[u"activationToken"]), QByteArray("\"token-1\""));
        QCOMPARE(text(second.onlyStart()[u"activationToken"]), QByteArray("\"\""));
    }

    void handsOnNothingThatItWasStartedWithItself()
    {
        const auto restored = qScopeGuard([] {
            qunsetenv("DESKTOP_STARTUP_ID");
            qunsetenv("XDG_ACTIVATION_TOKEN");
        });
        qputenv("DESKTOP_STARTUP_ID", "launcher-1_TIME1");
        qputenv("XDG_ACTIVATION_TOKEN", "token");
        const RecordedApp app;
        QCOMPARE(openApplication(app.desktopFile(), {}), QString());
        const auto start = app.onlyStart();
        QCOMPARE(text(start[u"startupId"]), QByteArray("\"\""));
        QCOMPARE(text(start[u"activationToken"]), QByteArray("\"\""));
    }

    void putsWhatItStartsIntoAScopeOfItsOwn_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QString>("unit");
        QTest::newRow("a desktop file")
            << u"org.example.My-App.desktop"_s << u"app-corvane-org.example.My\\x2dApp-%1.scope"_s;
        QTest::newRow("a program") << u"my program"_s << u"app-corvane-my\\x20program-%1.scope"_s;
    }
    void putsWhatItStartsIntoAScopeOfItsOwn()
    {
        QFETCH(const QString, fileName);
        QFETCH(const QString, unit);
        const RecordedService systemd(busAddress(), u"org.freedesktop.systemd1"_s,
                                      RecordedService::reply({QVariant::fromValue(
                                          QDBusObjectPath(u"/org/freedesktop/systemd1/job/1"_s))}));
        const RecordedApp app;
        const bool isDesktopFile = fileName.endsWith(u".desktop"_s);
        const File file(fileName,
                        isDesktopFile ? app.content() : "#!/bin/sh\nexec " + app.command() + '\n',
                        !isDesktopFile);
        QCOMPARE(openApplication(file.path()), QString());
        const QString process = QString::fromLatin1(text(app.onlyStart()[u"process"]));
        QTRY_COMPARE(systemd.calls(u"StartTransientUnit"_s),
                     QStringList({u"/org/freedesktop/systemd1 | "_s + unit.arg(process)
                                  + u" | fail | [(PIDs, [%1]), (CollectMode, inactive-or-failed)]"
                                    " | []"_s.arg(process)}));
    }

    // Files, folders and addresses

    void opensByTheDefaultApplication_data()
    {
        QTest::addColumn<QUrl>("url");
        QTest::addColumn<QByteArray>("argument");
        QTest::newRow("a folder") << QUrl::fromLocalFile(u"/usr/share"_s)
                                  << QByteArray("file:///usr/share");
        QTest::newRow("a web address") << QUrl(u"https://example.com/a%20b?c=d%26e#f"_s)
                                       << QByteArray("https://example.com/a%20b?c=d%26e#f");
        QTest::newRow("the link of a Shortcut")
            << QUrl(u"shortcuts://run-shortcut?name=My%20Flow%20%26%20More"_s)
            << QByteArray("shortcuts://run-shortcut?name=My%20Flow%20%26%20More");
    }
    void opensByTheDefaultApplication()
    {
        QFETCH(const QUrl, url);
        QFETCH(const QByteArray, argument);
        const auto before = m_handler.starts().size();
        QVERIFY(open(url));
        QTRY_COMPARE(m_handler.starts().size(), before + 1);
        QCOMPARE(text(m_handler.starts().constLast()[u"arguments"]), "[\"" + argument + "\"]");
    }

    void opensAFileWithAnyNameByTheDefaultApplication()
    {
        const File file(u"a b#c%20d?é.txt"_s, "words\n");
        const auto before = m_handler.starts().size();
        QVERIFY(open(QUrl::fromLocalFile(file.path())));
        QTRY_COMPARE(m_handler.starts().size(), before + 1);
        QCOMPARE(text(m_handler.starts().constLast()[u"arguments"]),
                 "[\"file://" + file.folder().toUtf8() + "/a%20b%23c%2520d%3F%C3%A9.txt\"]");
    }

    // Files in the text editor

    void opensAnyFileInTheTextEditor_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("a script") << u"Tidy Up"_s << QByteArray("#!/bin/sh\n");
        QTest::newRow("a file named as another type") << u"Tidy.png"_s << QByteArray("#!/bin/sh\n");
        QTest::newRow("an empty file") << u"Tidy"_s << QByteArray();
    }
    void opensAnyFileInTheTextEditor()
    {
        QFETCH(const QString, name);
        QFETCH(const QByteArray, content);
        const File file(name, content, true);
        const auto before = m_handler.starts().size();
        QVERIFY(openToEdit(file.path()));
        QTRY_COMPARE(m_handler.starts().size(), before + 1);
        const QString argument = m_handler.starts().constLast()[u"arguments"][0].toString();
        QCOMPARE(QUrl(argument).toLocalFile(), file.path());
    }

    void opensAFolderToEditInTheFileManager()
    {
        useTextEditor("[Desktop Entry]\nType=Application\nName=Other\nExec=true\n");
        const auto restored = qScopeGuard([this] { useUsualHandler(); });
        const auto before = m_handler.starts().size();
        QVERIFY(openToEdit(u"/usr/share"_s));
        QTRY_COMPARE(m_handler.starts().size(), before + 1);
    }

    void opensATextEditorThatRunsInATerminal()
    {
        const RecordedApp editor("%F", "Terminal=true");
        useTextEditor(editor.content());
        const auto restored = qScopeGuard([this] { useUsualHandler(); });
        const File terminal(u"xterm"_s, "#!/bin/sh\nshift\nexec \"$@\"\n", true);
        const auto path = usePath(terminal.folder());
        const File file(u"a b"_s, "#!/bin/sh\n", true);
        QVERIFY(openToEdit(file.path()));
        QCOMPARE(text(editor.onlyStart()[u"arguments"]), "[\"" + file.path().toUtf8() + "\"]");
    }

    void opensATextEditorOnTheBus()
    {
        const QString name = u"org.example.Editor"_s;
        useTextEditor("[Desktop Entry]\nType=Application\nName=Editor\nExec=false\n"
                      "DBusActivatable=true\n",
                      name + u".desktop"_s);
        const auto restored = qScopeGuard([this] { useUsualHandler(); });
        const File file(u"a b"_s, "#!/bin/sh\n", true);
        QVERIFY(!openToEdit(file.path()));
        const RecordedService service(busAddress(), name, RecordedService::reply({}));
        QVERIFY(openToEdit(file.path()));
        const QString call = service.calls(u"Open"_s).value(0);
        QVERIFY2(call.contains(u"[file://%1/a%20b]"_s.arg(file.folder())), qPrintable(call));
    }

    void opensTheTextEditorOnBehalfOfTheUsersActionOfThisMoment()
    {
        const File file(u"a"_s, "#!/bin/sh\n", true);
        const auto count = m_handler.starts().size();
        const auto before = currentServerTime();
        QVERIFY(openToEdit(file.path()));
        const auto after = currentServerTime();
        QTRY_COMPARE(m_handler.starts().size(), count + 1);
        const auto id = m_handler.starts().constLast()[u"startupId"].toString();
        const auto time = StartupNotification::userTime(id.toUtf8());
        QVERIFY(before && before <= time && time <= after);
    }

    void opensNoTextEditorWhereNoneWorks_data()
    {
        QTest::addColumn<QByteArray>("application");
        QTest::newRow("none is installed") << QByteArray();
        QTest::newRow("its program is not there")
            << QByteArray("[Desktop Entry]\nType=Application\nName=E\nExec=/nowhere/editor %f\n");
        QTest::newRow("its program cannot be started")
            << QByteArray("[Desktop Entry]\nType=Application\nName=E\nExec=/etc/passwd %f\n");
    }
    void opensNoTextEditorWhereNoneWorks()
    {
        QFETCH(const QByteArray, application);
        useTextEditor(application);
        const auto restored = qScopeGuard([this] { useUsualHandler(); });
        const File file(u"a"_s, "#!/bin/sh\n", true);
        QVERIFY(!openToEdit(file.path()));
    }

    void opensNothingThatNothingOpens_data()
    {
        QTest::addColumn<QUrl>("url");
        QTest::newRow("an address") << QUrl(u"gopher://example.com"_s);
        QTest::newRow("a file") << QUrl::fromLocalFile(QCoreApplication::applicationFilePath());
        QTest::newRow("a file that is not there") << QUrl::fromLocalFile(u"/nowhere/x.txt"_s);
    }
    void opensNothingThatNothingOpens()
    {
        QFETCH(const QUrl, url);
        QVERIFY(!open(url));
    }
};

QTEST_MAIN(LinuxWorkspaceTest)
#include "LinuxWorkspaceTest.moc"
