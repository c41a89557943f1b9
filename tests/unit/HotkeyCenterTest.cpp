#include "hotkeys/HotkeyCenter.h"
#include "fakes/FakePlatform.h"

#include <QTest>
#include <csignal>
#include <cstdlib>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace KeyboardShortcuts;

namespace
{
const Name mail{u"corvane-mail"_s};
const Name music{u"corvane-music"_s};
constexpr HotkeyId first{HotKeySignature, 1};
constexpr HotkeyId second{HotKeySignature, 2};

/// A center on fakes, with handlers that count their calls.
struct Desk {
    FakePlatform platform;
    HotkeyCenter center{platform.hotkeys, platform.userDefaults};
    QHash<QString, int> calls;

    void handle(const Name &name)
    {
        center.handlers.insert(name.rawValue, [this, name] { ++calls[name.rawValue]; });
    }
    void store(const Name &name, const QByteArray &keyCode, const QByteArray &modifiers = "256")
    {
        platform.userDefaults.setData(defaultsKey(name),
                                      R"({"carbonKeyCode":)" + keyCode + R"(,"carbonModifiers":)"
                                          + modifiers + "}");
    }
    void press(HotkeyId id)
    {
        platform.hotkeys.press(id);
        QCoreApplication::processEvents();
    }
    const QList<FakeHotkeyService::Live> &live() const { return platform.hotkeys.live; }
};

/// Runs the action in a process of its own and tells whether that was aborted.
template <typename Action>
bool aborts(Action action)
{
    const pid_t child = fork();
    if (child == 0) {
        const rlimit noCore{0, 0};
        setrlimit(RLIMIT_CORE, &noCore);
        std::signal(SIGABRT, SIG_DFL);
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) {
            std::fprintf(stderr, "%s\n", qPrintable(text));
        });
        action();
        _exit(EXIT_SUCCESS);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT;
}
} // namespace

class HotkeyCenterTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void registersANameWithHandlerAndCombination()
    {
        Desk desk;
        desk.handle(mail);
        desk.store(mail, "40", "4352");
        desk.center.sync(mail);
        QCOMPARE(desk.live(), (QList<FakeHotkeyService::Live>{{40, 4352, first}}));
    }

    void marksRegistrationsWithItsFourBytes()
    {
        QCOMPARE(QByteArray::fromHex(QByteArray::number(HotKeySignature, 16)), QByteArray("CRVN"));
    }

    void registersNothingWithoutAHandler()
    {
        Desk desk;
        desk.store(mail, "40");
        desk.center.sync(mail);
        QCOMPARE(desk.platform.hotkeys.attempts, 0);
    }

    void unregistersANameWhoseCombinationHasGone()
    {
        Desk desk;
        desk.handle(mail);
        desk.store(mail, "40");
        desk.center.sync(mail);
        desk.platform.userDefaults.remove(defaultsKey(mail));
        desk.center.sync(mail);
        QVERIFY(desk.live().isEmpty());
        QCOMPARE(desk.platform.hotkeys.attempts, 1);
    }

    void unregistersADisabledName()
    {
        Desk desk;
        desk.handle(mail);
        desk.store(mail, "40");
        desk.center.sync(mail);
        desk.center.disabled.insert(mail.rawValue);
        desk.center.sync(mail);
        QVERIFY(desk.live().isEmpty());
    }

    void registersANameAgainThatIsNoLongerDisabled()
    {
        Desk desk;
        desk.handle(mail);
        desk.store(mail, "40");
        desk.center.disabled.insert(mail.rawValue);
        desk.center.sync(mail);
        desk.center.disabled.remove(mail.rawValue);
        desk.center.sync(mail);
        QCOMPARE(desk.live(), (QList<FakeHotkeyService::Live>{{40, 256, first}}));
    }

    void keepsTheIdOfANameWhoseCombinationChanges()
    {
        Desk desk;
        desk.handle(mail);
        desk.store(mail, "40");
        desk.center.sync(mail);
        desk.store(mail, "41");
        desk.center.sync(mail);
        QCOMPARE(desk.live(), (QList<FakeHotkeyService::Live>{{41, 256, first}}));
    }

    void givesIdsInTheOrderOfFirstRegistration()
    {
        Desk desk;
        desk.handle(mail);
        desk.handle(music);
        desk.store(mail, "40");
        desk.store(music, "41");
        desk.center.sync(music);
        desk.center.sync(mail);
        QCOMPARE(desk.live(),
                 (QList<FakeHotkeyService::Live>{{41, 256, first}, {40, 256, second}}));
    }

    void registersBothOfTwoEqualCombinations()
    {
        Desk desk;
        desk.handle(mail);
        desk.handle(music);
        desk.store(mail, "40");
        desk.store(music, "40");
        desk.center.sync(mail);
        desk.center.sync(music);
        QCOMPARE(desk.live(),
                 (QList<FakeHotkeyService::Live>{{40, 256, first}, {40, 256, second}}));
        desk.press(first);
        QCOMPARE(desk.calls, (QHash<QString, int>{{mail.rawValue, 1}}));
    }

    void triesARefusedNameAgainAtItsNextSyncUnderTheSameId()
    {
        Desk desk;
        desk.handle(mail);
        desk.handle(music);
        desk.store(mail, "40");
        desk.store(music, "41");
        desk.platform.hotkeys.refusedKeyCodes = {40};
        desk.center.sync(mail);
        desk.center.sync(music);
        desk.platform.hotkeys.refusedKeyCodes.clear();
        desk.center.sync(mail);
        QCOMPARE(desk.live(),
                 (QList<FakeHotkeyService::Live>{{41, 256, second}, {40, 256, first}}));
    }

    void installsItsHandlerOnceAndOnlyForAFirstRegistration()
    {
        Desk desk;
        desk.handle(mail);
        desk.center.sync(mail);
        QCOMPARE(desk.platform.hotkeys.installations, 0);
        desk.store(mail, "40");
        desk.center.sync(mail);
        desk.center.sync(mail);
        QCOMPARE(desk.platform.hotkeys.installations, 1);
    }

    void runsTheHandlerOnALaterTurn()
    {
        Desk desk;
        desk.handle(mail);
        desk.store(mail, "40");
        desk.center.sync(mail);
        desk.platform.hotkeys.press(first);
        QCOMPARE(desk.calls.value(mail.rawValue), 0);
        QCoreApplication::processEvents();
        QCOMPARE(desk.calls.value(mail.rawValue), 1);
    }

    void ignoresTheSignatureOfAPress()
    {
        Desk desk;
        desk.handle(mail);
        desk.store(mail, "40");
        desk.center.sync(mail);
        desk.press({0, 1});
        QCOMPARE(desk.calls.value(mail.rawValue), 1);
    }

    void ignoresAPressWithAnUnknownId()
    {
        Desk desk;
        desk.handle(mail);
        desk.store(mail, "40");
        desk.center.sync(mail);
        desk.press({HotKeySignature, 7});
        QVERIFY(desk.calls.isEmpty());
    }

    void preparesAtThePressItself()
    {
        Desk desk;
        desk.handle(mail);
        desk.store(mail, "40");
        int preparations = 0;
        desk.center.preparations.insert(mail.rawValue, [&preparations] { ++preparations; });
        desk.center.sync(mail);
        desk.platform.hotkeys.press(first);
        QCOMPARE(preparations, 1);
        QVERIFY(desk.calls.isEmpty());
        QTRY_COMPARE(desk.calls.value(mail.rawValue), 1);
        QCOMPARE(preparations, 1);
        desk.center.fire(mail);
        QCOMPARE(preparations, 2);
        desk.center.disabled.insert(mail.rawValue);
        desk.platform.hotkeys.press(first);
        desk.center.fire(mail);
        QCOMPARE(preparations, 2);
    }

    void ignoresAPressOfANameThatLostItsHandlerSince()
    {
        Desk desk;
        desk.handle(mail);
        desk.store(mail, "40");
        desk.center.sync(mail);
        desk.platform.hotkeys.press(first);
        desk.center.handlers.remove(mail.rawValue);
        QCoreApplication::processEvents();
        QVERIFY(desk.calls.isEmpty());
    }

    void ignoresAPressOfANameThatWasDisabledSince()
    {
        Desk desk;
        desk.handle(mail);
        desk.store(mail, "40");
        desk.center.sync(mail);
        desk.platform.hotkeys.press(first);
        desk.center.disabled.insert(mail.rawValue);
        QCoreApplication::processEvents();
        QVERIFY(desk.calls.isEmpty());
    }

    void keepsTheIdOfADeletedNameButNeverFiresIt()
    {
        Desk desk;
        desk.handle(mail);
        desk.store(mail, "40");
        desk.center.sync(mail);
        desk.center.handlers.remove(mail.rawValue);
        desk.platform.userDefaults.remove(defaultsKey(mail));
        desk.center.sync(mail);
        desk.handle(music);
        desk.store(music, "40");
        desk.center.sync(music);
        desk.press(first);
        QVERIFY(desk.calls.isEmpty());
        QCOMPARE(desk.live(), (QList<FakeHotkeyService::Live>{{40, 256, second}}));
    }

    void letsAHandlerRemoveItself()
    {
        Desk desk;
        int calls = 0;
        desk.center.handlers.insert(mail.rawValue, [&] {
            desk.center.handlers.remove(mail.rawValue);
            ++calls;
        });
        desk.store(mail, "40");
        desk.center.sync(mail);
        desk.press(first);
        QCOMPARE(calls, 1);
    }

    void firesANameThatHasNoKeys()
    {
        Desk desk;
        desk.handle(mail);
        QVERIFY(desk.center.fire(mail));
        QCOMPARE(desk.calls, (QHash<QString, int>{{mail.rawValue, 1}}));
    }

    void knowsADisabledNameButDoesNotFireIt()
    {
        Desk desk;
        desk.handle(mail);
        desk.center.disabled.insert(mail.rawValue);
        QVERIFY(desk.center.fire(mail));
        QVERIFY(desk.calls.isEmpty());
    }

    void doesNotKnowANameWithoutAHandler()
    {
        Desk desk;
        desk.handle(mail);
        QVERIFY(!desk.center.fire(music));
        QVERIFY(desk.calls.isEmpty());
    }

    void sharesTheOneThatIsNamed()
    {
        Desk desk;
        HotkeyCenter::setShared(desk.center);
        const Desk other;
        QCOMPARE(&HotkeyCenter::shared(), &desk.center);
    }

    void forgetsPressesThatItDoesNotOutlive()
    {
        FakePlatform platform;
        int calls = 0;
        {
            HotkeyCenter center(platform.hotkeys, platform.userDefaults);
            center.handlers.insert(mail.rawValue, [&calls] { ++calls; });
            setShortcut(Shortcut{40, 256}, mail, platform.userDefaults, center);
            platform.hotkeys.press(first);
        }
        QCoreApplication::processEvents();
        QCOMPARE(calls, 0);
    }

    void diesOfStoredValuesThatAreNoUnsigned32BitNumbers_data()
    {
        QTest::addColumn<QByteArray>("keyCode");
        QTest::addColumn<QByteArray>("modifiers");
        QTest::addColumn<bool>("isFatal");
        QTest::newRow("the largest key code")
            << QByteArray("4294967295") << QByteArray("256") << false;
        QTest::newRow("a key code of 2^32")
            << QByteArray("4294967296") << QByteArray("256") << true;
        QTest::newRow("a negative key code") << QByteArray("-1") << QByteArray("256") << true;
        QTest::newRow("the largest mask") << QByteArray("40") << QByteArray("4294967295") << false;
        QTest::newRow("a mask of 2^32") << QByteArray("40") << QByteArray("4294967296") << true;
        QTest::newRow("a negative mask") << QByteArray("40") << QByteArray("-256") << true;
    }
    void diesOfStoredValuesThatAreNoUnsigned32BitNumbers()
    {
        QFETCH(const QByteArray, keyCode);
        QFETCH(const QByteArray, modifiers);
        QFETCH(const bool, isFatal);
        const bool aborted = aborts([&] {
            Desk desk;
            desk.handle(mail);
            desk.store(mail, keyCode, modifiers);
            desk.center.sync(mail);
        });
        QCOMPARE(aborted, isFatal);
    }
};

QTEST_GUILESS_MAIN(HotkeyCenterTest)
#include "HotkeyCenterTest.moc"
