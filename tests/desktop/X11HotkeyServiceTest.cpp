// Registrations against a rival who holds keys, and what they cost.

#include "platform/linux/x11/X11HotkeyService.h"
#include "platform/linux/x11/X11Connection.h"
#include "support/Keyboard.h"
#include "support/RequestCounter.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
constexpr quint32 keyK = 40;
constexpr quint32 keyF13OrPrint = 105;
constexpr quint32 control = 0x1000;
constexpr quint16 xControl = XCB_MOD_MASK_CONTROL;
constexpr HotkeyId someId{0, 1};

/// The service as the program has it, and the connection that it uses.
struct Desk {
    X11Connection connection;
    UserActivation activation;
    X11HotkeyService service{connection, activation};
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

    std::optional<Registration> registerKey(quint32 keyCode, HotkeyId id = someId)
    {
        return service.registerHotkey(keyCode, control, id);
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

    void refusesTheSameKeysTwice()
    {
        Desk desk;
        const auto first = desk.registerKey(keyK);
        QVERIFY(!desk.registerKey(keyK, {0, 2}));
        desk.service.flush();
        QVERIFY(desk.keyboard.isGrabbed(KEY_K, xControl));
    }

    void refusesKeysThatNoKeyboardHas()
    {
        Desk desk;
        QVERIFY(!desk.registerKey(52));
        QVERIFY(!desk.registerKey(4294967295));
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
};

QTEST_GUILESS_MAIN(X11HotkeyServiceTest)
#include "X11HotkeyServiceTest.moc"
