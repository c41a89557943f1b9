#include "foundation/Files.h"
#include "foundation/PrivateFile.h"
#include "support/CpuTime.h"
#include "support/LittleSpace.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <functional>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr qint64 manyBytes = 1'000'000;

struct Folder {
    QTemporaryDir folder;
    QString path = folder.filePath(u"list.json"_s);

    void write(const QByteArray &content) const
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    QByteArray read() const
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }
    QStringList names() const
    {
        return QDir(folder.path())
            .entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot);
    }
};
} // namespace

class FilesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Reading

    void readsTheWholeContent_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("zero bytes and no UTF-8") << QByteArray("\0\xff\r\n\0", 5);
        QTest::newRow("as much as is allowed") << QByteArray(manyBytes, 'x');
    }
    void readsTheWholeContent()
    {
        QFETCH(const QByteArray, content);
        const Folder folder;
        folder.write(content);
        QCOMPARE(readWhole(folder.path, manyBytes).value(), content);
    }

    void readsThroughALink()
    {
        const Folder folder;
        folder.write("content");
        const QString link = folder.folder.filePath(u"link"_s);
        QVERIFY(QFile::link(folder.path, link));
        QCOMPARE(readWhole(link, manyBytes).value(), QByteArray("content"));
    }

    void readsAFileThatDoesNotTellItsSize()
    {
        const QString path = u"/proc/self/status"_s;
        QCOMPARE(QFileInfo(path).size(), 0);
        QVERIFY(readWhole(path, manyBytes).value().startsWith("Name:"));
        QVERIFY(!readWhole(path, 10));
    }

    void refusesWhatIsTooLarge_data()
    {
        QTest::addColumn<qint64>("size");
        QTest::newRow("one byte more than is allowed") << manyBytes + 1;
        QTest::newRow("200 times what is allowed") << 200 * manyBytes;
    }
    void refusesWhatIsTooLarge()
    {
        QFETCH(const qint64, size);
        const Folder folder;
        folder.write({});
        QVERIFY(QFile::resize(folder.path, size));
        QString reason;
        const double seconds =
            cpuSeconds([&] { reason = readWhole(folder.path, manyBytes).error().description; });
        QCOMPARE(reason, u"The file is larger than 976.56 KiB."_s);
        QVERIFY(seconds < 0.05);
    }

    void refusesWhatIsNoFile_data()
    {
        QTest::addColumn<std::function<QString(const Folder &)>>("make");
        const auto add = [](const char *row, const std::function<QString(const Folder &)> &make) {
            QTest::newRow(row) << make;
        };
        add("a folder", [](const Folder &folder) { return folder.folder.path(); });
        add("a pipe that nobody writes into", [](const Folder &folder) {
            return mkfifo(QFile::encodeName(folder.path).constData(), 0600) == 0 ? folder.path
                                                                                 : QString();
        });
        add("a device without an end", [](const Folder &) { return u"/dev/zero"_s; });
    }
    void refusesWhatIsNoFile()
    {
        QFETCH(const std::function<QString(const Folder &)>, make);
        const Folder folder;
        const QString path = make(folder);
        const auto content = readWhole(path, manyBytes);
        QVERIFY(!content);
        QCOMPARE(content.error().description, u"“%1” is not a file."_s.arg(path));
    }

    void makesFoldersForTheUserAlone()
    {
        const Folder folder;
        const QString upper = folder.folder.filePath(u"upper"_s);
        const mode_t before = umask(0);
        const auto error = makePrivateFolder(upper + u"/lower/"_s);
        umask(before);
        QVERIFY(!error);
        const auto onlyTheUser = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner
            | QFile::ReadUser | QFile::WriteUser | QFile::ExeUser;
        QCOMPARE(QFile::permissions(upper), onlyTheUser);
        QCOMPARE(QFile::permissions(upper + u"/lower"_s), onlyTheUser);
    }

    void leavesFoldersThatAreThereAsTheyAre()
    {
        const Folder folder;
        const auto open = QFile::permissions(folder.folder.path()) | QFile::ReadOther;
        QVERIFY(QFile::setPermissions(folder.folder.path(), open));
        QVERIFY(!makePrivateFolder(folder.folder.path()));
        QCOMPARE(QFile::permissions(folder.folder.path()), open);
    }

    void saysWhyAFolderCannotBeMade()
    {
        const Folder folder;
        folder.write({});
        const auto error = makePrivateFolder(folder.path + u"/lower"_s);
        QVERIFY(error);
        QCOMPARE(error->description,
                 u"The folder “%1” could not be made: File exists"_s.arg(folder.path));
    }

    void saysWhyAFileCannotBeRead_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("reason");
        QTest::newRow("it is not there")
            << u"/nowhere/list.json"_s << u"No such file or directory"_s;
        QTest::newRow("a file is where its folder should be")
            << u"/proc/version/list.json"_s << u"Not a directory"_s;
        // Its first page belongs to nobody.
        QTest::newRow("its content is out of reach")
            << u"/proc/self/mem"_s << u"Input/output error"_s;
    }
    void saysWhyAFileCannotBeRead()
    {
        QFETCH(const QString, path);
        const auto content = readWhole(path, manyBytes);
        QVERIFY(!content);
        QTEST(content.error().description, "reason");
    }

    // Writing

    void makesANewFile()
    {
        const Folder folder;
        QVERIFY(!replaceContent(folder.path, "content", FileAccess::asUsual));
        QCOMPARE(folder.read(), QByteArray("content"));
        QCOMPARE(folder.names(), QStringList({u"list.json"_s}));
    }

    void replacesWhatWasLonger()
    {
        const Folder folder;
        folder.write(QByteArray(5000, 'x'));
        QVERIFY(!replaceContent(folder.path, "content", FileAccess::asUsual));
        QCOMPARE(folder.read(), QByteArray("content"));
        QCOMPARE(folder.names(), QStringList({u"list.json"_s}));
    }

    void writesWhereALinkLeads()
    {
        const Folder folder;
        folder.write("older");
        const QString link = folder.folder.filePath(u"link"_s);
        QVERIFY(QFile::link(folder.path, link));
        QVERIFY(!replaceContent(link, "content", FileAccess::userOnly));
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(folder.read(), QByteArray("content"));
    }

    void writesWhereALinkToALinkLeads()
    {
        const Folder folder;
        folder.write("older");
        const QString link = folder.folder.filePath(u"link"_s);
        const QString second = folder.folder.filePath(u"second"_s);
        QVERIFY(QFile::link(folder.path, link) && QFile::link(link, second));
        QVERIFY(!replaceContent(second, "content", FileAccess::userOnly));
        QCOMPARE(QFile::symLinkTarget(second), link);
        QCOMPARE(QFile::symLinkTarget(link), folder.path);
        QCOMPARE(folder.read(), QByteArray("content"));
    }

    void letsThoseUseAFileWhoAreToUseIt_data()
    {
        QTest::addColumn<FileAccess>("access");
        QTest::addColumn<mode_t>("mask");
        QTest::addColumn<std::optional<mode_t>>("before");
        QTest::addColumn<mode_t>("mode");
        const auto add = [](const char *row, FileAccess access, mode_t mask,
                            std::optional<mode_t> before, mode_t mode) {
            QTest::newRow(row) << access << mask << before << mode;
        };
        const std::optional<mode_t> none;
        add("a new private file", FileAccess::userOnly, 0, none, 0600);
        add("a new private file, of a user who may write nothing", FileAccess::userOnly, 0277, none,
            0600);
        add("a private file that all could use", FileAccess::userOnly, 0, 0666, 0600);
        add("a new file", FileAccess::asUsual, 0, none, 0666);
        add("a new file, kept from others", FileAccess::asUsual, 027, none, 0640);
        add("a file that all could read", FileAccess::asUsual, 077, 0644, 0644);
        add("a file that only the user could use", FileAccess::asUsual, 0, 0600, 0600);
    }
    void letsThoseUseAFileWhoAreToUseIt()
    {
        QFETCH(const FileAccess, access);
        QFETCH(const mode_t, mask);
        QFETCH(const std::optional<mode_t>, before);
        QFETCH(const mode_t, mode);
        const Folder folder;
        const QByteArray path = QFile::encodeName(folder.path);
        if (before) {
            folder.write("older");
            QCOMPARE(chmod(path.constData(), *before), 0);
        }
        const mode_t usual = umask(mask);
        const auto error = replaceContent(folder.path, "content", access);
        QCOMPARE(umask(usual), mask);
        QVERIFY(!error);
        struct stat status = {};
        QCOMPARE(stat(path.constData(), &status), 0);
        QCOMPARE(status.st_mode & ALLPERMS, mode);
    }

    void leavesWhatIsNoFileInItsPlace_data()
    {
        QTest::addColumn<std::function<bool(const Folder &)>>("make");
        QTest::addColumn<QString>("reason");
        const auto add = [](const char *row, const QString &reason,
                            const std::function<bool(const Folder &)> &make) {
            QTest::newRow(row) << make << reason;
        };
        const QString isNoFile = u"“%1” is not a file."_s;
        const QString leadsNowhere = u"“%1” is a link to nothing."_s;
        const auto linkTo = [](const QString &target) {
            return [target](const Folder &it) { return QFile::link(target, it.path); };
        };
        add("a folder", isNoFile, [](const Folder &it) { return QDir().mkdir(it.path); });
        add("a pipe", isNoFile, [](const Folder &it) {
            return mkfifo(QFile::encodeName(it.path).constData(), 0600) == 0;
        });
        add("a link to a folder", isNoFile, linkTo(u"."_s));
        add("a link to a device", isNoFile, linkTo(u"/dev/null"_s));
        add("a link to nothing", leadsNowhere, linkTo(u"/nowhere/list.json"_s));
        add("a link to itself", leadsNowhere, linkTo(u"list.json"_s));
    }
    void leavesWhatIsNoFileInItsPlace()
    {
        QFETCH(const std::function<bool(const Folder &)>, make);
        QFETCH(const QString, reason);
        const Folder folder;
        QVERIFY(make(folder));
        struct stat before = {};
        struct stat after = {};
        lstat(QFile::encodeName(folder.path).constData(), &before);
        const auto error = replaceContent(folder.path, "content", FileAccess::userOnly);
        lstat(QFile::encodeName(folder.path).constData(), &after);
        QCOMPARE(error.value().description, reason.arg(folder.path));
        QCOMPARE(after.st_ino, before.st_ino);
        QCOMPARE(folder.names(), QStringList({u"list.json"_s}));
    }

    void saysThatTheFolderOfAFileIsNotThere()
    {
        const auto error = replaceContent(u"/nowhere/list.json"_s, "content", FileAccess::asUsual);
        QCOMPARE(error.value().description, u"No such file or directory"_s);
    }

    void writesNoPrivateFileThatItCouldNotReadAgain()
    {
        const Folder folder;
        PrivateFile file(folder.path, 7);
        QVERIFY(!file.write("content"));
        QCOMPARE(file.read().value(), QByteArray("content"));
        QCOMPARE(file.write("contents").value().description,
                 u"The file would be larger than 7 bytes."_s);
        QCOMPARE(folder.read(), QByteArray("content"));
    }

    void movesWhatIsNoPrivateFileAside_data()
    {
        QTest::addColumn<std::function<bool(const Folder &)>>("make");
        const auto add = [](const char *row, const std::function<bool(const Folder &)> &make) {
            QTest::newRow(row) << make;
        };
        const auto linkTo = [](const QString &target) {
            return [target](const Folder &it) { return QFile::link(target, it.path); };
        };
        add("a folder", [](const Folder &it) { return QDir().mkpath(it.path + u"/precious"_s); });
        add("a pipe", [](const Folder &it) {
            return mkfifo(QFile::encodeName(it.path).constData(), 0600) == 0;
        });
        add("a link to a folder", linkTo(u".."_s));
        add("a link to a device without an end", linkTo(u"/dev/zero"_s));
        add("a link to nothing", linkTo(u"/nowhere/list.json"_s));
        add("a file that is too large", [](const Folder &it) {
            it.write({});
            return QFile::resize(it.path, manyBytes + 1);
        });
    }
    void movesWhatIsNoPrivateFileAside()
    {
        QFETCH(const std::function<bool(const Folder &)>, make);
        const Folder folder;
        QVERIFY(make(folder));
        const auto inodeOf = [](const QString &path) {
            struct stat status = {};
            lstat(QFile::encodeName(path).constData(), &status);
            return status.st_ino;
        };
        const auto inode = inodeOf(folder.path);
        PrivateFile file(folder.path, manyBytes);
        QVERIFY(!file.read());
        file.keepBeforeWriting();
        QVERIFY(withLittleSpace([&] { return file.write(QByteArray(5000, 'x')); }));
        QCOMPARE(inodeOf(folder.path), inode);
        QVERIFY(!file.write("content"));
        QCOMPARE(folder.read(), QByteArray("content"));
        QCOMPARE(inodeOf(folder.path + u".unreadable"_s), inode);
        QCOMPARE(folder.names(), QStringList({u"list.json"_s, u"list.json.unreadable"_s}));
    }

    void leavesTheOldContentWhereTheDiskIsFull_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("a little more than fits") << QByteArray(101, 'x');
        QTest::newRow("much more than fits") << QByteArray(manyBytes, 'x');
    }
    void leavesTheOldContentWhereTheDiskIsFull()
    {
        QFETCH(const QByteArray, content);
        const Folder folder;
        folder.write("older");
        const auto error = withLittleSpace(
            [&] { return replaceContent(folder.path, content, FileAccess::userOnly); });
        QCOMPARE(error.value().description, u"File too large"_s);
        QCOMPARE(folder.read(), QByteArray("older"));
        QCOMPARE(folder.names(), QStringList({u"list.json"_s}));
    }
};

QTEST_APPLESS_MAIN(FilesTest)
#include "FilesTest.moc"
