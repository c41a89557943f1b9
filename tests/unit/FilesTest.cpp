#include "foundation/Files.h"
#include "support/CpuTime.h"
#include "support/LittleSpace.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
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
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
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
        QVERIFY(!replaceContent(folder.path, "content"));
        QCOMPARE(folder.read(), QByteArray("content"));
        QCOMPARE(folder.names(), QStringList({u"list.json"_s}));
    }

    void replacesWhatWasLonger()
    {
        const Folder folder;
        folder.write(QByteArray(5000, 'x'));
        QVERIFY(!replaceContent(folder.path, "content"));
        QCOMPARE(folder.read(), QByteArray("content"));
        QCOMPARE(folder.names(), QStringList({u"list.json"_s}));
    }

    void writesWhereALinkLeads()
    {
        const Folder folder;
        folder.write("older");
        const QString link = folder.folder.filePath(u"link"_s);
        QVERIFY(QFile::link(folder.path, link));
        QVERIFY(!replaceContent(link, "content"));
        QVERIFY(QFileInfo(link).isSymLink());
        QCOMPARE(folder.read(), QByteArray("content"));
    }

    void keepsWhoMayUseTheFile()
    {
        const Folder folder;
        folder.write("older");
        const auto ownerOnly =
            QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
        QVERIFY(QFile::setPermissions(folder.path, QFile::ReadOwner | QFile::WriteOwner));
        QVERIFY(!replaceContent(folder.path, "content"));
        QCOMPARE(QFile::permissions(folder.path), ownerOnly);
    }

    void saysWhyAFileCannotBeWritten_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("reason");
        QTest::newRow("its folder is not there")
            << u"nowhere/list.json"_s << u"No such file or directory"_s;
        QTest::newRow("a folder is in its place") << u"."_s << u"Filename refers to a directory"_s;
    }
    void saysWhyAFileCannotBeWritten()
    {
        QFETCH(const QString, name);
        const Folder folder;
        const auto error = replaceContent(folder.folder.filePath(name), "content");
        QTEST(error.value().description, "reason");
        QCOMPARE(folder.names(), QStringList());
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
        const auto error = withLittleSpace([&] { return replaceContent(folder.path, content); });
        QCOMPARE(error.value().description, u"File too large"_s);
        QCOMPARE(folder.read(), QByteArray("older"));
        QCOMPARE(folder.names(), QStringList({u"list.json"_s}));
    }
};

QTEST_APPLESS_MAIN(FilesTest)
#include "FilesTest.moc"
