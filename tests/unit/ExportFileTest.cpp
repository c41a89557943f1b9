#include "model/ExportFile.h"

#include <QTest>
#include <nlohmann/json.hpp>

using namespace Qt::StringLiterals;

namespace
{
const ExportItem news{
    .name = u"News"_s,
    .kind = ActionKind::website,
    .target = u"https://example.org"_s,
    .keyCode = 45,
    .modifiers = 256,
};

const QByteArray withNews = "{\n"
                            "  \"items\": [\n"
                            "    {\n"
                            "      \"isEnabled\": true,\n"
                            "      \"keyCode\": 45,\n"
                            "      \"kind\": \"website\",\n"
                            "      \"modifiers\": 256,\n"
                            "      \"name\": \"News\",\n"
                            "      \"target\": \"https://example.org\"\n"
                            "    }\n"
                            "  ],\n"
                            "  \"version\": 1\n"
                            "}";

const QByteArray requiredMembers = R"("name":"N","kind":"app","target":"T","isEnabled":false)";

/// A file whose second item has those members, after one that is fine.
QByteArray fileWith(const QByteArray &members)
{
    return R"({"version":1,"items":[{)" + requiredMembers + "},{" + members + "}]}";
}

ExportItem secondItem(const QByteArray &members)
{
    return ExportFile::decoded(fileWith(members)).value().items.at(1);
}

const ExportItem required{.name = u"N"_s, .target = u"T"_s, .isEnabled = false};

ExportItem withKeys(std::optional<qint64> keyCode, std::optional<qint64> modifiers)
{
    ExportItem item = required;
    item.keyCode = keyCode;
    item.modifiers = modifiers;
    return item;
}
} // namespace

class ExportFileTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesEachMemberOnALineSortedByKey()
    {
        QCOMPARE(ExportFile{.items = {news}}.encoded(), withNews);
    }

    void writesAnEmptyList()
    {
        QCOMPARE(ExportFile().encoded(), QByteArray("{\n  \"items\": [],\n  \"version\": 1\n}"));
    }

    void leavesOutAbsentKeys()
    {
        const Json json = required.toJson();
        QCOMPARE(json.dump(), R"({"isEnabled":false,"kind":"app","name":"N","target":"T"})");
    }

    void readsWhatItWrote()
    {
        ExportFile file{.items = {news, required, withKeys(0, 0), withKeys(4294967295, 0)}};
        file.items.append({.name = QString(u"“\"Ä\\\n\t🚀\0”"_s)});
        for (const ActionKind kind : ActionKinds::allCases)
            file.items.append({.name = rawValue(kind), .kind = kind});
        QCOMPARE(ExportFile::decoded(file.encoded()).value(), file);
    }

    void readsAnyVersion_data()
    {
        QTest::addColumn<QByteArray>("version");
        QTest::addColumn<qint64>("expected");
        QTest::newRow("a later one") << QByteArray("7") << qint64(7);
        QTest::newRow("zero") << QByteArray("0") << qint64(0);
        QTest::newRow("a negative one") << QByteArray("-1") << qint64(-1);
        QTest::newRow("the largest")
            << QByteArray("9223372036854775807") << std::numeric_limits<qint64>::max();
    }
    void readsAnyVersion()
    {
        QFETCH(const QByteArray, version);
        const auto file = ExportFile::decoded(R"({"items":[],"version":)" + version + "}");
        QTEST(file.value().version, "expected");
    }

    void readsKeysThatMayBeAbsent_data()
    {
        QTest::addColumn<QByteArray>("members");
        QTest::addColumn<ExportItem>("expected");
        const auto add = [](const char *row, const QByteArray &members,
                            const ExportItem &expected) {
            QTest::newRow(row) << requiredMembers + members << expected;
        };
        add("no keys", "", required);
        add("null", R"(,"keyCode":null,"modifiers":null)", required);
        add("both", R"(,"keyCode":12,"modifiers":256)", withKeys(12, 256));
        add("no modifiers", R"(,"keyCode":12)", withKeys(12, {}));
        add("no key code", R"(,"modifiers":256)", withKeys({}, 256));
        add("the smallest", R"(,"keyCode":0,"modifiers":0)", withKeys(0, 0));
        add("the largest", R"(,"keyCode":4294967295,"modifiers":4294967295)",
            withKeys(4294967295, 4294967295));
    }
    void readsKeysThatMayBeAbsent()
    {
        QFETCH(const QByteArray, members);
        QFETCH(const ExportItem, expected);
        QCOMPARE(secondItem(members), expected);
    }

    void readsWhatOthersMayWrite_data()
    {
        QTest::addColumn<QByteArray>("text");
        const QByteArray file = fileWith(requiredMembers);
        QTest::newRow("unknown members")
            << R"({"app":{"keyCode":true},"version":1,"items":[{"id":7,)" + requiredMembers
                + R"(},{"icon":[[]],)" + requiredMembers + "}]}";
        QTest::newRow("blanks everywhere")
            << QByteArray(file).replace(",", "\r\n ,\t").replace(":", " : ") + "\n\n";
        QTest::newRow("escaped slashes and letters")
            << QByteArray(file).replace("\"T\"", "\"\\u0054\"");
        QTest::newRow("a byte order mark") << "\xef\xbb\xbf" + file;
        QTest::newRow("the last of two members with one key")
            << fileWith(R"("name":7,)" + requiredMembers);
    }
    void readsWhatOthersMayWrite()
    {
        QFETCH(const QByteArray, text);
        QCOMPARE(ExportFile::decoded(text).value().items, QList({required, required}));
    }

    void refusesWhatIsNoFileOfThisKind_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<QString>("reason");
        const QString version = u"The value “version” is missing or is not a whole number."_s;
        const QString items = u"The value “items” is missing or is not an array."_s;
        QTest::newRow("another text") << QByteArray("\"Corvane\"") << version;
        QTest::newRow("the list itself") << QByteArray("[]") << version;
        QTest::newRow("no version") << QByteArray(R"({"items":[]})") << version;
        QTest::newRow("null as version") << QByteArray(R"({"items":[],"version":null})") << version;
        QTest::newRow("a text as version")
            << QByteArray(R"({"items":[],"version":"1"})") << version;
        QTest::newRow("a fraction as version")
            << QByteArray(R"({"items":[],"version":1.5})") << version;
        QTest::newRow("a Boolean as version")
            << QByteArray(R"({"items":[],"version":true})") << version;
        QTest::newRow("a version of more than 64 bits")
            << QByteArray(R"({"items":[],"version":9223372036854775808})") << version;
        QTest::newRow("no items") << QByteArray(R"({"version":1})") << items;
        QTest::newRow("null as items") << QByteArray(R"({"version":1,"items":null})") << items;
        QTest::newRow("an object as items") << QByteArray(R"({"version":1,"items":{}})") << items;
        QTest::newRow("keys in another case") << QByteArray(R"({"version":1,"Items":[]})") << items;
        QTest::newRow("a zero byte after it") << R"({"version":1,"items":[]})" + QByteArray(1, '\0')
                                              << u"The text contains a zero byte."_s;
    }
    void refusesWhatIsNoFileOfThisKind()
    {
        QFETCH(const QByteArray, text);
        const auto file = ExportFile::decoded(text);
        QVERIFY(!file);
        QTEST(file.error().description, "reason");
    }

    void refusesWhatIsNoJson_data()
    {
        QTest::addColumn<QByteArray>("text");
        const QByteArray file = fileWith(requiredMembers);
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("half a file") << file.first(file.size() / 2);
        QTest::newRow("more than one file") << file + file;
        QTest::newRow("invalid UTF-8") << QByteArray(file).replace("\"T\"", "\"\xff\"");
        QTest::newRow("UTF-16") << QByteArray("\xff\xfe{\0}\0", 6);
        QTest::newRow("a picture") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
        QTest::newRow("absurd depth") << QByteArray(1'000'000, '[');
    }
    void refusesWhatIsNoJson()
    {
        QFETCH(const QByteArray, text);
        const auto file = ExportFile::decoded(text);
        QVERIFY(!file);
        QVERIFY(!file.error().description.isEmpty());
        QVERIFY(file.error().description.size() <= 300);
    }

    void saysWhichItemIsBad_data()
    {
        QTest::addColumn<QByteArray>("members");
        QTest::addColumn<QString>("reason");
        const auto without = [](const char *row, const QByteArray &member, const QString &reason) {
            QTest::newRow(row) << QByteArray(requiredMembers).replace(member, R"("x":0)") << reason;
        };
        const auto with = [](const char *row, const QByteArray &from, const QByteArray &to,
                             const QString &reason) {
            QTest::newRow(row) << QByteArray(requiredMembers).replace(from, to) << reason;
        };
        const auto plus = [](const char *row, const QByteArray &members, const QString &reason) {
            QTest::newRow(row) << requiredMembers + "," + members << reason;
        };
        const QString name = u"The value “name” is missing or is not a text."_s;
        const QString kind = u"The value “kind” is missing or is not a text."_s;
        const QString target = u"The value “target” is missing or is not a text."_s;
        const QString isEnabled = u"The value “isEnabled” is missing or is not true or false."_s;
        const QString keyCode =
            u"The value “keyCode” is not a whole number from 0 to 4294967295."_s;
        const QString modifiers =
            u"The value “modifiers” is not a whole number from 0 to 4294967295."_s;

        QTest::newRow("nothing in it") << QByteArray() << name;
        without("no name", R"("name":"N")", name);
        without("no kind", R"("kind":"app")", kind);
        without("no target", R"("target":"T")", target);
        without("no isEnabled", R"("isEnabled":false)", isEnabled);
        with("null as name", R"("N")", "null", name);
        with("a number as name", R"("N")", "12", name);
        with("a list as kind", R"("app")", R"(["app"])", kind);
        with("an unknown kind", R"("app")", R"("folder")", u"“folder” is not a kind of entry."_s);
        with("a kind in another case", R"("app")", R"("App")", u"“App” is not a kind of entry."_s);
        with("an endless kind", R"("app")", '"' + QByteArray(100'000, 'x') + '"',
             u"“"_s + QString(299, u'x') + u"…” is not a kind of entry."_s);
        with("a Boolean as target", R"("T")", "true", target);
        with("a number as isEnabled", "false", "0", isEnabled);
        with("a text as isEnabled", "false", R"("false")", isEnabled);
        for (const char *const bad : {"12.5", "12.0", "-1", "4294967296", "9223372036854775808",
                                      "1e3", "\"12\"", "true", "false", "[]", "{}"}) {
            plus(QByteArray(bad).prepend("as key code "), QByteArray(R"("keyCode":)") + bad,
                 keyCode);
            plus(QByteArray(bad).prepend("as modifiers "),
                 QByteArray(R"("keyCode":1,"modifiers":)") + bad, modifiers);
            plus(QByteArray(bad).prepend("as modifiers of no keys "),
                 QByteArray(R"("modifiers":)") + bad, modifiers);
        }
    }
    void saysWhichItemIsBad()
    {
        QFETCH(const QByteArray, members);
        QFETCH(const QString, reason);
        const auto file = ExportFile::decoded(fileWith(members));
        QVERIFY(!file);
        QCOMPARE(file.error().description, u"Item 2: "_s + reason);
    }

    void saysWhichItemIsNone()
    {
        const auto file = ExportFile::decoded(R"({"version":1,"items":["News"]})");
        QVERIFY(!file);
        QCOMPARE(file.error().description,
                 u"Item 1: The value “name” is missing or is not a text."_s);
    }
};

QTEST_APPLESS_MAIN(ExportFileTest)
#include "ExportFileTest.moc"
