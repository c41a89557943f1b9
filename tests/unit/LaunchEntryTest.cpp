#include "model/LaunchEntry.h"
#include "model/AppError.h"

#include <QDir>
#include <QTest>
#include <nlohmann/json.hpp>

using namespace Qt::StringLiterals;

namespace
{
const QString idText = u"1B4E28BA-2FA1-11D2-883F-0016D3CCA427"_s;

LaunchEntry mail()
{
    return {
        .id = QUuid::fromString(idText),
        .name = u"Mail"_s,
        .kind = ActionKind::app,
        .target = u"/usr/share/applications/mail.desktop"_s,
        .isEnabled = true,
    };
}

QByteArray record(const QByteArray &members)
{
    return "{" + members + "}";
}

Result<LaunchEntry> decoded(const QByteArray &text)
{
    return LaunchEntry::fromJson(JsonCoding::parse(text).value());
}
} // namespace

class LaunchEntryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsAsAnEnabledAppWithoutNameAndTarget()
    {
        const LaunchEntry entry;
        QVERIFY(!entry.id.isNull());
        QCOMPARE(entry.name, QString());
        QCOMPARE(entry.kind, ActionKind::app);
        QCOMPARE(entry.target, QString());
        QVERIFY(entry.isEnabled);
    }

    void hasAnIdOfItsOwn() { QVERIFY(LaunchEntry().id != LaunchEntry().id); }

    void isUnequalWhenAnyFieldDiffers()
    {
        QCOMPARE(mail(), mail());
        auto other = mail();
        other.id = QUuid::createUuid();
        QVERIFY(other != mail());
        other = mail();
        other.name = u"Post"_s;
        QVERIFY(other != mail());
        other = mail();
        other.kind = ActionKind::path;
        QVERIFY(other != mail());
        other = mail();
        other.target = u"/"_s;
        QVERIFY(other != mail());
        other = mail();
        other.isEnabled = false;
        QVERIFY(other != mail());
    }

    void namesItsKeysAfterItsId()
    {
        QCOMPARE(mail().shortcutName().rawValue, u"corvane-"_s + idText);
    }

    void describesItsTarget_data()
    {
        QTest::addColumn<ActionKind>("kind");
        QTest::addColumn<QString>("target");
        QTest::addColumn<QString>("description");
        const QString home = QDir::homePath();
        for (const ActionKind kind : ActionKinds::allCases)
            QTest::addRow("empty %s", qPrintable(rawValue(kind)))
                << kind << QString() << u"No target"_s;
        QTest::newRow("an app in the home folder")
            << ActionKind::app << home + u"/bin/tool"_s << u"~/bin/tool"_s;
        QTest::newRow("the home folder") << ActionKind::path << home << u"~"_s;
        QTest::newRow("a neighbour of the home folder")
            << ActionKind::path << home + u"-old/file"_s << home + u"-old/file"_s;
        QTest::newRow("a path elsewhere") << ActionKind::path << u"/opt/x"_s << u"/opt/x"_s;
        QTest::newRow("a website that begins like the home folder")
            << ActionKind::website << home + u"/x"_s << home + u"/x"_s;
        QTest::newRow("a Shortcut that begins like the home folder")
            << ActionKind::shortcut << home + u"/x"_s << home + u"/x"_s;
    }
    void describesItsTarget()
    {
        QFETCH(const ActionKind, kind);
        QFETCH(const QString, target);
        QTEST(LaunchEntry({.kind = kind, .target = target}).targetDescription(), "description");
    }

    void abbreviatesNothingWithoutAHomeFolder()
    {
        const QByteArray home = qgetenv("HOME");
        qputenv("HOME", "/");
        const QString description = LaunchEntry{.target = u"/opt/x"_s}.targetDescription();
        qputenv("HOME", home);
        QCOMPARE(description, u"/opt/x"_s);
    }

    void writesItsMembersInTheOrderOfItsFields()
    {
        QCOMPARE(QString::fromUtf8(JsonCoding::write(mail().toJson())),
                 uR"({"id":"1B4E28BA-2FA1-11D2-883F-0016D3CCA427","name":"Mail","kind":"app",)"
                 uR"("target":"/usr/share/applications/mail.desktop","isEnabled":true})"_s);
    }

    void readsWhatItWrites()
    {
        for (const ActionKind kind : ActionKinds::allCases) {
            auto entry = mail();
            entry.kind = kind;
            entry.name = u"“Mail” 🚀"_s;
            entry.isEnabled = false;
            QCOMPARE(LaunchEntry::fromJson(entry.toJson()).value(), entry);
        }
    }

    void readsRecordsWrittenByOthers_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("in another order with blanks") << record(
            R"( "isEnabled": true, "target": "/t", "kind": "path", "name": "N",
                "id": "1B4E28BA-2FA1-11D2-883F-0016D3CCA427" )");
        QTest::newRow("with unknown members")
            << record(R"("id":"1B4E28BA-2FA1-11D2-883F-0016D3CCA427","name":"N","kind":"path",)"
                      R"("target":"/t","isEnabled":true,"colour":"red","shortcut":{})");
        QTest::newRow("with a lower case id")
            << record(R"("id":"1b4e28ba-2fa1-11d2-883f-0016d3cca427","name":"N","kind":"path",)"
                      R"("target":"/t","isEnabled":true)");
    }
    void readsRecordsWrittenByOthers()
    {
        QFETCH(const QByteArray, text);
        QCOMPARE(decoded(text).value(),
                 (LaunchEntry{QUuid::fromString(idText), u"N"_s, ActionKind::path, u"/t"_s, true}));
    }

    void readsTheZeroId()
    {
        const auto entry = decoded(R"({"id":"00000000-0000-0000-0000-000000000000","name":"",)"
                                   R"("kind":"app","target":"","isEnabled":true})");
        QCOMPARE(entry.value().id, QUuid());
    }

    void refusesARecordWithABadMember_data()
    {
        QTest::addColumn<QByteArray>("member");
        QTest::addColumn<QByteArray>("bad");
        const auto add = [](const char *row, const QByteArray &member, const QByteArray &bad) {
            QTest::newRow(row) << member << bad;
        };
        add("no id", "id", "");
        add("no name", "name", "");
        add("no kind", "kind", "");
        add("no target", "target", "");
        add("no isEnabled", "isEnabled", "");
        add("id of another type", "id", "7");
        add("name of another type", "name", "null");
        add("kind of another type", "kind", "0");
        add("target of another type", "target", "[]");
        add("isEnabled as a number", "isEnabled", "1");
        add("isEnabled as a text", "isEnabled", "\"true\"");
        add("id that is garbage", "id", "\"garbage\"");
        add("id in braces", "id", "\"{1B4E28BA-2FA1-11D2-883F-0016D3CCA427}\"");
        add("id without hyphens", "id", "\"1B4E28BA2FA111D2883F0016D3CCA427\"");
        add("id with trailing junk", "id", "\"1B4E28BA-2FA1-11D2-883F-0016D3CCA427x\"");
        add("id with a trailing line break", "id", "\"1B4E28BA-2FA1-11D2-883F-0016D3CCA427\\n\"");
        add("id with a letter beyond F", "id", "\"1B4E28BG-2FA1-11D2-883F-0016D3CCA427\"");
        add("id that is empty", "id", "\"\"");
        add("kind in the wrong case", "kind", "\"App\"");
        add("kind that is unknown", "kind", "\"folder\"");
    }
    void refusesARecordWithABadMember()
    {
        QFETCH(const QByteArray, member);
        QFETCH(const QByteArray, bad);
        Json json = mail().toJson();
        const std::string key = member.toStdString();
        if (bad.isEmpty())
            json.erase(key);
        else
            json[key] = JsonCoding::parse(bad).value();
        const auto entry = LaunchEntry::fromJson(json);
        QVERIFY(!entry);
        QVERIFY(!entry.error().description.isEmpty());
    }

    void refusesARecordThatIsNoObject()
    {
        QVERIFY(!decoded("[]"));
        QVERIFY(!decoded("null"));
    }

    void readsAListInItsOrder()
    {
        auto second = mail();
        second.id = QUuid::createUuid();
        const auto list =
            LaunchEntry::listFromJson(Json::array({second.toJson(), mail().toJson()}));
        QCOMPARE(list.value(), (QList{second, mail()}));
    }

    void refusesAWholeListForOneBadRecord()
    {
        Json bad = mail().toJson();
        bad.erase("isEnabled");
        QVERIFY(!LaunchEntry::listFromJson(Json::array({mail().toJson(), bad})));
    }

    void refusesAListThatIsNoArray() { QVERIFY(!LaunchEntry::listFromJson(mail().toJson())); }

    void everyErrorIsANewOne()
    {
        const AppError first{.message = u"It failed."_s, .details = u"Why"_s};
        const AppError second{.message = u"It failed."_s, .details = u"Why"_s};
        QVERIFY(first.id != second.id);
        QVERIFY(first != second);
    }
};

QTEST_APPLESS_MAIN(LaunchEntryTest)
#include "LaunchEntryTest.moc"
