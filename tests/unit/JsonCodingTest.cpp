#include "foundation/Json.h"
#include "support/CpuTime.h"

#include <QTest>
#include <limits>
#include <nlohmann/json.hpp>

using namespace Qt::StringLiterals;

class JsonCodingTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void refusesWhatIsNotOneJsonText_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("half a text") << QByteArray("[1,");
        QTest::newRow("two texts") << QByteArray("[] []");
        QTest::newRow("a comment") << QByteArray("[] // all");
        QTest::newRow("invalid UTF-8") << QByteArray("[\"\xff\"]");
        QTest::newRow("half a surrogate pair") << QByteArray(R"(["\ud800"])");
        QTest::newRow("a number out of all range") << QByteArray("[1e999]");
        QTest::newRow("a zero byte after it") << QByteArray("[]\0", 3);
        QTest::newRow("a zero byte and another text") << QByteArray("[]\0[]", 5);
        QTest::newRow("half a byte order mark") << QByteArray("\xef\xbb[]");
        QTest::newRow("UTF-16") << QByteArray("\xff\xfe[\0]\0", 6);
    }
    void refusesWhatIsNotOneJsonText()
    {
        QFETCH(const QByteArray, text);
        const auto json = JsonCoding::parse(text);
        QVERIFY(!json);
        QVERIFY(!json.error().description.isEmpty());
    }

    void readsPastAByteOrderMark() { QVERIFY(JsonCoding::parse("\xef\xbb\xbf[]")); }

    void quotesNoMoreThanCanBeRead()
    {
        const auto json = JsonCoding::parse("[\"" + QByteArray(10'000'000, 'x'));
        QVERIFY(!json);
        QCOMPARE(json.error().description.size(), 300);
        QVERIFY(json.error().description.endsWith(u"xxx…"_s));
    }

    void readsAHugeObjectInTime()
    {
        QByteArray text = "{";
        for (int i = 0; i < 200'000; ++i)
            text += "\"" + QByteArray::number(i) + "\":0,";
        text += "\"n\":0}";
        QVERIFY(cpuSeconds([&text] { QVERIFY(JsonCoding::parse(text)); }) < 5);
    }

    void refusesAbsurdDepth_data()
    {
        QTest::addColumn<QByteArray>("text");
        const auto nested = [](int depth) {
            return QByteArray(depth, '[') + QByteArray(depth, ']');
        };
        QTest::newRow("a little more than any file has") << nested(102);
        QTest::newRow("a million levels") << nested(1'000'000);
        QTest::newRow("a million that do not end") << QByteArray(1'000'000, '[');
        QTest::newRow("in a member") << "{\"n\":" + nested(1'000'000) + "}";
        QTest::newRow("in a member that a later one replaces")
            << "{\"n\":" + nested(1'000'000) + ",\"n\":7}";
        QTest::newRow("of objects")
            << QByteArray("{\"n\":").repeated(1'000'000) + "7" + QByteArray(1'000'000, '}');
    }
    void refusesAbsurdDepth()
    {
        QFETCH(const QByteArray, text);
        QVERIFY(!JsonCoding::parse(text));
    }

    void readsWhatIsNestedSensibly()
    {
        QVERIFY(JsonCoding::parse(QByteArray(100, '[') + QByteArray(100, ']')));
        QVERIFY(JsonCoding::parse("[" + QByteArray("[],").repeated(1000) + "{}]"));
        QVERIFY(JsonCoding::parse("[\"\\\"" + QByteArray(1000, '[') + "\"]"));
    }

    void writesMembersSortedOnLinesOfTheirOwn()
    {
        QCOMPARE(JsonCoding::writePretty({{"z", 1}, {"a", {{"c", 2}, {"b", true}}}}),
                 QByteArray("{\n  \"a\": {\n    \"b\": true,\n    \"c\": 2\n  },\n  \"z\": 1\n}"));
    }

    void writesMembersInTheirOrderWithoutBlanks()
    {
        QCOMPARE(JsonCoding::write(OrderedJson{{"z", 1}, {"a", true}}),
                 QByteArray(R"({"z":1,"a":true})"));
    }

    void keepsEveryText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("typographic marks") << u"“Mail” – ünïcode"_s;
        QTest::newRow("emoji") << u"🚀"_s;
        QTest::newRow("right to left") << u"דואר"_s;
        QTest::newRow("quotes and line breaks") << u"a\"b\\c\nd\te"_s;
        QTest::newRow("a zero character") << QString(u"a\0b"_s);
    }
    void keepsEveryText()
    {
        QFETCH(const QString, text);
        const auto json =
            JsonCoding::parse(JsonCoding::write(OrderedJson{{"text", text.toStdString()}}));
        QCOMPARE(JsonCoding::textMember(*json, "text").value(), text);
    }

    void readsWholeNumbersOnly_data()
    {
        QTest::addColumn<QByteArray>("number");
        QTest::addColumn<std::optional<qint64>>("expected");
        using Number = std::optional<qint64>;
        QTest::newRow("zero") << QByteArray("0") << Number(0);
        QTest::newRow("negative") << QByteArray("-5") << Number(-5);
        QTest::newRow("the largest")
            << QByteArray("9223372036854775807") << Number(std::numeric_limits<qint64>::max());
        QTest::newRow("the smallest")
            << QByteArray("-9223372036854775808") << Number(std::numeric_limits<qint64>::min());
        QTest::newRow("2^63") << QByteArray("9223372036854775808") << Number();
        QTest::newRow("2^64") << QByteArray("18446744073709551616") << Number();
        QTest::newRow("a fraction") << QByteArray("12.5") << Number();
        QTest::newRow("a fraction of nothing") << QByteArray("12.0") << Number();
        QTest::newRow("a Boolean") << QByteArray("true") << Number();
        QTest::newRow("a text") << QByteArray("\"12\"") << Number();
        QTest::newRow("null") << QByteArray("null") << Number();
    }
    void readsWholeNumbersOnly()
    {
        QFETCH(const QByteArray, number);
        QFETCH(const std::optional<qint64>, expected);
        const auto json = JsonCoding::parse("{\"n\":" + number + "}");
        const auto read = JsonCoding::integerMember(*json, "n");
        QCOMPARE(read ? std::optional(*read) : std::nullopt, expected);
    }

    void readsUnsignedNumbersThatMayBeAbsent_data()
    {
        QTest::addColumn<QByteArray>("object");
        QTest::addColumn<std::optional<quint32>>("expected");
        using Number = std::optional<quint32>;
        QTest::newRow("missing") << QByteArray("{}") << Number();
        QTest::newRow("null") << QByteArray(R"({"n":null})") << Number();
        QTest::newRow("zero") << QByteArray(R"({"n":0})") << Number(0);
        QTest::newRow("the largest") << QByteArray(R"({"n":4294967295})") << Number(4294967295);
    }
    void readsUnsignedNumbersThatMayBeAbsent()
    {
        QFETCH(const QByteArray, object);
        QFETCH(const std::optional<quint32>, expected);
        const auto json = JsonCoding::parse(object);
        QCOMPARE(JsonCoding::optionalUnsignedMember(*json, "n").value(), expected);
    }

    void refusesWhatIsNoUnsignedNumber_data()
    {
        QTest::addColumn<QByteArray>("number");
        for (const char *const bad : {"-1", "4294967296", "18446744073709551616", "1.0", "1e3",
                                      "true", "\"1\"", "[]", "{}"})
            QTest::newRow(bad) << QByteArray(bad);
    }
    void refusesWhatIsNoUnsignedNumber()
    {
        QFETCH(const QByteArray, number);
        const auto json = JsonCoding::parse("{\"n\":" + number + "}");
        const auto read = JsonCoding::optionalUnsignedMember(*json, "n");
        QVERIFY(!read);
        QCOMPARE(read.error().description,
                 u"The value “n” is not a whole number from 0 to 4294967295."_s);
    }

    void findsNoMemberInWhatIsNoObject()
    {
        QVERIFY(!JsonCoding::textMember(Json::array({"name"}), "name"));
        QVERIFY(!JsonCoding::booleanMember(Json(true), "isEnabled"));
        QVERIFY(!JsonCoding::integerMember(Json(), "n"));
        QVERIFY(!JsonCoding::arrayMember(Json::array({"items"}), "items"));
    }
};

QTEST_APPLESS_MAIN(JsonCodingTest)
#include "JsonCodingTest.moc"
