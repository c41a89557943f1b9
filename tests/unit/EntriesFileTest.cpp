#include "model/EntriesFile.h"
#include "support/LittleSpace.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

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

    void keepsWhatIsNotEvenAFile()
    {
        const Files files;
        QVERIFY(QDir().mkpath(files.path));
        EntriesFile file(files.home.path());
        QVERIFY(!file.read());
        QVERIFY(!file.write({mail}));
        QCOMPARE(Files::read(files.path), mailList);
        QVERIFY(QDir(files.kept).exists());
    }

    void keepsTheNewestOfTheFoldersInTheWay()
    {
        const Files files;
        for (const QString &name : {u"first"_s, u"second"_s}) {
            QFile::remove(files.path);
            QVERIFY(QDir().mkpath(files.path + u'/' + name));
            EntriesFile file(files.home.path());
            QVERIFY(!file.read());
            QVERIFY(!file.write({mail}));
        }
        QCOMPARE(QDir(files.kept).entryList(QDir::Dirs | QDir::NoDotAndDotDot),
                 QStringList({u"second"_s}));
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

    void putsBackWhatIsNotEvenAFileWhereNothingCanBeWritten()
    {
        const Files files;
        QVERIFY(QDir().mkpath(files.path));
        EntriesFile file(files.home.path());
        QVERIFY(!file.read());
        QVERIFY(withLittleSpace([&] { return file.write({mail, mail, mail}); }));
        QVERIFY(QFileInfo(files.path).isDir());
        QVERIFY(!file.write({mail}));
        QCOMPARE(Files::read(files.path), mailList);
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

    void refusesAListThatIsThereButOutOfReach()
    {
        const Files files;
        QVERIFY(QDir().mkpath(files.folder));
        QVERIFY(QFile::link(u"/nowhere/entries.json"_s, files.path));
        QVERIFY(!EntriesFile(files.home.path()).read());
    }

    void writesThroughALink()
    {
        const Files files;
        QVERIFY(QDir().mkpath(files.folder));
        const QString elsewhere = files.home.filePath(u"elsewhere.json"_s);
        QVERIFY(QFile::link(elsewhere, files.path));
        QVERIFY(!EntriesFile(files.home.path()).write({mail}));
        QVERIFY(QFileInfo(files.path).isSymLink());
        QCOMPARE(Files::read(elsewhere), mailList);
    }

    void saysThatItsFolderCannotBeMade()
    {
        const Files files;
        QFile inTheWay(files.folder);
        QVERIFY(inTheWay.open(QIODevice::WriteOnly));
        EntriesFile file(files.home.path());
        const QString reason = u"The folder “%1” could not be made."_s.arg(files.folder);
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
