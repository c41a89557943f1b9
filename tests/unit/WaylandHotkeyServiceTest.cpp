// Who gets the presses of a route, and what the route is asked to hold.

#include "platform/linux/hotkeys/WaylandHotkeyService.h"
#include "fakes/FakeHotkeyRoute.h"
#include "platform/KeyModifier.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
constexpr quint32 keyK = 40;
constexpr KeyCombination controlK{VirtualKey(keyK), controlKey};
constexpr KeyCombination controlJ{VirtualKey(38), controlKey};
constexpr HotkeyId first{0, 1};
constexpr HotkeyId second{0, 2};

struct Desk {
    FakeHotkeyRoute *route = new FakeHotkeyRoute;
    UserActivation activation;
    WaylandHotkeyService service{std::unique_ptr<HotkeyRoute>(route), activation};
    QList<HotkeyId> fired;

    Desk()
    {
        service.installHandler([this](HotkeyId id) { fired << id; });
    }
    std::optional<Registration> claim(HotkeyId id)
    {
        return service.registerHotkey(keyK, controlKey, id, {u"name"_s, u"Title"_s});
    }
    void press(const KeyCombination &combination) { Q_EMIT route->pressed(combination, {}); }
};

QList<KeyCombination> combinationsOf(const WantedHotkeys &wanted)
{
    QList<KeyCombination> found;
    for (const auto &[combination, purpose] : wanted)
        found << combination;
    return found;
}
} // namespace

class WaylandHotkeyServiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesTheRouteAllCombinationsOfATurnAtOnce()
    {
        Desk desk;
        const auto k = desk.claim(first);
        const auto j = desk.service.registerHotkey(quint32(controlJ.key), controlKey, second, {});
        QVERIFY(desk.route->holds.isEmpty());
        QCoreApplication::processEvents();
        QCOMPARE(desk.route->holds.size(), 1);
        QCOMPARE(combinationsOf(desk.route->holds.at(0)),
                 QList<KeyCombination>({controlJ, controlK}));
    }

    void givesThemToTheRouteWhenTold()
    {
        Desk desk;
        const auto k = desk.claim(first);
        desk.service.flush();
        QCOMPARE(desk.route->holds.size(), 1);
        QCoreApplication::processEvents();
        QCOMPARE(desk.route->holds.size(), 1);
    }

    void tellsTheRouteWhatTheyAreFor()
    {
        Desk desk;
        const auto k = desk.claim(first);
        desk.service.flush();
        QCOMPARE(desk.route->holds.at(0).at(controlK), HotkeyPurpose({u"name"_s, u"Title"_s}));
    }

    void tellsWhichKeysTheDesktopUsesInstead()
    {
        Desk desk;
        const QSignalSpy changes(&desk.service, &HotkeyService::changed);
        desk.route->used = controlJ;
        Q_EMIT desk.route->outcomesChanged();
        QCOMPARE(changes.size(), 1);
        QCOMPARE(desk.service.otherKeys(keyK, controlKey),
                 std::optional(HotkeyKeys{38, controlKey}));
    }

    void endsARegistration()
    {
        Desk desk;
        desk.claim(first).reset();
        desk.service.flush();
        QVERIFY(desk.route->holds.at(0).empty());
    }

    void refusesKeysThatDoNotExist()
    {
        Desk desk;
        QVERIFY(!desk.service.registerHotkey(52, controlKey, first, {}));
        QVERIFY(!desk.service.registerHotkey(70000, controlKey, first, {}));
    }

    void reportsPresses()
    {
        Desk desk;
        const auto k = desk.claim(first);
        desk.service.flush();
        desk.press(controlK);
        desk.press(controlJ);
        QCOMPARE(desk.fired, QList<HotkeyId>({first}));
    }

    void letsTheSecondRegistrationWaitForTheFirst()
    {
        Desk desk;
        auto one = desk.claim(first);
        const auto two = desk.claim(second);
        desk.service.flush();
        desk.press(controlK);
        one.reset();
        desk.service.flush();
        desk.press(controlK);
        QCOMPARE(desk.fired, QList<HotkeyId>({first, second}));
    }

    void keepsThePlaceOfARegistrationThatIsMadeAgain()
    {
        Desk desk;
        auto one = desk.claim(first);
        const auto two = desk.claim(second);
        desk.service.flush();
        one.reset();
        one = desk.claim(first);
        desk.service.flush();
        desk.press(controlK);
        QCOMPARE(desk.fired, QList<HotkeyId>({first}));
    }

    void notesTheUsersAction()
    {
        Desk desk;
        const auto k = desk.claim(first);
        desk.service.flush();
        Q_EMIT desk.route->pressed(controlK, {.startupId = {}, .activationToken = "token"});
        QCOMPARE(desk.activation.activationToken, QByteArray("token"));
    }

    void givesPressesToARecorderInstead()
    {
        Desk desk;
        const auto k = desk.claim(first);
        desk.service.flush();
        QList<KeyCombination> recorded;
        desk.service.divertPresses([&](const KeyCombination &combination) {
            desk.service.divertPresses(nullptr);
            recorded << combination;
        });
        desk.press(controlK);
        QCOMPARE(recorded, QList<KeyCombination>({controlK}));
        QCOMPARE(desk.fired, QList<HotkeyId>());
        desk.press(controlK);
        QCOMPARE(desk.fired, QList<HotkeyId>({first}));
    }
};

QTEST_GUILESS_MAIN(WaylandHotkeyServiceTest)
#include "WaylandHotkeyServiceTest.moc"
