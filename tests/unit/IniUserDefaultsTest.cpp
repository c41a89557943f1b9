#include "platform/linux/IniUserDefaults.h"
#include "support/LittleSpace.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <functional>

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

    QByteArray read() const
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
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

    void hasAnotherRevisionAfterEachChange_data()
    {
        QTest::addColumn<std::function<void(IniUserDefaults &)>>("use");
        QTest::addColumn<bool>("changes");
        const auto add = [](const char *row, bool changes,
                            const std::function<void(IniUserDefaults &)> &use) {
            QTest::newRow(row) << use << changes;
        };
        add("data", true, [](IniUserDefaults &it) { it.setData(key, value); });
        add("a Boolean", true, [](IniUserDefaults &it) { it.setBoolean(u"pauseAll"_s, true); });
        add("a removed key", true, [](IniUserDefaults &it) { it.remove(key); });
        add("a read", false, [](IniUserDefaults &it) { QVERIFY(it.data(key)); });
    }
    void hasAnotherRevisionAfterEachChange()
    {
        QFETCH(const std::function<void(IniUserDefaults &)>, use);
        QFETCH(const bool, changes);
        const File file;
        file.write("[General]\n" + line + "\n");
        IniUserDefaults defaults(file.path);
        // At once, and not when the changes are written.
        const auto together = defaults.writeTogether();
        const quint64 before = defaults.revision();
        use(defaults);
        QCOMPARE(defaults.revision() != before, changes);
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
        int notices = 0;
        const auto observation = defaults.addObserver([&notices] { ++notices; });
        use(defaults);
        QTEST(notices, "notices");
    }

    void tellsOfAChangeThatIsDone()
    {
        const File file;
        IniUserDefaults defaults(file.path);
        std::optional<bool> seen;
        QByteArray written;
        const auto observation = defaults.addObserver([&] {
            seen = defaults.boolean(u"pauseAll"_s);
            written = file.read();
        });
        defaults.setBoolean(u"pauseAll"_s, true);
        QCOMPARE(seen, std::optional(true));
        QCOMPARE(written, QByteArray("[General]\npauseAll=true\n"));
    }

    void tellsThoseWhoStillWantToKnow()
    {
        const File file;
        IniUserDefaults defaults(file.path);
        QStringList told;
        const auto first = defaults.addObserver([&told] { told << u"first"_s; });
        {
            const auto second = defaults.addObserver([&told] { told << u"second"_s; });
            defaults.setBoolean(u"pauseAll"_s, true);
        }
        defaults.setBoolean(u"pauseAll"_s, false);
        QCOMPARE(told, QStringList({u"first"_s, u"second"_s, u"first"_s}));
    }

    void leavesTheOldFileWhereTheNewOneHasNoSpace()
    {
        const File file;
        IniUserDefaults defaults(file.path);
        defaults.setData(key, value);
        const QByteArray before = file.read();
        const auto complaint = "corvane: the settings cannot be written to " + file.path.toUtf8();
        QTest::ignoreMessage(QtWarningMsg, complaint.constData());
        withLittleSpace([&] {
            defaults.setBoolean(u"pauseAll"_s, true);
            QCoreApplication::processEvents();
        });
        QCOMPARE(file.read(), before);

        defaults.remove(u"absent"_s);
        QCOMPARE(file.read(), before + "pauseAll=true\n");
    }

    void saysOnceWhatItCannotWriteAndKeepsItUntilTheEnd()
    {
        IniUserDefaults defaults(u"/dev/null/Corvane/Corvane.conf"_s);
        QTest::ignoreMessage(
            QtWarningMsg,
            "corvane: the settings cannot be written to /dev/null/Corvane/Corvane.conf");
        QTest::failOnWarning(QRegularExpression(u"."_s));
        defaults.setData(key, value);
        defaults.setBoolean(u"pauseAll"_s, true);
        QCOMPARE(defaults.data(key), value);
        QCOMPARE(defaults.boolean(u"pauseAll"_s), true);
    }
};

QTEST_GUILESS_MAIN(IniUserDefaultsTest)
#include "IniUserDefaultsTest.moc"
