// Which links run which Shortcuts: what the companion program decides before it starts anything.

#include "companion/JournalStream.h"
#include "companion/ShortcutLink.h"
#include "foundation/Text.h"
#include "platform/linux/scripts/LinuxShortcutLibrary.h"

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QTemporaryDir>
#include <QTest>
#include <functional>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/xattr.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
/// No user of this computer that the test runs as.
constexpr uid_t somebodyElse = 54321;

/// The folders in which Shortcuts are looked for.
class Folders
{
public:
    Folders()
    {
        qputenv("XDG_DATA_HOME", QFile::encodeName(m_root.filePath(u"home"_s)));
        qputenv("XDG_DATA_DIRS",
                QFile::encodeName(m_root.filePath(u"one"_s) + u':' + m_root.filePath(u"two/"_s)));
        for (const QString &data : {u"home"_s, u"one"_s, u"two"_s})
            QDir().mkpath(m_root.filePath(data) + u"/shortcuts"_s);
    }

    QString path(const QString &relative) const { return m_root.filePath(relative); }
    QString file(const QString &name) const { return m_root.filePath(u"home/shortcuts/"_s + name); }

    /// With all on the way made as well; the text is its path.
    QString write(const QString &relative, mode_t mode = 0755,
                  const QByteArray &content = "#!/bin/sh\n") const
    {
        const QString written = path(relative);
        QDir().mkpath(QFileInfo(written).path());
        QFile file(written);
        if (!file.open(QIODevice::WriteOnly) || file.write(content) < 0)
            qFatal("cannot write %s", qPrintable(written));
        file.close();
        setMode(relative, mode);
        return written;
    }
    QString add(const QString &name, mode_t mode = 0755) const
    {
        return write(u"home/shortcuts/"_s + name, mode);
    }
    void setMode(const QString &relative, mode_t mode) const
    {
        chmod(QFile::encodeName(path(relative)).constData(), mode);
    }
    void setOwner(const QString &relative, uid_t owner, gid_t group) const
    {
        if (lchown(QFile::encodeName(path(relative)).constData(), owner, group) != 0)
            qFatal("cannot give %s away", qPrintable(relative));
    }
    void link(const QString &target, const QString &relative) const
    {
        if (symlink(QFile::encodeName(target).constData(),
                    QFile::encodeName(path(relative)).constData())
            != 0)
            qFatal("cannot make the link %s", qPrintable(relative));
    }

private:
    QTemporaryDir m_root;
};

QByteArray launcher(const QByteArray &program)
{
    return "[Desktop Entry]\nType=Application\nName=L\nExec=" + program + '\n';
}

/// The path that is found for the name, or else why none is.
QString found(const QString &name)
{
    const auto path = LinuxShortcutLibrary::find(name);
    return path ? *path : path.error().description;
}

QString nameIn(const QByteArray &link)
{
    const auto name = shortcutName(link);
    return name ? *name : u"refused: "_s + name.error().description;
}

using Change = std::function<void(const Folders &)>;
} // namespace

Q_DECLARE_METATYPE(Change)

class CompanionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale(u"en_US"_s)); }

    void takesTheNameFromALink_data()
    {
        QTest::addColumn<QByteArray>("encoded");
        QTest::addColumn<QString>("name");
        QTest::newRow("of letters") << QByteArray("Tidy") << u"Tidy"_s;
        QTest::newRow("with a blank") << QByteArray("Tidy%20Up") << u"Tidy Up"_s;
        QTest::newRow("with what separates the parts of a link")
            << QByteArray("a%26b%3dc%23d%3Fe%25") << u"a&b=c#d?e%"_s;
        QTest::newRow("with a plus") << QByteArray("1+1%2B1") << u"1+1+1"_s;
        QTest::newRow("in Greek") << QByteArray("%CE%B1%CE%B2") << u"αβ"_s;
        QTest::newRow("beyond 16 bits") << QByteArray("%F0%9F%8C%99") << u"🌙"_s;
        QTest::newRow("in Greek without escapes") << QByteArray("\xce\xb1\xce\xb2") << u"αβ"_s;
        QTest::newRow("with a dot") << QByteArray("Notes.1.2") << u"Notes.1.2"_s;
        QTest::newRow("that looks like an option") << QByteArray("--help") << u"--help"_s;
    }
    void takesTheNameFromALink()
    {
        QFETCH(const QByteArray, encoded);
        QFETCH(const QString, name);
        QCOMPARE(nameIn("shortcuts://run-shortcut?name=" + encoded), name);
    }

    void refusesOtherLinks_data()
    {
        QTest::addColumn<QByteArray>("link");
        const auto row = [](const char *description, const QByteArray &link) {
            QTest::newRow(description) << link;
        };
        row("nothing", "");
        row("no link", "Tidy Up");
        row("another scheme", "https://run-shortcut?name=Tidy");
        row("another host", "shortcuts://open-shortcut?name=Tidy");
        row("a host that goes on", "shortcuts://run-shortcut.example.com?name=Tidy");
        row("a user", "shortcuts://me@run-shortcut?name=Tidy");
        row("a port", "shortcuts://run-shortcut:80?name=Tidy");
        row("a path", "shortcuts://run-shortcut/a?name=Tidy");
        row("no host", "shortcuts:run-shortcut?name=Tidy");
        row("no query", "shortcuts://run-shortcut");
        row("no value", "shortcuts://run-shortcut?name");
        row("another query item", "shortcuts://run-shortcut?title=Tidy");
        row("a query item before", "shortcuts://run-shortcut?input=x&name=Tidy");
        row("a query item behind", "shortcuts://run-shortcut?name=Tidy&input=x");
        row("an empty query item behind", "shortcuts://run-shortcut?name=Tidy&");
        row("a fragment", "shortcuts://run-shortcut?name=Tidy#a");
        row("an escape without digits", "shortcuts://run-shortcut?name=100%");
        row("an escape of one digit", "shortcuts://run-shortcut?name=Tidy%2");
        row("an escape of other letters", "shortcuts://run-shortcut?name=Tidy%2gUp");
        row("a blank", "shortcuts://run-shortcut?name=Tidy Up");
        row("a line break", "shortcuts://run-shortcut?name=Tidy\n");
        row("quotation marks", "shortcuts://run-shortcut?name=\"Tidy\"");
        row("half a letter of UTF-8 without escapes", "shortcuts://run-shortcut?name=\xce");
        row("bytes that are not UTF-8", "shortcuts://run-shortcut?name=Tidy%FF");
        row("half a letter of UTF-8", "shortcuts://run-shortcut?name=Tidy%CE");
        row("half a pair of UTF-16", "shortcuts://run-shortcut?name=%ED%A0%80");
        row("a longer form of UTF-8", "shortcuts://run-shortcut?name=%C0%AE%C0%AE");
        row("a mark of byte order", "shortcuts://run-shortcut?name=%EF%BB%BFTidy");
    }
    void refusesOtherLinks()
    {
        QFETCH(const QByteArray, link);
        const QString shown = onOneLine(QString::fromUtf8(link));
        QCOMPARE(nameIn(link), u"refused: “%1” is not a link that runs a Shortcut."_s.arg(shown));
    }

    void refusesWhatIsNoName_data()
    {
        QTest::addColumn<QByteArray>("encoded");
        QTest::addColumn<QString>("reason");
        const QString cannotBe = u"refused: “%1” cannot be the name of a Shortcut."_s;
        QTest::newRow("no name") << QByteArray() << u"refused: The link names no Shortcut."_s;
        QTest::newRow("a path") << QByteArray("%2Fbin%2Fsh") << cannotBe.arg(u"/bin/sh"_s);
        QTest::newRow("a plain path") << QByteArray("../sh") << cannotBe.arg(u"../sh"_s);
        QTest::newRow("two dots inside") << QByteArray("a..b") << cannotBe.arg(u"a..b"_s);
        QTest::newRow("the folder above") << QByteArray("%2E%2e") << cannotBe.arg(u".."_s);
        QTest::newRow("a zero byte") << QByteArray("Tidy%00.sh") << cannotBe.arg(u"Tidy .sh"_s);
        QTest::newRow("a line break") << QByteArray("Tidy%0AUp") << cannotBe.arg(u"Tidy Up"_s);
        QTest::newRow("an escape of terminals") << QByteArray("%1B") << cannotBe.arg(u" "_s);
        QTest::newRow("a turn of direction")
            << QByteArray("Tidy%E2%80%AEpU%E2%81%A6") << cannotBe.arg(u"TidypU"_s);
        QTest::newRow("a very long one")
            << QByteArray(1000, '/') << cannotBe.arg(QString(299, u'/') + u'…');
    }
    void refusesWhatIsNoName()
    {
        QFETCH(const QByteArray, encoded);
        QFETCH(const QString, reason);
        QCOMPARE(nameIn("shortcuts://run-shortcut?name=" + encoded), reason);
    }

    void findsAFile_data()
    {
        QTest::addColumn<QStringList>("files");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("file");
        const auto row = [](const char *description, const QStringList &files, const QString &name,
                            const QString &file) {
            QTest::newRow(description) << files << name << file;
        };
        row("by its name", {u"home/shortcuts/Tidy Up"_s}, u"Tidy Up"_s,
            u"home/shortcuts/Tidy Up"_s);
        row("without its extension", {u"home/shortcuts/Tidy Up.sh"_s}, u"Tidy Up"_s,
            u"home/shortcuts/Tidy Up.sh"_s);
        row("with its extension", {u"home/shortcuts/Tidy Up.sh"_s}, u"Tidy Up.sh"_s,
            u"home/shortcuts/Tidy Up.sh"_s);
        row("of exactly that name before one with an extension",
            {u"home/shortcuts/Tidy"_s, u"home/shortcuts/Tidy.sh"_s}, u"Tidy"_s,
            u"home/shortcuts/Tidy"_s);
        row("of the user before one of the system",
            {u"two/shortcuts/Tidy"_s, u"home/shortcuts/Tidy.sh"_s}, u"Tidy"_s,
            u"home/shortcuts/Tidy.sh"_s);
        row("of the system", {u"two/shortcuts/Tidy"_s}, u"Tidy"_s, u"two//shortcuts/Tidy"_s);
        row("in the system's first folder", {u"two/shortcuts/Tidy"_s, u"one/shortcuts/Tidy"_s},
            u"Tidy"_s, u"one/shortcuts/Tidy"_s);
        row("with a number that is no extension", {u"home/shortcuts/Notes 1.2"_s}, u"Notes 1.2"_s,
            u"home/shortcuts/Notes 1.2"_s);
        row("beside another that may not be executed",
            {u"home/shortcuts/Tidy"_s + u"!"_s, u"home/shortcuts/Tidy.sh"_s}, u"Tidy"_s,
            u"home/shortcuts/Tidy.sh"_s);
    }
    void findsAFile()
    {
        QFETCH(const QStringList, files);
        QFETCH(const QString, name);
        QFETCH(const QString, file);
        const Folders folders;
        for (const QString &each : files) {
            // Marked as one that may not be executed.
            if (each.endsWith(u'!'))
                folders.write(each.chopped(1), 0644);
            else
                folders.write(each);
        }
        QCOMPARE(found(name), folders.path(file));
    }

    void doesNotFindWhatIsNoShortcut_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("a name that no file has") << u"Nothing"_s;
        QTest::newRow("another case") << u"tidy"_s;
        QTest::newRow("part of a name") << u"Tid"_s;
        QTest::newRow("what is no extension") << u"Notes 1"_s;
        QTest::newRow("a hidden file") << u".hidden"_s;
        QTest::newRow("a former version") << u"Tidy~"_s;
        QTest::newRow("a former version without its extension") << u"Old"_s;
        QTest::newRow("a folder") << u"folder"_s;
        QTest::newRow("a pipe") << u"pipe"_s;
        QTest::newRow("a link to a pipe") << u"link to a pipe"_s;
        QTest::newRow("a link to a folder") << u"link to a folder"_s;
        QTest::newRow("a link to nowhere") << u"link to nowhere"_s;
        QTest::newRow("a file of a folder in the folder") << u"inside"_s;
    }
    void doesNotFindWhatIsNoShortcut()
    {
        QFETCH(const QString, name);
        const Folders folders;
        for (const QString &file : {u"Tidy"_s, u"Notes 1.2"_s, u".hidden"_s, u"Tidy~"_s,
                                    u"Old.sh~"_s, u"folder/inside"_s})
            folders.add(file);
        QCOMPARE(mkfifo(QFile::encodeName(folders.file(u"pipe"_s)).constData(), 0755), 0);
        folders.link(u"pipe"_s, u"home/shortcuts/link to a pipe"_s);
        folders.link(u"folder"_s, u"home/shortcuts/link to a folder"_s);
        folders.link(u"/nowhere"_s, u"home/shortcuts/link to nowhere"_s);
        QCOMPARE(
            found(name),
            u"There is no Shortcut of this name in %1."_s.arg(folders.path(u"home/shortcuts"_s)));
    }

    void saysWhichOfSeveralThereAre()
    {
        const Folders folders;
        folders.add(u"Tidy.sh"_s);
        folders.add(u"Tidy.py"_s);
        QCOMPARE(found(u"Tidy"_s),
                 u"Several Shortcuts have this name: “Tidy.py”, “Tidy.sh”. Say which by its "
                 "extension."_s);
        QCOMPARE(found(u"Tidy.py"_s), folders.file(u"Tidy.py"_s));
    }

    void saysThatAFileIsNotExecutable()
    {
        const Folders folders;
        folders.add(u"Tidy.sh"_s, 0644);
        folders.write(u"one/shortcuts/Tidy"_s);
        QCOMPARE(found(u"Tidy"_s),
                 u"“Tidy.sh” is not executable. Allow it to be executed as a program in its "
                 "properties."_s);
    }

    void findsALauncherThatIsNotExecutable()
    {
        const Folders folders;
        const QString path =
            folders.write(u"home/shortcuts/Tidy.desktop"_s, 0644, launcher("true"));
        QCOMPARE(found(u"Tidy"_s), path);
    }

    void saysThatALauncherCannotBeUsed_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("because it is none") << QByteArray("#!/bin/sh\n");
        QTest::newRow("because its program is not there") << launcher("/nowhere/at-all");
        QTest::newRow("because it names no program")
            << QByteArray("[Desktop Entry]\nType=Application\nName=L\n");
        QTest::newRow("because it counts as deleted") << launcher("true") + "Hidden=true\n";
        QTest::newRow("because it is no application's")
            << QByteArray("[Desktop Entry]\nType=Link\nName=L\nURL=https://example.com\n");
    }
    void saysThatALauncherCannotBeUsed()
    {
        QFETCH(const QByteArray, content);
        const Folders folders;
        folders.write(u"home/shortcuts/Tidy.desktop"_s, 0755, content);
        QCOMPARE(found(u"Tidy"_s),
                 u"The launcher starts no program, or one that is not installed."_s);
    }

    void takesNoNoticeOfRelativeFolders()
    {
        const Folders folders;
        folders.write(u"work/a/shortcuts/Relative"_s);
        folders.write(u"work/.local/share/shortcuts/Mine"_s);
        const QString before = QDir::currentPath();
        QDir::setCurrent(folders.path(u"work"_s));
        const QByteArray home = qgetenv("HOME");
        const auto restored = qScopeGuard([&] {
            QDir::setCurrent(before);
            qputenv("HOME", home);
        });
        qputenv("HOME", QFile::encodeName(folders.path(u"work"_s)));
        qputenv("XDG_DATA_HOME", "a");
        qputenv("XDG_DATA_DIRS", "a:./a:");
        QCOMPARE(LinuxShortcutLibrary().names(), QStringList(u"Mine"_s));
        QCOMPARE(found(u"Relative"_s),
                 u"There is no Shortcut of this name in ~/.local/share/shortcuts."_s);
    }

    void runsWhatOnlyTheUserCanChange_data()
    {
        QTest::addColumn<Change>("change");
        QTest::newRow("a plain file")
            << Change([](const Folders &folders) { folders.add(u"S"_s); });
        QTest::newRow("a link to a file of the system") << Change(
            [](const Folders &folders) { folders.link(u"/bin/true"_s, u"home/shortcuts/S"_s); });
        QTest::newRow("a link to a link") << Change([](const Folders &folders) {
            folders.write(u"bin/real"_s);
            folders.link(u"real"_s, u"bin/link"_s);
            folders.link(u"../../bin/./link"_s, u"home/shortcuts/S"_s);
        });
        QTest::newRow("a folder that is a link") << Change([](const Folders &folders) {
            folders.write(u"elsewhere/S"_s);
            QDir().rmdir(folders.path(u"home/shortcuts"_s));
            folders.link(u"../elsewhere"_s, u"home/shortcuts"_s);
        });
        QTest::newRow("a link into a sticky folder of all") << Change([](const Folders &folders) {
            folders.write(u"all/S"_s);
            folders.setMode(u"all"_s, 01777);
            folders.link(folders.path(u"all/S"_s), u"home/shortcuts/S"_s);
        });
    }
    void runsWhatOnlyTheUserCanChange()
    {
        QFETCH(const Change, change);
        const Folders folders;
        change(folders);
        QCOMPARE(found(u"S"_s), folders.file(u"S"_s));
        QCOMPARE(LinuxShortcutLibrary().names(), QStringList(u"S"_s));
    }

    void refusesWhatOthersMayChange_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<QString>("culprit");
        const auto row = [](const char *description, const QString &culprit, const Change &change) {
            QTest::newRow(description) << change << culprit;
        };
        row("a file", u"home/shortcuts/S"_s,
            [](const Folders &folders) { folders.setMode(u"home/shortcuts/S"_s, 0757); });
        row("a sticky file", u"home/shortcuts/S"_s,
            [](const Folders &folders) { folders.setMode(u"home/shortcuts/S"_s, 01757); });
        row("the folder", u"home/shortcuts"_s,
            [](const Folders &folders) { folders.setMode(u"home/shortcuts"_s, 0777); });
        row("a folder above", u"home"_s,
            [](const Folders &folders) { folders.setMode(u"home"_s, 0777); });
        row("the file that a link leads to", u"bin/S"_s, [](const Folders &folders) {
            folders.write(u"bin/S"_s, 0777);
            QFile::remove(folders.file(u"S"_s));
            folders.link(u"../../bin/S"_s, u"home/shortcuts/S"_s);
        });
        row("the folder that a link leads to", u"bin"_s, [](const Folders &folders) {
            folders.write(u"bin/S"_s);
            folders.setMode(u"bin"_s, 0777);
            QFile::remove(folders.file(u"S"_s));
            folders.link(folders.path(u"bin/S"_s), u"home/shortcuts/S"_s);
        });
        row("the folder of a link on the way", u"all"_s, [](const Folders &folders) {
            folders.write(u"bin/S"_s);
            QDir().mkpath(folders.path(u"all"_s));
            folders.link(u"../bin/S"_s, u"all/S"_s);
            folders.setMode(u"all"_s, 0777);
            QFile::remove(folders.file(u"S"_s));
            folders.link(folders.path(u"all/S"_s), u"home/shortcuts/S"_s);
        });
        row("a folder that a link goes back through", u"all"_s, [](const Folders &folders) {
            QDir().mkpath(folders.path(u"all"_s));
            folders.setMode(u"all"_s, 0777);
            folders.write(u"bin/S"_s);
            QFile::remove(folders.file(u"S"_s));
            folders.link(u"../../all/../bin/S"_s, u"home/shortcuts/S"_s);
        });
        row("the program of a launcher", u"my bin/S"_s, [](const Folders &folders) {
            const QByteArray program = folders.write(u"my bin/S"_s, 0777).toUtf8();
            QFile::remove(folders.file(u"S"_s));
            folders.write(u"home/shortcuts/S.desktop"_s, 0644, launcher('"' + program + '"'));
        });
        row("the place of the folder", u"all"_s, [](const Folders &folders) {
            folders.write(u"all/shortcuts/S"_s);
            folders.setMode(u"all"_s, 0777);
            QDir(folders.path(u"home/shortcuts"_s)).removeRecursively();
            folders.link(folders.path(u"all/shortcuts"_s), u"home/shortcuts"_s);
        });
    }
    void refusesWhatOthersMayChange()
    {
        QFETCH(const Change, change);
        QFETCH(const QString, culprit);
        const Folders folders;
        folders.add(u"S"_s);
        change(folders);
        QCOMPARE(found(u"S"_s),
                 u"Other users may change “%1”, so the Shortcut is not run."_s.arg(
                     folders.path(culprit)));
        QCOMPARE(LinuxShortcutLibrary().names(), QStringList());
    }

    void refusesWhatBelongsToOthers_data()
    {
        QTest::addColumn<Change>("change");
        QTest::addColumn<QString>("culprit");
        const auto row = [](const char *description, const QString &culprit, const Change &change) {
            QTest::newRow(description) << change << culprit;
        };
        row("a file", u"home/shortcuts/S"_s, [](const Folders &folders) {
            folders.setOwner(u"home/shortcuts/S"_s, somebodyElse, somebodyElse);
        });
        row("the folder", u"home/shortcuts"_s, [](const Folders &folders) {
            folders.setOwner(u"home/shortcuts"_s, somebodyElse, somebodyElse);
        });
        row("a link in a sticky folder of all", u"all/S"_s, [](const Folders &folders) {
            QDir().mkpath(folders.path(u"all"_s));
            folders.setMode(u"all"_s, 01777);
            folders.link(u"/bin/true"_s, u"all/S"_s);
            folders.setOwner(u"all/S"_s, somebodyElse, somebodyElse);
            QFile::remove(folders.file(u"S"_s));
            folders.link(folders.path(u"all/S"_s), u"home/shortcuts/S"_s);
        });
    }
    void refusesWhatBelongsToOthers()
    {
        if (geteuid() != 0)
            QSKIP("only root can give a file away");
        QFETCH(const Change, change);
        QFETCH(const QString, culprit);
        const Folders folders;
        folders.add(u"S"_s);
        change(folders);
        QCOMPARE(found(u"S"_s),
                 u"“%1” belongs to another user, so the Shortcut is not run."_s.arg(
                     folders.path(culprit)));
    }

    void trustsTheUsersOwnPrivateGroupOnly()
    {
        if (geteuid() != 0)
            QSKIP("only root can give a file to any group");
        const Folders folders;
        const QString path = folders.add(u"S"_s, 0775);
        QCOMPARE(found(u"S"_s), path);
        folders.setOwner(u"home/shortcuts/S"_s, 0, somebodyElse);
        QVERIFY(found(u"S"_s).startsWith(u"Other users may change"_s));
    }

    void refusesWhatAnAccessListLetsOthersChange()
    {
        const Folders folders;
        const QString path = folders.add(u"S"_s, 0755);
        // Version 2, then kind, permissions and id of each: user 54321 may write.
        const char list[] = "\2\0\0\0"
                            "\1\0\7\0\377\377\377\377"
                            "\2\0\7\0\61\324\0\0"
                            "\4\0\5\0\377\377\377\377"
                            "\20\0\7\0\377\377\377\377"
                            "\40\0\5\0\377\377\377\377";
        if (setxattr(QFile::encodeName(path).constData(), "system.posix_acl_access", list,
                     sizeof list - 1, 0)
            != 0)
            QSKIP("this file system has no access lists");
        QVERIFY(found(u"S"_s).startsWith(u"Other users may change"_s));
    }

    void givesUpOnLinksInACircle()
    {
        const Folders folders;
        folders.link(u"b"_s, u"home/shortcuts/a"_s);
        folders.link(u"a"_s, u"home/shortcuts/b"_s);
        QVERIFY(found(u"a"_s).startsWith(u"There is no Shortcut"_s));
    }

    void listsTheNamesThatRun()
    {
        const Folders folders;
        for (const QString &name :
             {u"tidy up.sh"_s, u"Note 10"_s, u"Note 9.py"_s, u".hidden"_s, u"old~"_s, u"a..b"_s,
              u"a\nb"_s, u"Twin.sh"_s, u"Twin.py"_s, u"Plain"_s, u"Plain.sh"_s, u"Ärger"_s})
            folders.add(name);
        folders.add(u"not executable"_s, 0644);
        folders.add(u"of others"_s, 0777);
        folders.write(u"home/shortcuts/Maps.desktop"_s, 0644, launcher("true"));
        folders.write(u"home/shortcuts/Broken.desktop"_s, 0644);
        folders.write(u"one/shortcuts/Note 9"_s);
        folders.write(u"one/shortcuts/not executable"_s);
        folders.write(u"two/shortcuts/Weather"_s);
        folders.write(u"two/shortcuts/Twin.rb"_s);
        // A folder that is named twice.
        qputenv("XDG_DATA_DIRS", qgetenv("XDG_DATA_DIRS") + ':' + qgetenv("XDG_DATA_DIRS"));
        const QStringList names = LinuxShortcutLibrary().names();
        QCOMPARE(names,
                 QStringList({u"Ärger"_s, u"Maps"_s, u"Note 9"_s, u"Note 10"_s, u"Plain"_s,
                              u"Plain.sh"_s, u"tidy up"_s, u"Twin.py"_s, u"Twin.rb"_s, u"Twin.sh"_s,
                              u"Weather"_s}));
        for (const QString &name : names)
            QVERIFY2(LinuxShortcutLibrary::find(name), qPrintable(name));
    }

    void writesToTheJournalThatListens()
    {
        const QTemporaryDir folder;
        const QByteArray path = QFile::encodeName(folder.filePath(u"journal"_s));
        sockaddr_un address = {.sun_family = AF_UNIX};
        qstrncpy(address.sun_path, path.constData(), sizeof address.sun_path);
        const int journal = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        QCOMPARE(bind(journal, reinterpret_cast<sockaddr *>(&address), sizeof address), 0);
        QCOMPARE(listen(journal, 1), 0);

        const int stream = openJournalStream(QFile::decodeName(path), u"Tidy\nUp"_s);
        QCOMPARE(write(stream, "done\n", 5), 5);
        close(stream);
        QFile heard;
        QVERIFY(heard.open(accept(journal, nullptr, nullptr), QIODevice::ReadOnly,
                           QFile::AutoCloseHandle));
        QCOMPARE(heard.readAll(), QByteArray("Tidy Up\n\n6\n0\n0\n0\n0\ndone\n"));
        close(journal);
    }

    void writesToNowhereWithoutAJournal_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("that is there") << u"/nowhere/journal"_s;
        QTest::newRow("with a path that a socket can have") << u"/"_s + QString(200, u'a');
    }
    void writesToNowhereWithoutAJournal()
    {
        QFETCH(const QString, path);
        QFile stream;
        QVERIFY(stream.open(openJournalStream(path, u"Tidy"_s), QIODevice::WriteOnly,
                            QFile::AutoCloseHandle));
        char target[100] = {};
        const QByteArray link = "/proc/self/fd/" + QByteArray::number(stream.handle());
        QVERIFY(readlink(link.constData(), target, sizeof target - 1) > 0);
        QCOMPARE(QByteArray(target), QByteArray("/dev/null"));
    }
};

QTEST_GUILESS_MAIN(CompanionTest)
#include "CompanionTest.moc"
