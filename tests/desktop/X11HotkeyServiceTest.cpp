// Registrations against a rival who holds keys, what they cost, and who is asked for them.

#include "platform/linux/hotkeys/GrabProbe.h"
#include "platform/linux/x11/X11Connection.h"
#include "support/Keyboard.h"
#include "support/RequestCounter.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
constexpr VirtualKey keyJ{38};
constexpr VirtualKey keyK{40};
/// X keyboards cannot have it.
constexpr VirtualKey keyFn{63};
constexpr VirtualKey keyF13OrPrint{105};
constexpr quint32 control = 0x1000;
constexpr quint16 xControl = XCB_MOD_MASK_CONTROL;
constexpr HotkeyId someId{0, 1};

/// The service as the program has it, and the connection that it uses.
struct Desk {
    X11Connection connection;
    UserActivation activation;
    X11HotkeyService service{connection, activation};
    GrabProbe probe{service};
    RequestCounter requests{connection.get()};
    Keyboard keyboard;

    Desk() { service.attachToEventLoop(); }

    /// A registration of K that was refused because of a rival, who has gone since.
    std::optional<Registration> registerRefusedK()
    {
        auto rival = std::make_unique<Keyboard>();
        rival->grab(KEY_K, xControl);
        auto registration = registerKey(keyK);
        service.flush();
        rival.reset();
        [this] { QTRY_VERIFY(!keyboard.isGrabbed(KEY_K, xControl)); }();
        return registration;
    }

    /// What is known of K when the probe is over.
    bool isHeldElsewhere(VirtualKey key = keyK)
    {
        probe.isHeldElsewhere(key, control);
        QTest::qWait(0);
        return probe.isHeldElsewhere(key, control);
    }

    std::optional<Registration> registerKey(VirtualKey key, HotkeyId id = someId)
    {
        return service.registerHotkey(quint32(key), control, id, {});
    }
};
} // namespace

class X11HotkeyServiceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void holdsWhatIsRegistered()
    {
        Desk desk;
        const auto registration = desk.registerKey(keyK);
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_K, xControl));
    }

    void letsGoOfWhatIsUnregistered()
    {
        Desk desk;
        auto registration = desk.registerKey(keyK);
        desk.service.flush();
        registration.reset();
        QTRY_VERIFY(!desk.keyboard.isGrabbed(KEY_K, xControl));
    }

    void keepsASecondRegistrationOfTheSameKeysWaiting()
    {
        Desk desk;
        QList<HotkeyId> presses;
        desk.service.installHandler([&presses](HotkeyId id) { presses << id; });
        auto first = desk.registerKey(keyK, {0, 1});
        auto second = desk.registerKey(keyK, {0, 2});
        const auto third = desk.registerKey(keyK, {0, 3});
        desk.service.flush();
        desk.keyboard.type({KEY_LEFTCTRL, KEY_K});
        QTRY_COMPARE(presses, QList<HotkeyId>({{0, 1}}));

        second.reset();
        desk.service.flush();
        first.reset();
        desk.service.flush();
        desk.keyboard.type({KEY_LEFTCTRL, KEY_K});
        QTRY_COMPARE(presses, QList<HotkeyId>({{0, 1}, {0, 3}}));
    }

    void keepsThePlaceOfARegistrationThatIsMadeAnewInOneTurn()
    {
        Desk desk;
        QList<HotkeyId> presses;
        desk.service.installHandler([&presses](HotkeyId id) { presses << id; });
        auto first = desk.registerKey(keyK, {0, 1});
        const auto second = desk.registerKey(keyK, {0, 2});
        desk.service.flush();
        first.reset();
        first = desk.registerKey(keyK, {0, 1});
        desk.service.flush();
        desk.keyboard.type({KEY_LEFTCTRL, KEY_K});
        QTRY_COMPARE(presses, QList<HotkeyId>({{0, 1}}));
    }

    void refusesNothingThatWaits()
    {
        Desk desk;
        const auto first = desk.registerKey(keyK, {0, 1});
        const auto second = desk.registerKey(keyK, {0, 2});
        desk.service.flush();
        QCOMPARE(desk.service.isRefused(keyK, control), false);
    }

    void refusesAllThatWaitForKeysOfARival()
    {
        Desk desk;
        Keyboard rival;
        rival.grab(KEY_K, xControl);
        auto first = desk.registerKey(keyK, {0, 1});
        const auto second = desk.registerKey(keyK, {0, 2});
        desk.service.flush();
        QCOMPARE(desk.service.isRefused(keyK, control), true);
        first.reset();
        desk.service.flush();
        QCOMPARE(desk.service.isRefused(keyK, control), true);
    }

    void refusesKeysThatNoKeyboardHas()
    {
        Desk desk;
        QVERIFY(!desk.registerKey(VirtualKey{52}));
        QVERIFY(!desk.registerKey(VirtualKey{4294967295}));
    }

    void sendsNothingForKeysThatAreGivenUpAndTakenAgain()
    {
        Desk desk;
        auto registration = desk.registerKey(keyK);
        desk.service.flush();
        const auto before = desk.requests.soFar();
        registration.reset();
        registration = desk.registerKey(keyK);
        desk.service.flush();
        QCOMPARE(desk.requests.soFar(), before);
    }

    void takesKeysAgainWhenTheirRivalHasGone()
    {
        Desk desk;
        auto registration = desk.registerRefusedK();
        registration.reset();
        registration = desk.registerKey(keyK);
        desk.service.flush();
        QVERIFY(desk.keyboard.isGrabbed(KEY_K, xControl));
    }

    void keepsKeysWhoseRefusedRegistrationEndsLater()
    {
        Desk desk;
        auto refused = desk.registerRefusedK();
        const auto anew = desk.registerKey(keyK, {0, 2});
        QVERIFY(anew);
        refused.reset();
        desk.service.flush();
        QVERIFY(desk.keyboard.isGrabbed(KEY_K, xControl));
    }

    void isContentWithOneOfTwoKeys()
    {
        Desk desk;
        Keyboard rival;
        rival.grab(KEY_SYSRQ, xControl | XCB_MOD_MASK_LOCK);
        QList<HotkeyId> presses;
        desk.service.installHandler([&presses](HotkeyId id) { presses << id; });
        const auto registration = desk.registerKey(keyF13OrPrint);
        desk.service.flush();
        QVERIFY(desk.keyboard.isGrabbed(KEY_F13, xControl));
        QTRY_VERIFY(!desk.keyboard.isGrabbed(KEY_SYSRQ, xControl));
        desk.keyboard.type({KEY_LEFTCTRL, KEY_F13});
        QTRY_COMPARE(presses, QList<HotkeyId>({someId}));
    }

    void givesBothKeysOfACodeTheSameId()
    {
        Desk desk;
        QList<HotkeyId> presses;
        desk.service.installHandler([&presses](HotkeyId id) { presses << id; });
        const auto registration = desk.registerKey(keyF13OrPrint);
        desk.service.flush();
        desk.keyboard.type({KEY_LEFTCTRL, KEY_F13});
        desk.keyboard.type({KEY_LEFTCTRL, KEY_SYSRQ});
        QTRY_COMPARE(presses, QList<HotkeyId>({someId, someId}));
    }

    void tellsWhatIsRefused()
    {
        Desk desk;
        QSignalSpy changes(&desk.service, &X11HotkeyService::refusalsChanged);
        QCOMPARE(desk.service.isRefused(keyK, control), std::nullopt);
        const auto registration = desk.registerRefusedK();
        QCOMPARE(desk.service.isRefused(keyK, control), true);
        QCOMPARE(changes.count(), 1);
        const auto other = desk.registerKey(keyJ);
        desk.service.flush();
        QCOMPARE(desk.service.isRefused(keyJ, control), false);
        QCOMPARE(changes.count(), 1);
    }

    void staysRefusedWhenOthersAreRefusedToo()
    {
        Desk desk;
        Keyboard rival;
        rival.grab(KEY_K, xControl);
        rival.grab(KEY_J, xControl);
        const auto first = desk.registerKey(keyK);
        desk.service.flush();
        const auto second = desk.registerKey(keyJ);
        desk.service.flush();
        QCOMPARE(desk.service.isRefused(keyK, control), true);
        QCOMPARE(desk.service.isRefused(keyJ, control), true);
    }

    void staysRefusedWhileItIsGivenUpAndAskedForAgain()
    {
        Desk desk;
        Keyboard rival;
        rival.grab(KEY_K, xControl);
        auto registration = desk.registerKey(keyK);
        desk.service.flush();
        registration.reset();
        registration = desk.registerKey(keyK);
        QCOMPARE(desk.service.isRefused(keyK, control), true);
        desk.service.flush();
        QCOMPARE(desk.service.isRefused(keyK, control), true);
    }

    void refusesNothingThatTheKeyboardHasNot()
    {
        Desk desk;
        const auto missing = desk.registerKey(keyFn);
        QVERIFY(missing);
        const auto refused = desk.registerRefusedK();
        QCOMPARE(desk.service.isRefused(keyFn, control), false);
    }

    void isNotRefusedWithOneOfTwoKeys()
    {
        Desk desk;
        Keyboard rival;
        rival.grab(KEY_SYSRQ, xControl);
        const auto registration = desk.registerKey(keyF13OrPrint);
        desk.service.flush();
        QCOMPARE(desk.service.isRefused(keyF13OrPrint, control), false);
    }

    void tellsThatWhatWasRefusedIsGivenUp()
    {
        Desk desk;
        auto registration = desk.registerRefusedK();
        QSignalSpy changes(&desk.service, &X11HotkeyService::refusalsChanged);
        registration.reset();
        desk.service.flush();
        QCOMPARE(desk.service.isRefused(keyK, control), std::nullopt);
        QCOMPARE(changes.count(), 1);
    }

    void takesWhatWasRefusedOnceItsRivalHasGoneAndSomebodyAsksAgain()
    {
        Desk desk;
        QList<HotkeyId> presses;
        desk.service.installHandler([&presses](HotkeyId id) { presses << id; });
        const auto registration = desk.registerRefusedK();
        QVERIFY(desk.probe.isHeldElsewhere(keyK, control));
        QSignalSpy changes(&desk.probe, &GrabProbe::changed);
        desk.probe.invalidate();
        QVERIFY(!desk.probe.isHeldElsewhere(keyK, control));
        QCOMPARE(changes.count(), 1);
        desk.keyboard.type({KEY_LEFTCTRL, KEY_K});
        QTRY_COMPARE(presses, QList<HotkeyId>({someId}));
    }

    void staysRefusedWhileTheRivalIsThere()
    {
        Desk desk;
        Keyboard rival;
        rival.grab(KEY_K, xControl);
        const auto registration = desk.registerKey(keyK);
        desk.service.flush();
        QSignalSpy changes(&desk.probe, &GrabProbe::changed);
        desk.probe.invalidate();
        QVERIFY(desk.probe.isHeldElsewhere(keyK, control));
        QCOMPARE(changes.count(), 0);
        QTRY_VERIFY(!desk.keyboard.isGrabbed(KEY_K, xControl | XCB_MOD_MASK_LOCK));
    }

    void learnsByAProbeWhatIsNotRegistered_data()
    {
        QTest::addColumn<VirtualKey>("key");
        QTest::addColumn<QList<int>>("rivals");
        QTest::addColumn<quint16>("modifiers");
        QTest::addColumn<bool>("isHeld");
        const auto add = [](const char *row, VirtualKey key, const QList<int> &rivals,
                            quint16 modifiers, bool isHeld) {
            QTest::newRow(row) << key << rivals << modifiers << isHeld;
        };
        add("nobody has them", keyK, {}, xControl, false);
        add("another program has them", keyK, {KEY_K}, xControl, true);
        add("it has them only while Caps Lock is on", keyK, {KEY_K}, xControl | XCB_MOD_MASK_LOCK,
            true);
        add("it has them with any modifiers", keyK, {KEY_K}, XCB_MOD_MASK_ANY, true);
        add("it has other modifiers", keyK, {KEY_K}, xControl | XCB_MOD_MASK_SHIFT, false);
        add("it has another key", keyK, {KEY_J}, xControl, false);
        add("it has one of the two keys of a code", keyF13OrPrint, {KEY_F13}, xControl, false);
        add("it has both", keyF13OrPrint, {KEY_F13, KEY_SYSRQ}, xControl, true);
        add("no keyboard has such a key", VirtualKey(128), {KEY_K}, xControl, false);
    }
    void learnsByAProbeWhatIsNotRegistered()
    {
        QFETCH(const VirtualKey, key);
        QFETCH(const QList<int>, rivals);
        QFETCH(const quint16, modifiers);
        Desk desk;
        Keyboard rival;
        for (const int rivalKey : rivals)
            rival.grab(rivalKey, modifiers);
        QTEST(desk.isHeldElsewhere(key), "isHeld");
    }

    void tellsOfAnAnswerThatIsNews()
    {
        Desk desk;
        Keyboard rival;
        rival.grab(KEY_K, xControl);
        QSignalSpy changes(&desk.probe, &GrabProbe::changed);
        desk.isHeldElsewhere(keyJ);
        QCOMPARE(changes.count(), 0);
        desk.isHeldElsewhere(keyK);
        QCOMPARE(changes.count(), 1);
    }

    void keepsNothingOfAProbe()
    {
        Desk desk;
        desk.isHeldElsewhere();
        QVERIFY(!desk.keyboard.isGrabbed(KEY_K, xControl));
    }

    void probesACombinationOnceUntilItIsInvalidated()
    {
        Desk desk;
        desk.isHeldElsewhere();
        const auto before = desk.requests.soFar();
        desk.isHeldElsewhere();
        QCOMPARE(desk.requests.soFar(), before);
        desk.probe.invalidate();
        desk.isHeldElsewhere();
        QVERIFY(desk.requests.soFar() > before);
    }

    void hasWhoeverShowsAnswersAskAgain()
    {
        Desk desk;
        desk.isHeldElsewhere();
        QSignalSpy changes(&desk.probe, &GrabProbe::changed);
        desk.probe.invalidate();
        QCOMPARE(changes.count(), 1);
    }

    void losesNoPressThatComesWithTheAnswerOfAProbe()
    {
        Desk desk;
        QList<HotkeyId> presses;
        desk.service.installHandler([&presses](HotkeyId id) { presses << id; });
        const auto registration = desk.registerKey(keyK);
        desk.service.flush();
        desk.keyboard.type({KEY_LEFTCTRL, KEY_K});
        desk.service.probe({{keyJ, control}});
        QTRY_COMPARE(presses, QList<HotkeyId>({someId}));
    }

    void keepsItsAnswerUntilTheNextProbeIsOver()
    {
        Desk desk;
        auto rival = std::make_unique<Keyboard>();
        rival->grab(KEY_K, xControl);
        QVERIFY(desk.isHeldElsewhere());
        rival.reset();
        QTRY_VERIFY(!desk.keyboard.isGrabbed(KEY_K, xControl));
        desk.probe.invalidate();
        QVERIFY(desk.probe.isHeldElsewhere(keyK, control));
        QTRY_VERIFY(!desk.probe.isHeldElsewhere(keyK, control));
    }

    void keepsTheAnswerOfARegistrationThatHasEnded()
    {
        Desk desk;
        Keyboard rival;
        rival.grab(KEY_K, xControl);
        auto registration = desk.registerKey(keyK);
        desk.service.flush();
        QVERIFY(desk.probe.isHeldElsewhere(keyK, control));
        registration.reset();
        QVERIFY(desk.probe.isHeldElsewhere(keyK, control));
        QVERIFY(desk.isHeldElsewhere());
    }

    void probesAgainWhatHasBeenRegisteredSinceTheLastProbe()
    {
        Desk desk;
        QVERIFY(!desk.isHeldElsewhere());
        auto registration = desk.registerKey(keyK);
        desk.service.flush();
        desk.probe.isHeldElsewhere(keyK, control);
        registration.reset();
        desk.service.flush();
        Keyboard rival;
        rival.grab(KEY_K, xControl);
        QVERIFY(desk.isHeldElsewhere());
    }

    void doesNotProbeWhatWeHold()
    {
        Desk desk;
        const auto registration = desk.registerKey(keyK);
        desk.service.flush();
        const auto before = desk.requests.soFar();
        QVERIFY(!desk.isHeldElsewhere());
        QCOMPARE(desk.requests.soFar(), before);
    }

    void keepsWhatWasRegisteredAfterTheQuestion()
    {
        Desk desk;
        desk.probe.isHeldElsewhere(keyK, control);
        const auto registration = desk.registerKey(keyK);
        desk.service.flush();
        QVERIFY(!desk.isHeldElsewhere());
        QVERIFY(desk.service.probe({{keyK, control}}).empty());
        QVERIFY(desk.keyboard.isGrabbed(KEY_K, xControl));
    }
};

QTEST_GUILESS_MAIN(X11HotkeyServiceTest)
#include "X11HotkeyServiceTest.moc"
