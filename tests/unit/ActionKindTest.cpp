#include "model/ActionKind.h"

#include <QTest>

using namespace Qt::StringLiterals;

class ActionKindTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasFourKindsInAFixedOrder()
    {
        QStringList rawValues;
        QStringList titles;
        for (const ActionKind kind : ActionKinds::allCases) {
            QCOMPARE(int(kind), int(rawValues.size()));
            rawValues << rawValue(kind);
            titles << title(kind);
        }
        QCOMPARE(rawValues, QStringList({u"app"_s, u"path"_s, u"website"_s, u"shortcut"_s}));
        QCOMPARE(titles,
                 QStringList({u"Open an app"_s, u"Open a folder or file"_s, u"Open a website"_s,
                              u"Run a Shortcut"_s}));
    }

    void isMadeFromEachOfItsRawValues()
    {
        for (const ActionKind kind : ActionKinds::allCases)
            QCOMPARE(actionKind(rawValue(kind)), kind);
    }

    void isNotMadeFromAnyOtherText_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("wrong case") << u"App"_s;
        QTest::newRow("unknown") << u"folder"_s;
        QTest::newRow("empty") << u""_s;
        QTest::newRow("blank behind") << u"app "_s;
        QTest::newRow("a title") << u"Open an app"_s;
    }
    void isNotMadeFromAnyOtherText()
    {
        QFETCH(const QString, text);
        QCOMPARE(actionKind(text), std::nullopt);
    }
};

QTEST_APPLESS_MAIN(ActionKindTest)
#include "ActionKindTest.moc"
