#include "platform/linux/services/IniUserDefaults.h"
#include "support/LittleSpace.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <functional>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{
const QString key = u"hotkey.corvane-1B4E28BA-2FA1-11D2-883F-0016D3CCA427"_s;
const QByteArray value = R"({"carbonKeyCode":40,"carbonModifiers":256})";
const QByteArray line = "hotkey.corvane-1B4E28BA-2FA1-11D2-883F-0016D3CCA427="
                        "\"@ByteArray({\\\"carbonKeyCode\\\":40,\\\"carbonModifiers\\\":256})\"";

struct File {
    QTemporaryDir folder;
    QString path = folder.filePath(u"Corvane/Corvane.conf"_s);
    QString kept = path + u".unreadable"_s;

    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    QByteArray read() const { return read(path); }
    QStringList names() const
    {
        return QFileInfo(path).dir().entryList(QDir::AllEntries | QDir::System | QDir::Hidden
                                               | QDir::NoDotAndDotDot);
    }
    void write(const QByteArray &text) const
    {
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
};
} // namespace

class IniUserDefaultsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesACombinationInTheAgreedFormAtOnce()
    {
        const File file;
        IniUserDefaults defaults(file.path);
        defaults.setData(key, value);
        QCOMPARE(file.read(), "[General]\n" + line + "\n");
    }

    void readsTheAgreedForm()
    {
        const File file;
        file.write("[General]\n" + line + "\n");
        QCOMPARE(IniUserDefaults(file.path).data(key), value);
    }

    void readsWhatItWrote()
    {
        const File file;
        IniUserDefaults defaults(file.path);
        const QByteArray anything = QByteArray("\0\xff\"\\\n=;[x]@ %,", 13);
        defaults.setData(key, anything);
        QCOMPARE(defaults.data(key), anything);
        QCOMPARE(IniUserDefaults(file.path).data(key), anything);
    }

    void removesAValueAtOnce()
    {
        const File file;
        IniUserDefaults defaults(file.path);
        defaults.setData(key, value);
        defaults.remove(key);
        QCOMPARE(defaults.data(key), std::nullopt);
        QVERIFY(!file.read().contains("hotkey"));
    }

    void removesWhatIsNotThere()
    {
        const File file;
        IniUserDefaults(file.path).remove(key);
        QVERIFY(!file.read().contains("hotkey"));
    }

    void keepsOtherValues()
    {
        const File file;
        file.write("[General]\npauseAll=true\n[Other]\nx=1\n");
        IniUserDefaults(file.path).setData(key, value);
        QVERIFY(file.read().contains("pauseAll=true"));
        QVERIFY(file.read().contains("[Other]\nx=1"));
    }

    void countsValuesOfOtherTypesAsAbsent_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("a text") << QByteArray("x=words");
        QTest::newRow("JSON without its type") << QByteArray("x=\"{\\\"carbonKeyCode\\\":40}\"");
        QTest::newRow("a number") << QByteArray("x=5");
        QTest::newRow("a Boolean") << QByteArray("x=true");
        QTest::newRow("a list") << QByteArray("x=a, b");
        QTest::newRow("nothing") << QByteArray("x=");
        QTest::newRow("another key") << QByteArray("y=@ByteArray(z)");
    }
    void countsValuesOfOtherTypesAsAbsent()
    {
        QFETCH(const QByteArray, text);
        const File file;
        file.write("[General]\n" + text + "\n");
        QCOMPARE(IniUserDefaults(file.path).data(u"x"_s), std::nullopt);
    }

    void writesABooleanAsAWordAtOnce_data()
    {
        QTest::addColumn<bool>("value");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("true") << true << QByteArray("[General]\npauseAll=true\n");
        QTest::newRow("false") << false << QByteArray("[General]\npauseAll=false\n");
    }
    void writesABooleanAsAWordAtOnce()
    {
        QFETCH(const bool, value);
        const File file;
        IniUserDefaults defaults(file.path);
        defaults.setBoolean(u"pauseAll"_s, value);
        QTEST(file.read(), "text");
        QCOMPARE(defaults.boolean(u"pauseAll"_s), value);
    }

    void readsTrueAndFalseOnlyAsBooleans_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<std::optional<bool>>("value");
        const std::optional<bool> none;
        QTest::newRow("true") << QByteArray("x=true") << std::optional(true);
        QTest::newRow("false") << QByteArray("x=false") << std::optional(false);
        QTest::newRow("another case") << QByteArray("x=True") << none;
        QTest::newRow("a number") << QByteArray("x=1") << none;
        QTest::newRow("a word") << QByteArray("x=yes") << none;
        QTest::newRow("a list") << QByteArray("x=true, false") << none;
        QTest::newRow("bytes") << QByteArray("x=@ByteArray(true)") << none;
        QTest::newRow("nothing") << QByteArray("x=") << none;
        QTest::newRow("another key") << QByteArray("y=true") << none;
    }
    void readsTrueAndFalseOnlyAsBooleans()
    {
        QFETCH(const QByteArray, text);
        const File file;
        file.write("[General]\n" + text + "\n");
        QTEST(IniUserDefaults(file.path).boolean(u"x"_s), "value");
    }

    void countsABooleanAsNoDataBeforeItIsReadFromTheFile()
    {
        const File file;
        IniUserDefaults defaults(file.path);
        defaults.setBoolean(u"x"_s, true);
        QCOMPARE(defaults.data(u"x"_s), std::nullopt);
    }

    void writesTogetherWhatIsChangedTogether()
    {
        const File file;
        IniUserDefaults defaults(file.path);
        {
            const auto together = defaults.writeTogether();
            defaults.setData(key, value);
            defaults.setBoolean(u"pauseAll"_s, true);
            QCOMPARE(defaults.data(key), value);
            QCOMPARE(file.read(), QByteArray());
        }
        QCOMPARE(file.read(), "[General]\n" + line + "\npauseAll=true\n");
    }

    void tellsOfEachChange_data()
    {
        QTest::addColumn<std::function<void(IniUserDefaults &)>>("use");
        QTest::addColumn<int>("notices");
        const auto add = [](const char *row, int notices,
                            const std::function<void(IniUserDefaults &)> &use) {
            QTest::newRow(row) << use << notices;
        };
        add("data", 1, [](IniUserDefaults &it) { it.setData(key, value); });
        add("a Boolean", 1, [](IniUserDefaults &it) { it.setBoolean(u"pauseAll"_s, true); });
        add("a removed key", 1, [](IniUserDefaults &it) { it.remove(key); });
        add("two changes", 2, [](IniUserDefaults &it) {
            it.setBoolean(u"pauseAll"_s, true);
            it.remove(key);
        });
        add("changes that are written together", 1, [](IniUserDefaults &it) {
            const auto together = it.writeTogether();
            const auto stillTogether = it.writeTogether();
            it.setBoolean(u"pauseAll"_s, true);
            it.remove(key);
        });
        add("a read", 0, [](IniUserDefaults &it) { QVERIFY(!it.data(key)); });
    }
    void tellsOfEachChange()
    {
        QFETCH(const std::function<void(IniUserDefaults &)>, use);
        const File file;
        IniUserDefaults defaults(file.path);
        const QSignalSpy notices(&defaults, &UserDefaults::changed);
        use(defaults);
        QTEST(int(notices.count()), "notices");
    }

    void tellsOfAChangeThatIsDone()
    {
        const File file;
        IniUserDefaults defaults(file.path);
        std::optional<bool> seen;
        QByteArray written;
        connect(&defaults, &UserDefaults::changed, this, [&] {
            seen = defaults.boolean(u"pauseAll"_s);
            written = file.read();
        });
        defaults.setBoolean(u"pauseAll"_s, true);
        QCOMPARE(seen, std::optional(true));
        QCOMPARE(written, QByteArray("[General]\npauseAll=true\n"));
    }

    // What goes wrong

    void hasNoErrorWhereAllIsWell()
    {
        const File file;
        IniUserDefaults defaults(file.path);
        QVERIFY(!defaults.error());
        QVERIFY(!QFile::exists(QFileInfo(file.path).path()));
        defaults.setData(key, value);
        QVERIFY(!defaults.error());
        QVERIFY(!IniUserDefaults(file.path).error());
        QCOMPARE(file.names(), QStringList(u"Corvane.conf"_s));
    }

    void readsTheFileOnce_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("another file") << QByteArray("[General]\npauseAll=true\nx=5\n");
        QTest::newRow("no file") << QByteArray();
    }
    void readsTheFileOnce()
    {
        QFETCH(const QByteArray, text);
        const File file;
        file.write("[General]\n" + line + "\n");
        IniUserDefaults defaults(file.path);
        QVERIFY(QFile::remove(file.path));
        if (!text.isEmpty())
            file.write(text);
        defaults.setBoolean(u"showRunNotification"_s, false);
        QCOMPARE(defaults.data(key), value);
        QCOMPARE(file.read(), "[General]\n" + line + "\nshowRunNotification=false\n");
    }

    void keepsADamagedFileBesideTheNewOne_data()
    {
        QTest::addColumn<QByteArray>("damage");
        QTest::newRow("a line that is no setting") << QByteArray("garbage\n");
        QTest::newRow("a heading that does not end") << QByteArray("[Other\n");
        QTest::newRow("zero bytes") << QByteArray(10, '\0');
        QTest::newRow("a value that does not end") << QByteArray("x=\"@ByteArray({\\\"carbon");
        QTest::newRow("a value that takes the next lines with it")
            << QByteArray("x=\"abc\ny=\"def\"\n");
    }
    void keepsADamagedFileBesideTheNewOne()
    {
        QFETCH(const QByteArray, damage);
        const File file;
        const QByteArray text = "[General]\n" + line + "\n" + damage;
        file.write(text);
        IniUserDefaults defaults(file.path);
        QCOMPARE(defaults.error().value().description,
                 u"The file “%1” is damaged."_s.arg(file.path));
        QCOMPARE(defaults.data(key), value);
        QCOMPARE(file.read(), text);
        QVERIFY(!QFile::exists(file.kept));

        defaults.setBoolean(u"pauseAll"_s, true);
        QVERIFY(!defaults.error());
        QCOMPARE(File::read(file.kept), text);
        QVERIFY(file.read().contains(line + "\npauseAll=true\n"));
        QVERIFY(!IniUserDefaults(file.path).error());
        defaults.setBoolean(u"pauseAll"_s, false);
        QCOMPARE(File::read(file.kept), text);
    }

    void readsWhatIsOddButNotDamaged_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("no heading") << line + '\n';
        QTest::newRow("no end of the last line") << "[General]\n" + line;
        QTest::newRow("line ends of other systems") << "[General]\r\n" + line + "\r\n";
        QTest::newRow("comments and empty lines") << "; mine\n\n[General]\n\n" + line + "\n";
        QTest::newRow("a quotation mark in a comment") << "; a 5\" disk\n[General]\n" + line + "\n";
        QTest::newRow("one in a comment at the end") << "[General]\n" + line + "\n; a 5\" disk";
        QTest::newRow("a line without a key") << "[General]\n=5\n" + line + "\n";
    }
    void readsWhatIsOddButNotDamaged()
    {
        QFETCH(const QByteArray, text);
        const File file;
        file.write(text);
        QTest::failOnWarning(QRegularExpression(u"."_s));
        IniUserDefaults defaults(file.path);
        QVERIFY(!defaults.error());
        QCOMPARE(defaults.data(key).has_value(), text.contains(line));
        defaults.setBoolean(u"pauseAll"_s, true);
        QVERIFY(!defaults.error());
        QVERIFY(!QFile::exists(file.kept));
    }

    void savesWhateverTheUmaskIs()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(u"folder/Corvane.conf"_s);
        // A user whom permissions bind.
        const uid_t user = geteuid();
        constexpr uid_t nobody = 65534;
        QVERIFY(QFile::setPermissions(folder.path(), QFile::Permissions(0x7777)));
        QVERIFY(user != 0 || seteuid(nobody) == 0);
        const mode_t before = umask(ACCESSPERMS);
        IniUserDefaults defaults(path);
        defaults.setBoolean(u"pauseAll"_s, true);
        umask(before);
        QCOMPARE(seteuid(user), 0);
        QVERIFY(!defaults.error());
        struct stat status = {};
        QCOMPARE(stat(QFile::encodeName(path).constData(), &status), 0);
        QCOMPARE(status.st_mode & ALLPERMS, mode_t(S_IRUSR | S_IWUSR));
    }

    void keepsWhatHasComeInItsPlaceSinceTheStart()
    {
        const File file;
        IniUserDefaults defaults(file.path);
        defaults.setBoolean(u"pauseAll"_s, true);
        QVERIFY(QFile::remove(file.path) && QDir().mkpath(file.path + u"/precious"_s));
        defaults.setBoolean(u"pauseAll"_s, false);
        QVERIFY(!defaults.error());
        QCOMPARE(IniUserDefaults(file.path).boolean(u"pauseAll"_s), false);
        QVERIFY(QDir(file.kept + u"/precious"_s).exists());
    }

    void savesNothingWhereADamagedFileCannotBeKept()
    {
        const QTemporaryDir folder;
        // No longer name is possible on most file systems.
        const QString path = folder.filePath(QString(250, u'x'));
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadWrite));
        QVERIFY(file.write("damaged") > 0 && file.flush());
        IniUserDefaults defaults(path);
        QVERIFY(defaults.error());
        defaults.setBoolean(u"pauseAll"_s, true);
        QVERIFY(defaults.error());
        QVERIFY(file.seek(0));
        QCOMPARE(file.readAll(), QByteArray("damaged"));
    }

    void takesWhatIsTooLargeForEmptyAndMovesItAside()
    {
        const File file;
        file.write({});
        QVERIFY(QFile::resize(file.path, 16LL * 1024 * 1024 + 1));
        IniUserDefaults defaults(file.path);
        QVERIFY(defaults.error());
        QCOMPARE(defaults.data(key), std::nullopt);
        defaults.setData(key, value);
        QVERIFY(!defaults.error());
        QCOMPARE(file.read(), "[General]\n" + line + "\n");
        QCOMPARE(file.names(), QStringList({u"Corvane.conf"_s, u"Corvane.conf.unreadable"_s}));
    }

    void replacesTheFileThatALinkLeadsTo()
    {
        const File file;
        const QString elsewhere = file.folder.filePath(u"elsewhere"_s);
        file.write("[General]\n" + line + "\n");
        QVERIFY(QFile::rename(file.path, elsewhere) && QFile::link(elsewhere, file.path));
        IniUserDefaults defaults(file.path);
        QCOMPARE(defaults.data(key), value);
        defaults.setBoolean(u"pauseAll"_s, true);
        QCOMPARE(QFile::symLinkTarget(file.path), elsewhere);
        QCOMPARE(File::read(elsewhere), "[General]\n" + line + "\npauseAll=true\n");
    }

    void isForTheUserAlone()
    {
        const File file;
        const mode_t usual = umask(0);
        const auto restored = qScopeGuard([usual] { umask(usual); });
        IniUserDefaults(file.path).setData(key, value);
        const auto readAndWrite =
            QFile::ReadOwner | QFile::ReadUser | QFile::WriteOwner | QFile::WriteUser;
        QCOMPARE(QFile::permissions(file.path), readAndWrite);
        QCOMPARE(QFile::permissions(QFileInfo(file.path).path()),
                 readAndWrite | QFile::ExeOwner | QFile::ExeUser);
        QVERIFY(QFile::setPermissions(file.path, readAndWrite | QFile::WriteOther));
        IniUserDefaults(file.path).setBoolean(u"pauseAll"_s, true);
        QCOMPARE(QFile::permissions(file.path), readAndWrite);
    }

    void leavesTheOldFileWhereTheNewOneHasNoSpace_data()
    {
        QTest::addColumn<int>("length");
        QTest::newRow("a little more than fits") << 1;
        QTest::newRow("much more than fits") << 100'000;
    }
    void leavesTheOldFileWhereTheNewOneHasNoSpace()
    {
        QFETCH(const int, length);
        const File file;
        IniUserDefaults defaults(file.path);
        defaults.setData(key, value);
        const QByteArray before = file.read();
        QTest::failOnWarning(QRegularExpression(u"."_s));
        withLittleSpace([&] {
            defaults.setData(u"x"_s, QByteArray(length, 'x'));
            QCoreApplication::processEvents();
        });
        QVERIFY(defaults.error());
        QCOMPARE(file.read(), before);
        QCOMPARE(file.names(), QStringList(u"Corvane.conf"_s));

        defaults.remove(u"absent"_s);
        QVERIFY(!defaults.error());
        QCOMPARE(file.read(), before + "x=@ByteArray(" + QByteArray(length, 'x') + ")\n");
    }

    void tellsOfEachWriteThatFailsAndKeepsTheValues()
    {
        IniUserDefaults defaults(u"/dev/null/Corvane/Corvane.conf"_s);
        int failures = 0;
        connect(&defaults, &UserDefaults::changed, this,
                [&] { failures += defaults.error() ? 1 : 0; });
        QTest::failOnWarning(QRegularExpression(u"."_s));
        defaults.setData(key, value);
        {
            const auto together = defaults.writeTogether();
            defaults.setBoolean(u"pauseAll"_s, true);
            defaults.remove(u"x"_s);
        }
        QCOMPARE(failures, 2);
        QCOMPARE(defaults.data(key), value);
        QCOMPARE(defaults.boolean(u"pauseAll"_s), true);
    }

    void writesNothingWhereNothingHasChanged()
    {
        const File file;
        file.write("garbage");
        IniUserDefaults defaults(file.path);
        QVERIFY(defaults.error());
        defaults.remove(key);
        QVERIFY(!defaults.error());
        QCOMPARE(file.read(), QByteArray("garbage"));
    }
};

QTEST_GUILESS_MAIN(IniUserDefaultsTest)
#include "IniUserDefaultsTest.moc"
