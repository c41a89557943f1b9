#include "actions/Notifier.h"
#include "fakes/FakePlatform.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
void post(const FakePlatform &platform)
{
    Notifier::post(u"“Mail” failed"_s, u"It is not there."_s, platform.services);
}

const QList<std::pair<QString, QString>> theOne{{u"“Mail” failed"_s, u"It is not there."_s}};
} // namespace

class NotifierTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void postsWhatTheUserAllows_data()
    {
        QTest::addColumn<int>("status");
        QTest::addColumn<int>("posts");
        QTest::newRow("not determined, and not answered yet") << 0 << 0;
        QTest::newRow("denied") << 1 << 0;
        QTest::newRow("authorized") << 2 << 1;
        QTest::newRow("provisional") << 3 << 1;
        QTest::newRow("unknown") << 4 << 0;
    }
    void postsWhatTheUserAllows()
    {
        QFETCH(const int, status);
        FakePlatform platform;
        platform.notifications.status = AuthorizationStatus(status);
        post(platform);
        QTEST(int(platform.notifications.added.size()), "posts");
    }

    void postsTitleAndBody()
    {
        FakePlatform platform;
        post(platform);
        QCOMPARE(platform.notifications.texts(), theOne);
    }

    void asksForAlertsOnlyWhereNothingIsSettled()
    {
        FakePlatform platform;
        platform.notifications.status = AuthorizationStatus::notDetermined;
        post(platform);
        QCOMPARE(platform.notifications.requestedOptions, QList<unsigned>({4}));
    }

    void asksForNothingThatIsSettled()
    {
        FakePlatform platform;
        post(platform);
        platform.notifications.status = AuthorizationStatus::denied;
        post(platform);
        QVERIFY(platform.notifications.requestedOptions.isEmpty());
    }

    void postsOnceTheUserAgrees()
    {
        FakePlatform platform;
        platform.notifications.status = AuthorizationStatus::notDetermined;
        post(platform);
        platform.notifications.answer(true);
        QCOMPARE(platform.notifications.texts(), theOne);
    }

    void postsNothingIfTheUserRefuses()
    {
        FakePlatform platform;
        platform.notifications.status = AuthorizationStatus::notDetermined;
        post(platform);
        platform.notifications.answer(false);
        QVERIFY(platform.notifications.added.isEmpty());
    }

    void givesEqualNotificationsIdentifiersOfTheirOwn()
    {
        FakePlatform platform;
        post(platform);
        post(platform);
        const auto &added = platform.notifications.added;
        QCOMPARE(platform.notifications.texts(), theOne + theOne);
        QVERIFY(!QUuid::fromString(added[0].identifier).isNull());
        QVERIFY(added[0].identifier != added[1].identifier);
    }

    void leavesTheCenterAloneWithoutABundleIdentifier()
    {
        FakePlatform platform;
        platform.services.bundleIdentifier.clear();
        post(platform);
        QCOMPARE(platform.notifications.timesAsked, 0);
    }
};

QTEST_APPLESS_MAIN(NotifierTest)
#include "NotifierTest.moc"
