#include "platform/linux/activation/UserActivation.h"

#include <QTest>

using TimeOrNothing = std::optional<quint32>;

class UserActivationTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Where no server tells the time, nothing but the id does.
    void initTestCase() { qunsetenv("DISPLAY"); }

    void readsTheTimeOfAStartupId_data()
    {
        QTest::addColumn<QByteArray>("id");
        QTest::addColumn<TimeOrNothing>("time");
        const auto row = [](const char *name, const QByteArray &id, TimeOrNothing time) {
            QTest::newRow(name) << id << time;
        };
        row("an id as launchers make it", "panel/files/12-0-host_TIME123", 123);
        row("the latest time", "panel_TIME4294967295", 4294967295);
        row("the last of two times", "panel_TIME1-files_TIME2", 2);
        row("no id", "", std::nullopt);
        row("an id without a time", "panel-1", std::nullopt);
        row("an empty time", "panel_TIME", std::nullopt);
        row("the time of those who know none", "panel_TIME0", std::nullopt);
        row("a time out of range", "panel_TIME4294967296", std::nullopt);
        row("a negative time", "panel_TIME-1", std::nullopt);
        row("a time with a sign", "panel_TIME+1", std::nullopt);
        row("a time with a blank", "panel_TIME 1", std::nullopt);
        row("a time with more behind it", "panel_TIME1x", std::nullopt);
        row("a time with a line break behind it", "panel_TIME1\n", std::nullopt);
        row("other digits", "panel_TIME\xd9\xa1", std::nullopt);
    }
    void readsTheTimeOfAStartupId()
    {
        QFETCH(const QByteArray, id);
        QFETCH(const TimeOrNothing, time);
        UserActivation activation{.x11Time = 7};
        activation.accept({.startupId = id});
        QCOMPARE(activation, UserActivation{.x11Time = time});
    }

    void takesTheTokenOfTheLatestActionOnly()
    {
        UserActivation activation;
        activation.accept({.activationToken = "token"});
        QCOMPARE(activation, UserActivation{.activationToken = "token"});
        activation.happenedNow();
        QCOMPARE(activation, UserActivation());
        activation.accept({.activationToken = "token"});
        activation.happenedAt(7);
        QCOMPARE(activation, UserActivation{.x11Time = 7});
    }

    void takesWhatTheProgramWasStartedWithOnce()
    {
        qputenv("DESKTOP_STARTUP_ID", "id");
        qputenv("XDG_ACTIVATION_TOKEN", "token");
        QCOMPARE(StartupTokens::takeFromEnvironment(), (StartupTokens{"id", "token"}));
        QCOMPARE(StartupTokens::takeFromEnvironment(), StartupTokens());
    }
};

QTEST_GUILESS_MAIN(UserActivationTest)
#include "UserActivationTest.moc"
