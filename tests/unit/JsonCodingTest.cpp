#include "foundation/Json.h"

#include <QTest>
#include <limits>

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
    }
    void refusesWhatIsNotOneJsonText()
    {
        QFETCH(const QByteArray, text);
        const auto json = JsonCoding::parse(text);
        QVERIFY(!json);
        QVERIFY(!json.error().description.isEmpty());
    }

    void survivesAbsurdDepth()
    {
        const QByteArray opening(1'000'000, '[');
        QVERIFY(!JsonCoding::parse(opening));
        const auto json = JsonCoding::parse("{\"n\":" + opening + QByteArray(1'000'000, ']') + "}");
        QVERIFY(json);
        QVERIFY(!JsonCoding::integerMember(*json, "n"));
    }

    void writesMembersInTheirOrderWithoutBlanks()
    {
        QCOMPARE(JsonCoding::write(Json{{"z", 1}, {"a", true}}), QByteArray(R"({"z":1,"a":true})"));
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
            JsonCoding::parse(JsonCoding::write(Json{{"text", JsonCoding::fromText(text)}}));
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

    void findsNoMemberInWhatIsNoObject()
    {
        QVERIFY(!JsonCoding::textMember(Json::array({"name"}), "name"));
        QVERIFY(!JsonCoding::booleanMember(Json(true), "isEnabled"));
        QVERIFY(!JsonCoding::integerMember(Json(), "n"));
    }
};

QTEST_APPLESS_MAIN(JsonCodingTest)
#include "JsonCodingTest.moc"
