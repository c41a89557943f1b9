#include "platform/linux/services/AutostartLoginItem.h"
#include "platform/linux/launch/DesktopApp.h"
#include "platform/linux/launch/ExecLine.h"
#include "support/LittleSpace.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>
#include <filesystem>
#include <gio/gio.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{
const QString fileName = u"org.corvane.Corvane.desktop"_s;

/// A folder for autostart files that is not there yet, and a program to be started.
struct Session {
    QTemporaryDir home;
    QString folder = home.filePath(u"config/autostart"_s);
    QString file = folder + u'/' + fileName;
    QString program = addProgram(u"corvane"_s);

    /// Leaves its name behind in a file "started".
    QString addProgram(const QString &name) const
    {
        const QString path = home.filePath(u"programs/"_s + name);
        std::filesystem::create_directories(QFileInfo(path).path().toStdString());
        write(path,
              "#!/bin/sh\nprintf %s \"$0\" > '" + home.filePath(u"new"_s).toUtf8() + "'\nmv '"
                  + home.filePath(u"new"_s).toUtf8() + "' '" + home.filePath(u"started"_s).toUtf8()
                  + "'\n");
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        return path;
    }

    QString started() const { return QString::fromUtf8(read(home.filePath(u"started"_s))); }

    void add(const QByteArray &lines) const
    {
        QDir().mkpath(folder);
        write(file, "[Desktop Entry]\n" + lines);
    }

    /// An autostart file as another program may have written it, with further lines.
    void addComplete(const QByteArray &lines) const
    {
        add("Type=Application\nName=Corvane\nExec=\"" + program.toUtf8() + "\"\n" + lines + '\n');
    }

    AutostartLoginItem loginItem() const { return {folder, program}; }

    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }
    static void write(const QString &path, const QByteArray &text)
    {
        QFile file(path);
        if (!file.open(QFile::WriteOnly) || file.write(text) != text.size())
            qFatal("cannot write %s", qPrintable(path));
    }
};

QString words(const std::optional<Error> &error)
{
    return error ? error->description : QString();
}

/// The value as those read it who know the rules of .desktop files, and not of Exec lines.
QString value(const QString &file, const char *name)
{
    GKeyFile *const keys = g_key_file_new();
    g_key_file_load_from_file(keys, QFile::encodeName(file).constData(), G_KEY_FILE_NONE, nullptr);
    char *const text = g_key_file_get_string(keys, "Desktop Entry", name, nullptr);
    const QString taken = QString::fromUtf8(text);
    g_free(text);
    g_key_file_free(keys);
    return taken;
}

void addNames()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << u"corvane"_s;
    QTest::newRow("with blanks") << u"two  words/corvane"_s;
    QTest::newRow("with quotation marks") << u"\"it's\""_s;
    QTest::newRow("with what shells expand") << u"$HOME `id` $(id) ~ *"_s;
    QTest::newRow("with backslashes") << u"\\n\\\\s\\"_s;
    QTest::newRow("with letters beyond ASCII") << u"“ünïcode” 日本"_s;
    QTest::newRow("with a line break") << u"two\nHidden=true"_s;
    QTest::newRow("with what separates") << u"a;b&c|d=e#f<g>h"_s;
}
} // namespace

class AutostartLoginItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isNotRegisteredWithoutAFile()
    {
        const Session session;
        QCOMPARE(session.loginItem().status(), LoginItemStatus::notRegistered);
    }

    void writesAFileThatStartsTheProgram()
    {
        const Session session;
        QCOMPARE(words(session.loginItem().registerItem()), QString());
        QCOMPARE(Session::read(session.file),
                 "[Desktop Entry]\nType=Application\nName=Corvane\n"
                 "Comment=Opens apps, files, websites and Shortcuts by key combinations\n"
                 "Exec=\""
                     + session.program.toUtf8() + "\"\nTryExec=" + session.program.toUtf8()
                     + "\nIcon=org.corvane.Corvane\nTerminal=false\nStartupNotify=false\n");
        QCOMPARE(session.loginItem().status(), LoginItemStatus::enabled);
    }

    void writesTheWholeFileAnew_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::newRow("of another program") << QByteArray("Type=Application\nName=X\nExec=true\n");
        QTest::newRow("switched off")
            << QByteArray("Type=Application\nName=X\nExec=true\nHidden=true\n");
        QTest::newRow("malformed") << QByteArray("words\n");
    }
    void writesTheWholeFileAnew()
    {
        QFETCH(const QByteArray, lines);
        const Session session;
        session.loginItem().registerItem();
        const QByteArray written = Session::read(session.file);
        session.add(lines);
        QCOMPARE(words(session.loginItem().registerItem()), QString());
        QCOMPARE(Session::read(session.file), written);
    }

    void namesTheProgramWhateverItsPath_data()
    {
        addNames();
        QTest::newRow("with percent signs, which GIO would not find") << u"100%u/50%%"_s;
    }
    void namesTheProgramWhateverItsPath()
    {
        QFETCH(const QString, name);
        const Session session;
        const QString program = session.addProgram(name);
        // The file of a refused item does not stay: this program is found by its name as it would
        // stand in the line.
        session.addProgram(QString(name).replace(u'%', u"%%"_s));
        QCOMPARE(words(AutostartLoginItem(session.folder, program).registerItem()), QString());
        QCOMPARE(parseExecLine(value(session.file, "Exec"), {}).value(), QStringList(program));
        QCOMPARE(value(session.file, "TryExec"), program);
    }

    void isStartedByGioWhateverThePath_data() { addNames(); }
    void isStartedByGioWhateverThePath()
    {
        QFETCH(const QString, name);
        const Session session;
        const QString program = session.addProgram(name);
        QCOMPARE(words(AutostartLoginItem(session.folder, program).registerItem()), QString());
        const auto app = DesktopApp::fromFile(session.file);
        QVERIFY(app);
        QVERIFY(g_app_info_launch(G_APP_INFO(app->get()), nullptr, nullptr, nullptr));
        QTRY_COMPARE(session.started(), program);
    }

    void leavesNothingWhereTheDesktopWouldNotFindTheProgram_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("one that is not there") << u"nothing"_s;
        QTest::newRow("one whose path has a percent sign") << u"100%"_s;
    }
    void leavesNothingWhereTheDesktopWouldNotFindTheProgram()
    {
        QFETCH(const QString, name);
        const Session session;
        session.addProgram(u"100%"_s);
        const QString program = session.home.filePath(u"programs/"_s + name);
        AutostartLoginItem loginItem(session.folder, program);
        QCOMPARE(words(loginItem.registerItem()),
                 u"The desktop finds no program at “%1”."_s.arg(program));
        QCOMPARE(loginItem.status(), LoginItemStatus::notRegistered);
    }

    void mirrorsTheFile_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<LoginItemStatus>("status");
        const auto add = [](const char *row, const QByteArray &lines, LoginItemStatus status) {
            QTest::newRow(row) << lines << status;
        };
        using enum LoginItemStatus;
        add("nothing special", "", enabled);
        add("hidden", "Hidden=true", requiresApproval);
        add("hidden, as old files have it", "Hidden=1", requiresApproval);
        add("hidden, and a blank behind", "Hidden=true ", requiresApproval);
        add("not hidden", "Hidden=false", enabled);
        add("hidden in words that mean nothing", "Hidden=yes", enabled);
        add("switched off by GNOME", "X-GNOME-Autostart-enabled=false", requiresApproval);
        add("switched on by GNOME", "X-GNOME-Autostart-enabled=true", enabled);
        add("switched off by MATE", "X-MATE-Autostart-enabled=false", requiresApproval);
        add("switched on by MATE", "X-MATE-Autostart-enabled=true", enabled);
        add("a comment that would switch it off", "#Hidden=true", enabled);
        add("a key of another group", "[Other]\nHidden=true", enabled);
        add("what it needs is there", "TryExec=sh", enabled);
        add("what it needs is missing", "TryExec=/no/such", notFound);
        add("hidden, and what it needs is missing", "Hidden=true\nTryExec=/no/such", notFound);
    }
    void mirrorsTheFile()
    {
        QFETCH(const QByteArray, lines);
        const Session session;
        session.addComplete(lines);
        QTEST(session.loginItem().status(), "status");
    }

    void isNotFoundWhereTheFileStartsNothing_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::newRow("an empty file") << QByteArray();
        QTest::newRow("words") << QByteArray("words");
        QTest::newRow("no program") << QByteArray("Type=Application\nName=Corvane");
        QTest::newRow("a missing program")
            << QByteArray("Type=Application\nName=Corvane\nExec=/no/such");
        QTest::newRow("a missing program, switched off")
            << QByteArray("Type=Application\nName=Corvane\nExec=/no/such\nHidden=true");
        QTest::newRow("a link") << QByteArray("Type=Link\nName=Corvane\nURL=https://example.org");
    }
    void isNotFoundWhereTheFileStartsNothing()
    {
        QFETCH(const QByteArray, lines);
        const Session session;
        session.add(lines);
        QCOMPARE(session.loginItem().status(), LoginItemStatus::notFound);
    }

    void isNotFoundAfterTheProgramHasGone()
    {
        const Session session;
        session.loginItem().registerItem();
        QVERIFY(QFile::remove(session.program));
        QCOMPARE(session.loginItem().status(), LoginItemStatus::notFound);
    }

    void removesTheFile()
    {
        const Session session;
        session.loginItem().registerItem();
        QCOMPARE(words(session.loginItem().unregisterItem()), QString());
        QVERIFY(QDir(session.folder).isEmpty());
        QCOMPARE(session.loginItem().status(), LoginItemStatus::notRegistered);
    }

    void doesNotMindThatThereIsNothingToRemove()
    {
        const Session session;
        QCOMPARE(words(session.loginItem().unregisterItem()), QString());
    }

    // What is not as usual

    void isNotRegisteredByALinkToNothing()
    {
        const Session session;
        QDir().mkpath(session.folder);
        QFile::link(u"/no/such"_s, session.file);
        QCOMPARE(session.loginItem().status(), LoginItemStatus::notRegistered);
        QCOMPARE(words(session.loginItem().unregisterItem()), QString());
        QVERIFY(!QFileInfo(session.file).isSymLink());
    }

    void isRegisteredByALinkToAFile()
    {
        const Session session;
        session.addComplete("");
        const QString file = session.home.filePath(u"linked.desktop"_s);
        QVERIFY(QFile::rename(session.file, file) && QFile::link(file, session.file));
        QCOMPARE(session.loginItem().status(), LoginItemStatus::enabled);
    }

    void writesNothingToWhereALinkLeads_data()
    {
        QTest::addColumn<bool>("isThere");
        QTest::newRow("a file") << true;
        QTest::newRow("nothing") << false;
    }
    void writesNothingToWhereALinkLeads()
    {
        QFETCH(const bool, isThere);
        const Session session;
        const QString file = session.home.filePath(u"linked.desktop"_s);
        if (isThere)
            Session::write(file, "not ours");
        QDir().mkpath(session.folder);
        QVERIFY(QFile::link(file, session.file));
        QCOMPARE(words(session.loginItem().registerItem()), QString());
        QCOMPARE(session.loginItem().status(), LoginItemStatus::enabled);
        QCOMPARE(Session::read(file), QByteArray(isThere ? "not ours" : ""));
    }

    void isForTheUserAlone()
    {
        const Session session;
        const mode_t usual = umask(0);
        const auto restored = qScopeGuard([usual] { umask(usual); });
        QCOMPARE(words(session.loginItem().registerItem()), QString());
        const auto read = QFile::ReadOwner | QFile::ReadUser;
        const auto readAndWrite = read | QFile::WriteOwner | QFile::WriteUser;
        QCOMPARE(QFile::permissions(session.file), readAndWrite);
        QCOMPARE(QFile::permissions(session.folder),
                 readAndWrite | QFile::ExeOwner | QFile::ExeUser);
    }

    void doesNotWaitForAPipeInItsPlace()
    {
        const Session session;
        QVERIFY(QDir().mkpath(session.folder));
        QCOMPARE(mkfifo(QFile::encodeName(session.file).constData(), 0600), 0);
        QCOMPARE(session.loginItem().status(), LoginItemStatus::notFound);
    }

    void saysWhyAFolderInItsPlaceCannotBeReplaced()
    {
        const Session session;
        QVERIFY(QDir().mkpath(session.file));
        QCOMPARE(session.loginItem().status(), LoginItemStatus::notFound);
        QCOMPARE(words(session.loginItem().registerItem()),
                 u"“%1” is not a file."_s.arg(session.file));
        QCOMPARE(words(session.loginItem().unregisterItem()), u"Is a directory"_s);
    }

    void saysWhyAFileInPlaceOfItsFolderIsInTheWay()
    {
        const Session session;
        QDir().mkpath(session.home.filePath(u"config"_s));
        Session::write(session.folder, "not ours");
        QCOMPARE(session.loginItem().status(), LoginItemStatus::notRegistered);
        QCOMPARE(words(session.loginItem().registerItem()),
                 u"The folder “%1” could not be made: File exists"_s.arg(session.folder));
        QCOMPARE(words(session.loginItem().unregisterItem()), QString());
        QCOMPARE(Session::read(session.folder), QByteArray("not ours"));
    }

    void saysWhyNothingCanBeWritten_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::newRow("in a folder") << u"/proc/self"_s;
        QTest::newRow("where a folder would have to be made") << u"/proc/self/autostart"_s;
    }
    void saysWhyNothingCanBeWritten()
    {
        QFETCH(const QString, folder);
        const Session session;
        AutostartLoginItem loginItem(folder, session.program);
        // Other words for root than for other users.
        QVERIFY(!words(loginItem.registerItem()).isEmpty());
        QCOMPARE(loginItem.status(), LoginItemStatus::notRegistered);
    }

    void keepsTheOldFileWhereTheNewOneHasNoSpace()
    {
        const Session session;
        session.addComplete("Hidden=true");
        const QByteArray before = Session::read(session.file);
        const auto error = withLittleSpace([&] { return session.loginItem().registerItem(); });
        QCOMPARE(words(error), u"File too large"_s);
        QCOMPARE(Session::read(session.file), before);
        QCOMPARE(QDir(session.folder).entryList(QDir::Files), QStringList(fileName));
    }

    void knowsTheRunningProgram()
    {
        QCOMPARE(runningProgram(), QCoreApplication::applicationFilePath());
    }
};

QTEST_GUILESS_MAIN(AutostartLoginItemTest)
#include "AutostartLoginItemTest.moc"
