// How the library makes Shortcuts: which names it takes, what it writes, and why it makes none.

#include "foundation/Files.h"
#include "platform/linux/scripts/LinuxShortcutLibrary.h"
#include "support/LittleSpace.h"
#include "support/TemporaryFiles.h"

#include <QProcess>
#include <QTest>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
mode_t modeOf(const QString &path)
{
    struct stat status = {};
    return stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777 : 0;
}

/// A user without Shortcuts on a computer without Shortcuts.
struct Home : TemporaryFiles {
    Home()
    {
        qputenv("XDG_DATA_HOME", QFile::encodeName(folder.filePath(u"my data"_s)));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(folder.filePath(u"system"_s)));
    }

    QString personalFolder() const { return folder.filePath(u"my data/shortcuts"_s); }
    QString file(const QString &name) const { return personalFolder() + u'/' + name; }
    QStringList files() const
    {
        return QDir(personalFolder())
            .entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    /// The path of the new Shortcut, or else why none is made.
    static QString make(const QString &name)
    {
        const auto path = LinuxShortcutLibrary().create(name);
        return path ? *path : path.error().description;
    }
};
} // namespace

class NewShortcutTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makesAScriptThatItFindsByThatName_data()
    {
        QTest::addColumn<QString>("name");
        for (const QString &name :
             {u"Tidy Up"_s, u"Tidy.sh"_s, u"Dr. No"_s, u"Notes 1.2"_s, u"ends."_s, u"-rf"_s,
              u"100%s %20"_s, u"a'b\"c$(d)"_s, u"🌙"_s, u"مكتبة"_s, u"\u200fmark"_s, u"e\u0301"_s,
              u"x.DESKTOP"_s, u"~a"_s, QString(255, u'a')})
            QTest::newRow(qPrintable(name.left(20))) << name;
    }
    void makesAScriptThatItFindsByThatName()
    {
        QFETCH(const QString, name);
        const Home home;
        QCOMPARE(Home::make(name), home.file(name));
        const auto found = LinuxShortcutLibrary::find(name);
        QVERIFY(found);
        QCOMPARE(*found, home.file(name));
        QCOMPARE(LinuxShortcutLibrary().names().size(), 1);
    }

    void makesAScriptThatRunsAndDoesNothing()
    {
        const Home home;
        QProcess script;
        script.start(Home::make(u"Tidy"_s), QStringList());
        QVERIFY(script.waitForFinished());
        QCOMPARE(script.exitCode(), 0);
        QCOMPARE(script.readAllStandardOutput() + script.readAllStandardError(), QByteArray());
    }

    void letsOnlyTheUserUseTheScriptAndItsFolder_data()
    {
        QTest::addColumn<int>("mask");
        for (const int mask : {0, 022, 077, 0777})
            QTest::addRow("with umask %o", unsigned(mask)) << mask;
    }
    void letsOnlyTheUserUseTheScriptAndItsFolder()
    {
        QFETCH(const int, mask);
        const Home home;
        const mode_t before = umask(mode_t(mask));
        const QString path = Home::make(u"Tidy"_s);
        umask(before);
        QCOMPARE(modeOf(path), mode_t(0700));
        QCOMPARE(modeOf(home.personalFolder()), mode_t(0700));
        QCOMPARE(modeOf(home.folder.filePath(u"my data"_s)), mode_t(0700));
    }

    void makesTheFolder()
    {
        const Home home;
        const auto path = LinuxShortcutLibrary().folder();
        QVERIFY(path);
        QCOMPARE(*path, home.personalFolder());
        QCOMPARE(modeOf(*path), mode_t(0700));
    }

    void leavesTheFolderAsItIs()
    {
        const Home home;
        QVERIFY(QDir().mkpath(home.personalFolder()));
        const mode_t before = modeOf(home.personalFolder());
        QCOMPARE(Home::make(u"Tidy"_s), home.file(u"Tidy"_s));
        QCOMPARE(modeOf(home.personalFolder()), before);
    }

    void refusesANameThatCannotBeUsed_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        const QString cannotBe = u"“%1” cannot be the name of a Shortcut."_s;
        const QString begins = u"The name must not begin with a full stop."_s;
        const QString ends = u"The name must not end with “%1”."_s;
        const auto row = [](const char *description, const QString &name, const QString &reason) {
            QTest::newRow(description) << name << reason;
        };
        row("none", {}, u"Please give the script a name."_s);
        row("a hidden file", u".Tidy"_s, begins);
        row("the folder above", u".."_s, begins);
        row("a former version", u"Tidy~"_s, ends.arg(u"~"_s));
        row("a launcher", u"Tidy.desktop"_s, ends.arg(u".desktop"_s));
        row("a path", u"a/b"_s, cannotBe.arg(u"a/b"_s));
        row("two full stops in a row", u"a..b"_s, cannotBe.arg(u"a..b"_s));
        row("two lines", u"a\nb"_s, cannotBe.arg(u"a b"_s));
        row("a turn of direction", u"a\u202eb"_s, cannotBe.arg(u"ab"_s));
        row("half a pair of UTF-16", u"a"_s + QChar(0xD83C), cannotBe.arg(u"a"_s + QChar(0xD83C)));
        row("a mark of byte order", QChar(0xFEFF) + u"a"_s, cannotBe.arg(QChar(0xFEFF) + u"a"_s));
        row("more letters than a file name has", QString(256, u'a'), u"The name is too long."_s);
        row("more bytes than a file name has", u"🌙"_s.repeated(64), u"The name is too long."_s);
    }
    void refusesANameThatCannotBeUsed()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, reason);
        const Home home;
        QCOMPARE(Home::make(name), reason);
        QVERIFY(!QFileInfo::exists(home.personalFolder()));
    }

    void refusesANameThatAShortcutAnswersTo_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("name");
        const QString own = u"my data/shortcuts/"_s;
        const QString other = u"system/shortcuts/"_s;
        QTest::newRow("its file name") << own + u"Tidy"_s << u"Tidy"_s;
        QTest::newRow("its name without the extension") << own + u"Tidy.sh"_s << u"Tidy"_s;
        QTest::newRow("its name and an extension") << own + u"Tidy"_s << u"Tidy.sh"_s;
        QTest::newRow("its name and another extension") << own + u"Tidy.py"_s << u"Tidy.sh"_s;
        QTest::newRow("its name without the last of two extensions")
            << own + u"Tidy.old.sh"_s << u"Tidy.old"_s;
        QTest::newRow("a launcher's name") << own + u"Tidy.desktop"_s << u"Tidy"_s;
        QTest::newRow("the name of one of the system") << other + u"Tidy"_s << u"Tidy"_s;
        QTest::newRow("what would hide one of the system") << other + u"Tidy"_s << u"Tidy.sh"_s;
        QTest::newRow("a name that looks the same") << own + u"\u00e9.sh"_s << u"e\u0301"_s;
    }
    void refusesANameThatAShortcutAnswersTo()
    {
        QFETCH(const QString, file);
        QFETCH(const QString, name);
        const Home home;
        // It need not be executable.
        home.write(file, "kept");
        const QStringList before = home.files();
        QCOMPARE(Home::make(name),
                 u"There is already a Shortcut “%1”."_s.arg(QFileInfo(file).fileName()));
        QCOMPARE(home.files(), before);
        QCOMPARE(readWhole(home.folder.filePath(file), 100).value(), QByteArray("kept"));
    }

    void takesANameThatNoShortcutAnswersTo_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("name");
        QTest::newRow("another case") << u"tidy"_s << u"Tidy"_s;
        QTest::newRow("a number that is no extension") << u"Notes 1.2"_s << u"Notes 1"_s;
        QTest::newRow("that of a former version") << u"Tidy~"_s << u"Tidy"_s;
        QTest::newRow("the beginning of another") << u"Tidy Up"_s << u"Tidy"_s;
    }
    void takesANameThatNoShortcutAnswersTo()
    {
        QFETCH(const QString, file);
        QFETCH(const QString, name);
        const Home home;
        home.write(u"my data/shortcuts/"_s + file, {});
        QCOMPARE(Home::make(name), home.file(name));
    }

    void writesOverNothing_data()
    {
        using Making = std::function<bool(const QByteArray &path)>;
        QTest::addColumn<Making>("makeIt");
        QTest::newRow("a folder") << Making(
            [](const QByteArray &path) { return mkdir(path, 0700) == 0; });
        QTest::newRow("a pipe") << Making(
            [](const QByteArray &path) { return mkfifo(path, 0700) == 0; });
        QTest::newRow("a link to nowhere")
            << Making([](const QByteArray &path) { return symlink("nowhere", path) == 0; });
    }
    void writesOverNothing()
    {
        QFETCH(const std::function<bool(const QByteArray &)>, makeIt);
        const Home home;
        QVERIFY(QDir().mkpath(home.personalFolder()));
        QVERIFY(makeIt(QFile::encodeName(home.file(u"Tidy"_s))));
        QCOMPARE(Home::make(u"Tidy"_s), u"“Tidy” could not be made: File exists"_s);
        QCOMPARE(home.files(), QStringList(u"Tidy"_s));
    }

    void leavesNoHalfFileBehindOnAFullDisk()
    {
        const Home home;
        const QString outcome = withLittleSpace([] { return Home::make(u"Tidy"_s); });
        QCOMPARE(outcome, u"“Tidy” could not be made: File too large"_s);
        QCOMPARE(home.files(), QStringList());
    }

    void saysWhyTheFolderCannotBeMade_data()
    {
        QTest::addColumn<bool>("isLink");
        QTest::newRow("a file is in its place") << false;
        QTest::newRow("a link to nowhere is in its place") << true;
    }
    void saysWhyTheFolderCannotBeMade()
    {
        QFETCH(const bool, isLink);
        const Home home;
        home.write(u"my data/x"_s, {});
        const QString place = home.personalFolder();
        if (isLink)
            QVERIFY(QFile::link(u"nowhere"_s, place));
        else
            home.write(u"my data/shortcuts"_s, {});
        const QString reason = u"The folder “%1” could not be made: File exists"_s.arg(place);
        QCOMPARE(Home::make(u"Tidy"_s), reason);
        QCOMPARE(LinuxShortcutLibrary().folder().error().description, reason);
        QVERIFY(!QFileInfo::exists(home.folder.filePath(u"my data/nowhere"_s)));
    }

    void makesNothingThatWouldNotRun()
    {
        const Home home;
        QVERIFY(QDir().mkpath(home.personalFolder()));
        QCOMPARE(chmod(QFile::encodeName(home.personalFolder()).constData(), 0777), 0);
        QCOMPARE(Home::make(u"Tidy"_s),
                 u"Other users may change “%1”, so the Shortcut is not run."_s.arg(
                     home.personalFolder()));
        QCOMPARE(home.files(), QStringList());
    }

    void makesAScriptInAFolderThatIsALink()
    {
        const Home home;
        QVERIFY(QDir(home.folder.path()).mkpath(u"elsewhere"_s));
        home.write(u"my data/x"_s, {});
        QVERIFY(QFile::link(u"../elsewhere"_s, home.personalFolder()));
        QCOMPARE(Home::make(u"Tidy"_s), home.file(u"Tidy"_s));
        QVERIFY(QFileInfo::exists(home.folder.filePath(u"elsewhere/Tidy"_s)));
    }

    void takesNoNoticeOfARelativeFolder()
    {
        const Home home;
        const auto restored = qScopeGuard([before = qgetenv("HOME")] { qputenv("HOME", before); });
        qputenv("HOME", QFile::encodeName(home.folder.path()));
        for (const char *relative : {"data", ""}) {
            qputenv("XDG_DATA_HOME", relative);
            const QString name = u"Tidy"_s + QString::fromLatin1(relative);
            QCOMPARE(Home::make(name), home.folder.filePath(u".local/share/shortcuts/"_s + name));
        }
    }
};

QTEST_GUILESS_MAIN(NewShortcutTest)
#include "NewShortcutTest.moc"
