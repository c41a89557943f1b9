#include "model/EntriesFile.h"
#include "support/LittleSpace.h"

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{
struct Files {
    QTemporaryDir home;
    QString folder = home.filePath(u"Corvane"_s);
    QString path = folder + u"/entries.json"_s;
    QString kept = path + u".unreadable"_s;

    void write(const QByteArray &text) const
    {
        QVERIFY(QDir().mkpath(folder));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }
};

struct stat statusOf(const QString &path)
{
    struct stat status = {};
    lstat(QFile::encodeName(path).constData(), &status);
    return status;
}
ino_t inodeOf(const QString &path)
{
    return statusOf(path).st_ino;
}
mode_t modeOf(const QString &path)
{
    return statusOf(path).st_mode & ALLPERMS;
}

const QByteArray id = "1B4E28BA-2FA1-11D2-883F-0016D3CCA427";
const LaunchEntry mail{.id = QUuid::fromString(id), .name = u"Mail"_s, .target = u"/mail"_s};
const QByteArray mailList = "[{\"id\":\"" + id
    + "\",\"name\":\"Mail\",\"kind\":\"app\",\"target\":\"/mail\",\"isEnabled\":true}]";
} // namespace

class EntriesFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isEmptyBeforeTheFirstWrite()
    {
        const Files files;
        EntriesFile file(files.home.path());
        QCOMPARE(file.read().value(), QList<LaunchEntry>());
        QVERIFY(QDir(files.folder).exists());
        QVERIFY(!QFile::exists(files.path));
    }

    void readsAnEmptyList()
    {
        const Files files;
        files.write("[]");
        QCOMPARE(EntriesFile(files.home.path()).read().value(), QList<LaunchEntry>());
    }

    void writesACompactList()
    {
        const Files files;
        QVERIFY(!EntriesFile(files.home.path()).write({mail}));
        QCOMPARE(Files::read(files.path), mailList);
    }

    void writesAnEmptyListAsAnEmptyArray()
    {
        const Files files;
        QVERIFY(!EntriesFile(files.home.path()).write({}));
        QCOMPARE(Files::read(files.path), QByteArray("[]"));
    }

    void readsWhatItWrote()
    {
        const Files files;
        LaunchEntry odd{.name = u"\"Ä\\\n🚀"_s, .kind = ActionKind::website, .isEnabled = false};
        QVERIFY(!EntriesFile(files.home.path()).write({mail, odd}));
        QCOMPARE(EntriesFile(files.home.path()).read().value(), QList({mail, odd}));
    }

    void leavesNothingElseInItsFolder()
    {
        const Files files;
        EntriesFile file(files.home.path());
        QVERIFY(file.read());
        QVERIFY(!file.write({mail}));
        QVERIFY(!file.write({}));
        QCOMPARE(QDir(files.folder).entryList(QDir::Files | QDir::Hidden),
                 QStringList({u"entries.json"_s}));
    }

    void refusesWhatIsNoListAndKeepsItBesideTheNextOne_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("an empty file") << QByteArray("");
        QTest::newRow("no JSON") << QByteArray("shortcuts");
        QTest::newRow("no array") << QByteArray("{}");
        QTest::newRow("invalid UTF-8") << QByteArray("[\"\xff\"]");
        QTest::newRow("one bad record") << mailList.chopped(1) + ",{}]";
        QTest::newRow("a record that lacks isEnabled")
            << "[{\"id\":\"" + id + "\",\"name\":\"N\",\"kind\":\"app\",\"target\":\"\"}]";
    }
    void refusesWhatIsNoListAndKeepsItBesideTheNextOne()
    {
        QFETCH(const QByteArray, text);
        const Files files;
        files.write(text);
        EntriesFile file(files.home.path());
        const auto entries = file.read();
        QVERIFY(!entries);
        QVERIFY(!entries.error().description.isEmpty());
        QCOMPARE(Files::read(files.path), text);
        QVERIFY(!QFile::exists(files.kept));

        QVERIFY(!file.write({mail}));
        QCOMPARE(Files::read(files.path), mailList);
        QCOMPARE(Files::read(files.kept), text);
    }

    void keepsTheNewestOfTheUnreadableFiles()
    {
        const Files files;
        for (const QByteArray text : {"first", "second"}) {
            files.write(text);
            EntriesFile file(files.home.path());
            QVERIFY(!file.read());
            QVERIFY(!file.write({}));
        }
        QCOMPARE(Files::read(files.kept), QByteArray("second"));
    }

    void keepsAnUnreadableFileOnceOnly()
    {
        const Files files;
        files.write("unreadable");
        EntriesFile file(files.home.path());
        QVERIFY(!file.read());
        QVERIFY(!file.write({mail}));
        QVERIFY(!file.write({}));
        QCOMPARE(Files::read(files.kept), QByteArray("unreadable"));
    }

    void keepsNoFileThatItCouldRead()
    {
        const Files files;
        files.write(mailList);
        EntriesFile file(files.home.path());
        QVERIFY(file.read());
        QVERIFY(!file.write({}));
        QVERIFY(!QFile::exists(files.kept));
    }

    void movesAsideWhatIsTooLarge()
    {
        const Files files;
        files.write({});
        QVERIFY(QFile::resize(files.path, 64LL * 1024 * 1024 + 1));
        const auto inode = inodeOf(files.path);
        EntriesFile file(files.home.path());
        QVERIFY(!file.read());
        QVERIFY(!file.write({mail}));
        QCOMPARE(Files::read(files.path), mailList);
        QCOMPARE(inodeOf(files.kept), inode);
    }

    void emptiesNoFolderThatALinkLeadsTo()
    {
        const Files files;
        const QString folder = files.home.filePath(u"Documents"_s);
        QVERIFY(QDir().mkpath(files.folder) && QDir().mkpath(folder + u"/precious"_s));
        for (int start = 0; start < 3; ++start) {
            QFile::remove(files.path);
            QVERIFY(QFile::link(folder, files.path));
            EntriesFile file(files.home.path());
            QVERIFY(!file.read());
            QVERIFY(!file.write({mail}));
        }
        QVERIFY(QDir(folder + u"/precious"_s).exists());
        QCOMPARE(QFile::symLinkTarget(files.kept), folder);
        QCOMPARE(QFile::symLinkTarget(files.kept + u".1"_s), folder);
        QCOMPARE(QFile::symLinkTarget(files.kept + u".2"_s), folder);
    }

    void keepsAFileBesideFoldersThatTakeItsName()
    {
        const Files files;
        QVERIFY(QDir().mkpath(files.kept + u"/precious"_s) && QDir().mkpath(files.kept + u".1"_s));
        for (const QByteArray text : {"first", "second"}) {
            files.write(text);
            EntriesFile file(files.home.path());
            QVERIFY(!file.read());
            QVERIFY(!file.write({mail}));
        }
        QCOMPARE(Files::read(files.kept + u".2"_s), QByteArray("second"));
        QVERIFY(QDir(files.kept + u"/precious"_s).exists());
        QVERIFY(!QFile::exists(files.kept + u".3"_s));
    }

    void keepsTheFileThatALinkLeadsToAndReplacesIt()
    {
        const Files files;
        const QString elsewhere = files.home.filePath(u"elsewhere.json"_s);
        files.write("unreadable");
        QVERIFY(QFile::rename(files.path, elsewhere) && QFile::link(elsewhere, files.path));
        EntriesFile file(files.home.path());
        QVERIFY(!file.read());
        QVERIFY(!file.write({mail}));
        QCOMPARE(QFile::symLinkTarget(files.path), elsewhere);
        QCOMPARE(Files::read(elsewhere), mailList);
        QCOMPARE(Files::read(files.kept), QByteArray("unreadable"));
    }

    void keepsAllForTheUserAlone()
    {
        const Files files;
        const mode_t usual = umask(0);
        const auto restored = qScopeGuard([usual] { umask(usual); });
        EntriesFile file(files.home.path());
        QVERIFY(file.read());
        QVERIFY(!file.write({mail}));
        QCOMPARE(modeOf(files.folder), mode_t(0700));
        QCOMPARE(modeOf(files.path), mode_t(0600));

        files.write("unreadable");
        QCOMPARE(chmod(QFile::encodeName(files.path).constData(), 0666), 0);
        EntriesFile next(files.home.path());
        QVERIFY(!next.read());
        QVERIFY(!next.write({mail}));
        QCOMPARE(modeOf(files.path), mode_t(0600));
        QCOMPARE(modeOf(files.kept), mode_t(0600));
    }

    void leavesTheUnreadableFileWhereNothingCanBeWritten()
    {
        const Files files;
        files.write("older");
        EntriesFile older(files.home.path());
        QVERIFY(!older.read());
        QVERIFY(!older.write({}));
        const QByteArray unreadable(5000, 'x');
        files.write(unreadable);

        EntriesFile file(files.home.path());
        QVERIFY(!file.read());
        QVERIFY(withLittleSpace([&] { return file.write({mail}); }));
        QCOMPARE(Files::read(files.path), unreadable);
        QCOMPARE(Files::read(files.kept), QByteArray("older"));
        QCOMPARE(QDir(files.folder).entryList(QDir::Files | QDir::Hidden),
                 QStringList({u"entries.json"_s, u"entries.json.unreadable"_s}));
        // With space again it goes on.
        QVERIFY(!file.write({mail}));
        QCOMPARE(Files::read(files.path), mailList);
        QCOMPARE(Files::read(files.kept), unreadable);
    }

    void keepsAListThatCameOnlyAfterTheStart()
    {
        const Files files;
        QFile inTheWay(files.folder);
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        EntriesFile file(files.home.path());
        QVERIFY(!file.read());
        QVERIFY(inTheWay.remove());
        files.write(mailList);
        QVERIFY(!file.write({}));
        QCOMPARE(Files::read(files.kept), mailList);
    }

    void writesThroughALink()
    {
        const Files files;
        const QString elsewhere = files.home.filePath(u"elsewhere.json"_s);
        files.write(mailList);
        QVERIFY(QFile::rename(files.path, elsewhere) && QFile::link(elsewhere, files.path));
        EntriesFile file(files.home.path());
        QCOMPARE(file.read().value(), QList({mail}));
        QVERIFY(!file.write({}));
        QCOMPARE(QFile::symLinkTarget(files.path), elsewhere);
        QCOMPARE(Files::read(elsewhere), QByteArray("[]"));
    }

    void saysThatItsFolderCannotBeMade()
    {
        const Files files;
        QFile inTheWay(files.folder);
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        EntriesFile file(files.home.path());
        const QString reason =
            u"The folder “%1” could not be made: File exists"_s.arg(files.folder);
        QCOMPARE(file.read().error().description, reason);
        QCOMPARE(file.write({mail}).value().description, reason);
    }

    void saysThatThereIsNoFolderForData()
    {
        EntriesFile file{QString()};
        QVERIFY(!file.read());
        QCOMPARE(file.write({}).value().description,
                 u"There is no folder for the data of programs."_s);
    }

    void leavesTheOldListWhereTheNewOneCannotBeWritten()
    {
        const Files files;
        files.write(mailList);
        EntriesFile file(files.home.path());
        const auto error = withLittleSpace([&] { return file.write({mail, mail, mail}); });
        QCOMPARE(error.value().description, u"File too large"_s);
        QCOMPARE(Files::read(files.path), mailList);
        QCOMPARE(QDir(files.folder).entryList(QDir::Files | QDir::Hidden),
                 QStringList({u"entries.json"_s}));
    }
};

QTEST_APPLESS_MAIN(EntriesFileTest)
#include "EntriesFileTest.moc"
