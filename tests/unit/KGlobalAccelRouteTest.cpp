// What Plasma is asked for, and what is made of its answers and presses.

#include "platform/linux/hotkeys/KGlobalAccelRoute.h"
#include "fakes/FakeKGlobalAccel.h"
#include "platform/KeyModifier.h"
#include "platform/linux/layout/Xkbcommon.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
constexpr KeyCombination controlY{VirtualKey(16), controlKey};
constexpr KeyCombination controlZ{VirtualKey(6), controlKey};
constexpr KeyCombination controlK{VirtualKey(40), controlKey};
/// A dead key in the German layout.
constexpr KeyCombination controlBacktick{VirtualKey(50), controlKey};
constexpr KeyCombination bareF9{VirtualKey(101), 0};

const QString nameY = u"_k_session:16-4096"_s;
const QString nameZ = u"_k_session:6-4096"_s;
const QString nameK = u"_k_session:40-4096"_s;

constexpr int control = int(Qt::ControlModifier);
constexpr int codeY = control | Qt::Key_Y;
constexpr int codeZ = control | Qt::Key_Z;
constexpr int codeK = control | Qt::Key_K;
constexpr int codeJ = control | Qt::Key_J;

class FakeLayout : public KeyboardLayout
{
public:
    void start() override { }
    using KeyboardLayout::setKeyRepeat;

    void use(const char *name)
    {
        const XkbContext context(xkb_context_new(XKB_CONTEXT_NO_ENVIRONMENT_NAMES));
        const xkb_rule_names names{"evdev", "pc105", name, "", ""};
        setLayout(XkbKeymap(xkb_keymap_new_from_names(context.get(), &names,
                                                      XKB_KEYMAP_COMPILE_NO_FLAGS)),
                  0, WithSymbols::yes);
    }
};

struct Desk {
    FakeLayout layout;
    FakeKGlobalAccel *service = new FakeKGlobalAccel;
    QByteArray token;
    KGlobalAccelRoute route{std::unique_ptr<KGlobalAccel>(service), layout, PlasmaVersion::five,
                            [this] { return token; }};
    QSignalSpy presses{&route, &HotkeyRoute::pressed};
    QSignalSpy changes{&route, &TakenKeys::changed};
    QSignalSpy outcomes{&route, &HotkeyRoute::outcomesChanged};

    Desk() { layout.use("us"); }

    /// Starts with what is wanted, and awaits that the service has it.
    void startWith(const WantedHotkeys &wanted)
    {
        route.hold(wanted);
        route.start();
        service->serve();
        service->takeCalls();
    }

    bool isTaken(const KeyCombination &combination)
    {
        return route.isHeldElsewhere(combination.key, combination.modifiers);
    }
};

using Actions = QMap<QString, QList<int>>;
} // namespace

class KGlobalAccelRouteTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void registersWhatIsWanted()
    {
        Desk desk;
        desk.startWith({{controlK, {{}, u"Editor"_s}}, {controlY, {{}, u"Mail"_s}}});
        QCOMPARE(desk.service->actions, Actions({{nameK, {codeK}}, {nameY, {codeY}}}));
    }

    void asksForNothingTwice()
    {
        Desk desk;
        desk.startWith({{controlK, {{}, u"Editor"_s}}});
        desk.route.hold({{controlK, {{}, u"Editor"_s}}});
        desk.route.invalidate();
        QCOMPARE(desk.service->takeCalls(), QStringList());
    }

    void asksForTheDifferenceOnly()
    {
        Desk desk;
        desk.startWith({{controlK, {{}, u"Editor"_s}}, {controlY, {{}, u"Mail"_s}}});
        desk.route.hold({{controlK, {{}, u"Editor"_s}}, {controlZ, {{}, u"Mail"_s}}});
        QCOMPARE(
            desk.service->takeCalls(),
            QStringList({u"unregister "_s + nameY, u"set "_s + nameZ + u" 'Mail' to 400005a"_s}));
        desk.service->serve();
        QCOMPARE(desk.service->actions, Actions({{nameK, {codeK}}, {nameZ, {codeZ}}}));
    }

    void givesAnotherTitleWithoutAnotherRegistration()
    {
        Desk desk;
        desk.startWith({{controlK, {{}, u"Editor"_s}}});
        desk.route.hold({{controlK, {{}, u"Writer"_s}}});
        QCOMPARE(desk.service->takeCalls(), QStringList(u"call "_s + nameK + u" 'Writer'"_s));
    }

    void hasOneCallUnderWayForEachCombination()
    {
        Desk desk;
        desk.startWith({});
        desk.route.hold({{controlK, {{}, u"Editor"_s}}});
        desk.route.hold({});
        desk.route.hold({{controlK, {{}, u"Editor"_s}}});
        desk.route.hold({});
        QCOMPARE(desk.service->takeCalls().size(), 1);
        desk.service->serve();
        QCOMPARE(desk.service->takeCalls(), QStringList(u"unregister "_s + nameK));
        QCOMPARE(desk.service->actions, Actions());
    }

    void waitsForTheService()
    {
        Desk desk;
        desk.service->isThere = false;
        desk.startWith({{controlK, {{}, u"Editor"_s}}});
        QCOMPARE(desk.service->actions, Actions());
        desk.service->isThere = true;
        Q_EMIT desk.service->appeared();
        desk.service->serve();
        QCOMPARE(desk.service->actions, Actions({{nameK, {codeK}}}));
    }

    void waitsForTheLayout()
    {
        FakeKGlobalAccel *const service = new FakeKGlobalAccel;
        FakeLayout layout;
        KGlobalAccelRoute route(std::unique_ptr<KGlobalAccel>(service), layout, PlasmaVersion::five,
                                [] { return QByteArray(); });
        route.hold({{controlK, {{}, u"Editor"_s}}});
        route.start();
        service->serve();
        QCOMPARE(service->takeCalls(), QStringList(u"read"_s));
        QVERIFY(!route.isHeldElsewhere(controlK.key, controlK.modifiers));
        layout.use("us");
        service->serve();
        QCOMPARE(service->actions, Actions({{nameK, {codeK}}}));
    }

    void startsOverWithANewService()
    {
        Desk desk;
        desk.startWith({{controlK, {{}, u"Editor"_s}}});
        desk.service->actions.clear();
        Q_EMIT desk.service->gone();
        Q_EMIT desk.service->appeared();
        desk.service->serve();
        QCOMPARE(desk.service->actions, Actions({{nameK, {codeK}}}));
    }

    void startsOverWhenTheServiceGoesBeforeItsAnswer()
    {
        Desk desk;
        desk.startWith({});
        desk.route.hold({{controlK, {{}, u"Editor"_s}}});
        desk.service->dropCalls();
        Q_EMIT desk.service->gone();
        desk.route.hold({{controlK, {{}, u"Editor"_s}}, {controlY, {{}, u"Mail"_s}}});
        Q_EMIT desk.service->appeared();
        desk.service->serve();
        QCOMPARE(desk.service->actions, Actions({{nameK, {codeK}}, {nameY, {codeY}}}));
    }

    void ignoresLateAnswersOfAFormerService()
    {
        Desk desk;
        desk.startWith({});
        desk.service->foreignCodes = {codeK};
        desk.route.hold({{controlK, {{}, u"Editor"_s}}});
        Q_EMIT desk.service->gone();
        desk.service->serve();
        QVERIFY(!desk.isTaken(controlK));
        desk.service->foreignCodes.clear();
        Q_EMIT desk.service->appeared();
        desk.service->serve();
        QCOMPARE(desk.service->actions, Actions({{nameK, {codeK}}}));
    }

    void clearsWhatACrashHasLeft()
    {
        Desk desk;
        // The same code on another key: another layout was in use.
        desk.service->actions = {{nameY, {codeK}}, {u"_k_session:1-2-3"_s, {codeJ}}};
        desk.startWith({{controlK, {{}, u"Editor"_s}}});
        QCOMPARE(desk.service->actions, Actions({{nameK, {codeK}}}));
    }

    void handsOnTheTokenOfAPress()
    {
        Desk desk;
        desk.startWith({{controlK, {{}, u"Editor"_s}}});
        desk.token = "token";
        Q_EMIT desk.service->pressed(nameK);
        QCOMPARE(desk.presses.size(), 1);
        QCOMPARE(desk.presses.constFirst().at(1).value<StartupTokens>(),
                 (StartupTokens{.startupId = {}, .activationToken = "token"}));
    }

    void triesAgainWhatFailed()
    {
        Desk desk;
        desk.service->fails = true;
        desk.startWith({{controlK, {{}, u"Editor"_s}}});
        desk.service->fails = false;
        const auto isServed = [&desk] {
            desk.service->serve();
            return desk.service->actions == Actions({{nameK, {codeK}}});
        };
        QTRY_VERIFY(isServed());
    }

    void leavesNothingOfARefusedAction()
    {
        Desk desk;
        desk.service->foreignCodes = {codeK};
        desk.startWith({{controlK, {{}, u"Editor"_s}}, {controlY, {{}, u"Mail"_s}}});
        QCOMPARE(desk.service->actions, Actions({{nameY, {codeY}}}));
        QVERIFY(desk.isTaken(controlK));
        QVERIFY(!desk.isTaken(controlY));
        QTRY_COMPARE(desk.changes.size(), 1);
    }

    void triesRefusedKeysAgainWhenAsked()
    {
        Desk desk;
        desk.service->foreignCodes = {codeK};
        desk.startWith({{controlK, {{}, u"Editor"_s}}});
        desk.route.invalidate();
        desk.service->serve();
        QVERIFY(desk.isTaken(controlK));
        desk.service->foreignCodes.clear();
        desk.route.invalidate();
        // Until the answer, the former one holds.
        QVERIFY(desk.isTaken(controlK));
        desk.service->serve();
        QVERIFY(!desk.isTaken(controlK));
        QCOMPARE(desk.service->actions, Actions({{nameK, {codeK}}}));
    }

    void registersOtherCodesInAnotherLayout()
    {
        Desk desk;
        desk.startWith({{controlK, {{}, u"Editor"_s}}, {controlY, {{}, u"Mail"_s}}});
        desk.layout.use("de");
        desk.service->serve();
        QCOMPARE(desk.service->actions, Actions({{nameK, {codeK}}, {nameY, {codeZ}}}));
        QVERIFY(!desk.service->takeCalls().join(u' ').contains(nameK));
    }

    void swapsCodesInAnotherLayout()
    {
        Desk desk;
        desk.startWith({{controlZ, {{}, u"Editor"_s}}, {controlY, {{}, u"Mail"_s}}});
        desk.layout.use("de");
        desk.service->serve();
        QCOMPARE(desk.service->actions, Actions({{nameZ, {codeY}}, {nameY, {codeZ}}}));
    }

    void followsALayoutThatChangesTwiceBeforeTheAnswers()
    {
        Desk desk;
        desk.startWith({{controlZ, {{}, u"Editor"_s}}, {controlY, {{}, u"Mail"_s}}});
        desk.layout.use("de");
        desk.service->serveOne();
        desk.layout.use("us");
        desk.service->serve();
        QCOMPARE(desk.service->actions, Actions({{nameZ, {codeZ}}, {nameY, {codeY}}}));
    }

    void refusesKeysThatCannotWork()
    {
        Desk desk;
        desk.layout.use("de");
        QVERIFY(desk.isTaken(controlBacktick));
        QVERIFY(desk.isTaken(bareF9));
        QVERIFY(!desk.isTaken(controlK));
        desk.startWith({{controlBacktick, {{}, u"Editor"_s}}, {bareF9, {{}, u"Mail"_s}}});
        QCOMPARE(desk.service->actions, Actions());
        QVERIFY(desk.isTaken(controlBacktick));
        QVERIFY(desk.isTaken(bareF9));
        desk.layout.use("us");
        desk.service->serve();
        QVERIFY(!desk.isTaken(controlBacktick));
    }

    void reportsAPressOnce()
    {
        Desk desk;
        desk.startWith({{controlK, {{}, u"Editor"_s}}});
        for (int i = 0; i < 3; ++i)
            Q_EMIT desk.service->pressed(nameK);
        QCOMPARE(desk.presses.size(), 1);
        QCOMPARE(desk.presses.at(0).at(0).value<KeyCombination>(), controlK);
        Q_EMIT desk.service->released(nameK);
        Q_EMIT desk.service->pressed(nameK);
        QCOMPARE(desk.presses.size(), 2);
    }

    void reportsAPressAfterALostRelease()
    {
        Desk desk;
        desk.startWith({{controlK, {{}, u"Editor"_s}}});
        Q_EMIT desk.service->pressed(nameK);
        QTest::qWait(1010);
        Q_EMIT desk.service->pressed(nameK);
        QCOMPARE(desk.presses.size(), 2);
    }

    void knowsRepeatsThatComeLate()
    {
        Desk desk;
        desk.layout.setKeyRepeat({.delay = std::chrono::milliseconds(1200)});
        desk.startWith({{controlK, {{}, u"Editor"_s}}});
        Q_EMIT desk.service->pressed(nameK);
        QTest::qWait(1210);
        Q_EMIT desk.service->pressed(nameK);
        QCOMPARE(desk.presses.size(), 1);
    }

    void ignoresPressesOfWhatIsNotWanted()
    {
        Desk desk;
        desk.startWith({{controlK, {{}, u"Editor"_s}}});
        Q_EMIT desk.service->pressed(nameY);
        Q_EMIT desk.service->pressed(u"_k_session:"_s);
        Q_EMIT desk.service->pressed(u"else"_s);
        desk.route.hold({});
        Q_EMIT desk.service->pressed(nameK);
        QCOMPARE(desk.presses.size(), 0);
    }

    void tellsTheUsersOtherKeys()
    {
        Desk desk;
        desk.startWith({{controlK, {{}, u"Editor"_s}}});
        QVERIFY(!desk.route.otherKeys(controlK));
        Q_EMIT desk.service->codesChanged(nameK, {codeJ});
        constexpr KeyCombination controlJ{VirtualKey(38), controlKey};
        QCOMPARE(desk.route.otherKeys(controlK), std::optional(controlJ));
        QCOMPARE(desk.outcomes.size(), 1);
        Q_EMIT desk.service->pressed(nameK);
        QCOMPARE(desk.presses.size(), 1);
        // The wanted keys are not forced upon the user.
        desk.route.invalidate();
        QCOMPARE(desk.service->takeCalls(), QStringList());
        Q_EMIT desk.service->codesChanged(nameK, {codeK});
        QVERIFY(!desk.route.otherKeys(controlK));
    }

    void leavesTheUsersOtherKeysInAnotherLayout()
    {
        Desk desk;
        desk.startWith({{controlY, {{}, u"Editor"_s}}});
        Q_EMIT desk.service->codesChanged(nameY, {codeJ});
        desk.layout.use("de");
        QCOMPARE(desk.service->takeCalls(), QStringList());
        desk.route.hold({});
        desk.service->serve();
        desk.route.hold({{controlY, {{}, u"Editor"_s}}});
        desk.service->serve();
        QCOMPARE(desk.service->actions, Actions({{nameY, {codeZ}}}));
    }

    void forgetsTheUsersOtherKeysWithTheService()
    {
        Desk desk;
        desk.startWith({{controlK, {{}, u"Editor"_s}}});
        Q_EMIT desk.service->codesChanged(nameK, {codeJ});
        Q_EMIT desk.service->gone();
        QVERIFY(!desk.route.otherKeys(controlK));
        QCOMPARE(desk.outcomes.size(), 2);
    }

    void givesEverythingUpAtTheEnd()
    {
        Desk desk;
        desk.startWith({{controlK, {{}, u"Editor"_s}}});
        desk.route.hold({{controlK, {{}, u"Editor"_s}}, {controlY, {{}, u"Mail"_s}}});
        desk.route.letGo();
        QCOMPARE(desk.service->actions, Actions());
    }
};

QTEST_GUILESS_MAIN(KGlobalAccelRouteTest)
#include "KGlobalAccelRouteTest.moc"
