// The program runs once in a session: what a second start does, and how others reach the first.

#include "platform/linux/activation/ServerTime.h"
#include "platform/linux/activation/UserActivation.h"
#include "platform/linux/instance/SingleInstance.h"
#include "support/Keyboard.h"
#include "support/PrivateBus.h"
#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"
#include "support/RecordedService.h"
#include "support/Rhythm.h"
#include "support/SettingsDesk.h"
#include "support/StartupMessages.h"
#include "support/Windows.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QTest>
#include <algorithm>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
const QString name = u"org.corvane.Corvane"_s;

/// On the session bus, or without one.
void addRoads()
{
    QTest::addColumn<bool>("hasBus");
    QTest::newRow("on the session bus") << true;
    QTest::newRow("without a bus") << false;
}

/// A session on the test's display, with a bus of its own, or none.
class Session
{
public:
    explicit Session(bool hasBus = true)
        : m_bus(hasBus ? std::make_unique<PrivateBus>() : nullptr)
    {
    }

    QString busAddress() const { return m_bus ? m_bus->address() : u"unix:path=/nowhere"_s; }
    void endBus() { m_bus.reset(); }

    pid_t busProcess() const { return m_bus->processId(); }

    void start(ProgramUnderTest &program) const
    {
        program.environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, busAddress());
        program.environment.insert(u"XDG_RUNTIME_DIR"_s, m_folder.path());
        program.start();
    }

    /// The same, on the list and the settings that the other program has.
    void startBeside(const ProgramUnderTest &other, ProgramUnderTest &program) const
    {
        program.environment.insert(u"XDG_DATA_HOME"_s, other.dataHome());
        program.environment.insert(u"XDG_CONFIG_HOME"_s, other.configHome());
        start(program);
    }

    /// Calls the instance that has the name; its answer.
    QDBusMessage call(const QString &method, const QVariantList &arguments) const
    {
        const QString caller = u"caller"_s;
        QDBusMessage message = QDBusMessage::createMethodCall(
            name, u"/org/corvane/Corvane"_s, u"org.freedesktop.Application"_s, method);
        message.setArguments(arguments);
        const auto answer = QDBusConnection::connectToBus(busAddress(), caller).call(message);
        QDBusConnection::disconnectFromBus(caller);
        return answer;
    }

    /// Returns within a fraction of a millisecond after an instance has got the name.
    void awaitName() const
    {
        const QString watcher = u"watcher"_s;
        const auto connection = QDBusConnection::connectToBus(busAddress(), watcher);
        const QDeadlineTimer limit(5000);
        while (!connection.interface()->isServiceRegistered(name) && !limit.hasExpired()) { }
        QDBusConnection::disconnectFromBus(watcher);
        QVERIFY(!limit.hasExpired());
    }

    /// Calls Activate so many times in a row and awaits nothing but that the bus has the calls.
    void flood(int times) const
    {
        const QString caller = u"flood"_s;
        auto connection = QDBusConnection::connectToBus(busAddress(), caller);
        auto call = QDBusMessage::createMethodCall(name, u"/org/corvane/Corvane"_s,
                                                   u"org.freedesktop.Application"_s, u"Activate"_s);
        call << QVariantMap();
        for (int i = 0; i < times; ++i)
            connection.send(call);
        connection.interface()->isServiceRegistered(name);
        QDBusConnection::disconnectFromBus(caller);
    }

    QDBusMessage fire(const QVariantList &parameters, const QVariantMap &platformData = {}) const
    {
        return call(u"ActivateAction"_s, {u"fire"_s, QVariant(parameters), platformData});
    }

    /// Fires the entry after each of these pauses, in ms, without awaiting answers.
    void fireInRhythm(const QString &id, const QList<int> &pauses) const
    {
        const QString caller = u"rhythm"_s;
        auto connection = QDBusConnection::connectToBus(busAddress(), caller);
        auto call = QDBusMessage::createMethodCall(
            name, u"/org/corvane/Corvane"_s, u"org.freedesktop.Application"_s, u"ActivateAction"_s);
        call << u"fire"_s << QVariant(QVariantList{id}) << QVariantMap();
        for (const int pause : pauses) {
            QTest::qWait(pause);
            connection.send(call);
        }
        connection.interface()->isServiceRegistered(name);
        QDBusConnection::disconnectFromBus(caller);
    }

private:
    std::unique_ptr<PrivateBus> m_bus;
    QTemporaryDir m_folder;
};

using Moment = void (*)(const Session &);

/// The program, with an app on Control+Option+K and one that has no keys.
struct Instance {
    Instance()
        : idOnK(program.addApp(onK.desktopFile(), storedControlAltK))
        , idWithoutKeys(program.addEntry("app", withoutKeys.desktopFile()))
    {
    }

    /// Awaits that it is the first and has its keys.
    void startIn(const Session &session)
    {
        session.start(program);
        QTRY_VERIFY(Keyboard().isGrabbed(KEY_K, controlAlt));
    }
    QString lockFile() const { return program.dataHome() + u"/Corvane/entries.json.lock"_s; }
    void verifyThatItsKeysWork() const
    {
        const qsizetype before = onK.starts().size();
        Keyboard().type(controlAltK);
        QTRY_COMPARE(onK.starts().size(), before + 1);
    }

    RecordedApp onK;
    RecordedApp withoutKeys;
    ProgramUnderTest program;
    QString idOnK;
    QString idWithoutKeys;
};

void verifyThatItEnds(ProgramUnderTest &program, int status, const QByteArray &words)
{
    QTRY_VERIFY_WITH_TIMEOUT(!program.isRunning(), 10000);
    QCOMPARE(program.exitStatus(), status);
    QCOMPARE(program.errorOutput(), words);
}

const QByteArray noAnswer("corvane: it runs already, but does not answer\n");
const QByteArray otherSession("corvane: it runs already, in another session\n");

/// Stops the process of the first, so that a second start gets no answer.
void askInVain(const Instance &first, const Session &session)
{
    QCOMPARE(kill(first.program.processId(), SIGSTOP), 0);
    ProgramUnderTest second;
    session.startBeside(first.program, second);
    verifyThatItEnds(second, 1, noAnswer);
}
} // namespace

class OneInstanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup() { restoreKeyboard(); }

    void endsASecondStartAndKeepsTheFirst_data() { addRoads(); }
    void endsASecondStartAndKeepsTheFirst()
    {
        QFETCH(const bool, hasBus);
        const Session session(hasBus);
        Instance first;
        first.startIn(session);
        ProgramUnderTest second;
        session.startBeside(first.program, second);
        verifyThatItEnds(second, 0, "");
        first.verifyThatItsKeysWork();
        QCOMPARE(first.program.stop(), 0);
    }

    void handsOverWhatItWasStartedWith_data()
    {
        QTest::addColumn<QString>("startupId");
        QTest::addColumn<QString>("activationToken");
        QTest::addColumn<QString>("platformData");
        QTest::newRow("nothing") << QString() << QString() << u"{}"_s;
        QTest::newRow("a startup id")
            << u"panel_TIME1"_s << QString() << u"{desktop-startup-id: panel_TIME1}"_s;
        QTest::newRow("an activation token")
            << QString() << u"token"_s << u"{activation-token: token}"_s;
        QTest::newRow("both") << u"panel_TIME1"_s << u"token"_s
                              << u"{activation-token: token, desktop-startup-id: panel_TIME1}"_s;
    }
    void handsOverWhatItWasStartedWith()
    {
        QFETCH(const QString, startupId);
        QFETCH(const QString, activationToken);
        QFETCH(const QString, platformData);
        const Session session;
        const RecordedService first(session.busAddress(), name, RecordedService::reply({}));
        ProgramUnderTest second;
        if (!startupId.isEmpty())
            second.environment.insert(u"DESKTOP_STARTUP_ID"_s, startupId);
        if (!activationToken.isEmpty())
            second.environment.insert(u"XDG_ACTIVATION_TOKEN"_s, activationToken);
        session.start(second);
        verifyThatItEnds(second, 0, "");
        QCOMPARE(first.calls(u"Activate"_s),
                 QStringList(u"/org/corvane/Corvane | "_s + platformData));
    }

    void keepsWhatOneStartHandsOverWhenAnotherHandsOverNothing()
    {
        const QTemporaryDir folder;
        SingleInstance instance(folder.filePath(u"lock"_s));
        QCOMPARE(instance.claim({}), InstanceClaim::first);
        UserActivation activation;
        int activations = 0;
        instance.attachToEventLoop(activation,
                                   {.activate = [&activations] { ++activations; },
                                    .isKnown = {},
                                    .fire = {},
                                    .keyRepeat = {},
                                    .isRecording = {}});
        auto bus = QDBusConnection::sessionBus();
        QVERIFY(QMetaObject::invokeMethod(
            bus.objectRegisteredAt(u"/org/corvane/Corvane"_s), "Activate",
            Q_ARG(QVariantMap, QVariantMap({{u"activation-token"_s, u"token"_s}}))));
        instance.handleSignal();
        QTRY_COMPARE(activations, 1);
        QCOMPARE(activation.activationToken, QByteArray("token"));
        bus.unregisterService(name);
    }

    void tellsTheDesktopThatTheSecondStartIsOver()
    {
        const Session session;
        Instance first;
        first.startIn(session);
        StartupMessages messages;
        ProgramUnderTest second;
        second.environment.insert(u"DESKTOP_STARTUP_ID"_s, u"panel \"2\"_TIME1"_s);
        session.start(second);
        verifyThatItEnds(second, 0, "");
        QTRY_COMPARE(messages.soFar(), QList<QByteArray>({"remove: ID=\"panel \\\"2\\\"_TIME1\""}));
    }

    void tellsTheDesktopThatItsOwnStartIsOver()
    {
        const Session session;
        StartupMessages messages;
        Instance first;
        first.program.environment.insert(u"DESKTOP_STARTUP_ID"_s, u"panel_TIME1"_s);
        first.startIn(session);
        QTRY_COMPARE(messages.soFar(), QList<QByteArray>({"remove: ID=\"panel_TIME1\""}));
    }

    void becomesTheFirstAfterACrash_data() { addRoads(); }
    void becomesTheFirstAfterACrash()
    {
        QFETCH(const bool, hasBus);
        const Session session(hasBus);
        Instance first;
        first.startIn(session);
        ProgramUnderTest second;
        QCOMPARE(kill(first.program.processId(), SIGKILL), 0);
        QTRY_VERIFY(!Keyboard().isGrabbed(KEY_K, controlAlt));
        session.startBeside(first.program, second);
        QTRY_VERIFY(Keyboard().isGrabbed(KEY_K, controlAlt));
        QCOMPARE(second.stop(), 0);
        QCOMPARE(second.errorOutput(), QByteArray());
    }

    void leavesOneOfManySimultaneousStarts_data() { addRoads(); }
    void leavesOneOfManySimultaneousStarts()
    {
        QFETCH(const bool, hasBus);
        for (int i = 0; i < 5; ++i) {
            const Session session(hasBus);
            const RecordedApp app;
            std::array<ProgramUnderTest, 8> programs;
            programs.front().addApp(app.desktopFile(), storedControlAltK);
            programs.front().writeFiles();
            for (ProgramUnderTest &program : programs)
                session.startBeside(programs.front(), program);
            QTRY_COMPARE(std::ranges::count_if(programs, &ProgramUnderTest::isRunning), 1);
            QTRY_VERIFY(Keyboard().isGrabbed(KEY_K, controlAlt));
            Keyboard().type(controlAltK);
            QTRY_COMPARE(app.starts().size(), 1);
            for (ProgramUnderTest &program : programs) {
                QCOMPARE(program.isRunning() ? program.end() : program.exitStatus(), 0);
                QCOMPARE(program.errorOutput(), QByteArray());
            }
        }
    }

    void saysThatTheFirstDoesNotAnswerAndForgetsWhatWasAskedOfItOnceItDied_data() { addRoads(); }
    void saysThatTheFirstDoesNotAnswerAndForgetsWhatWasAskedOfItOnceItDied()
    {
        QFETCH(const bool, hasBus);
        const Session session(hasBus);
        {
            Instance first;
            first.startIn(session);
            askInVain(first, session);
        }
        Instance next;
        next.startIn(session);
        next.verifyThatItsKeysWork();
        QVERIFY(!windowOnScreen(u"Corvane"_s));
    }

    void saysThatTheFirstRefuses()
    {
        const Session session;
        const RecordedService first(
            session.busAddress(), name,
            [](const QDBusMessage &message, const QDBusConnection &connection) {
                return connection.send(message.createErrorReply(QDBusError::Failed, u"No"_s));
            });
        ProgramUnderTest second;
        session.start(second);
        verifyThatItEnds(second, 1, noAnswer);
    }

    void takesThePlaceOfOneThatLeavesTheBusWhenItIsCalled()
    {
        const Session session;
        const RecordedService first(session.busAddress(), name,
                                    [](const QDBusMessage &, const QDBusConnection &connection) {
                                        QDBusConnection::disconnectFromBus(connection.name());
                                        return true;
                                    });
        Instance second;
        second.startIn(session);
        QCOMPARE(first.calls(u"Activate"_s).size(), 1);
        second.verifyThatItsKeysWork();
    }

    void takesThePlaceOfOneThatLeavesTheLockWhenItIsAsked()
    {
        const Session session(false);
        Instance second;
        QVERIFY(QDir().mkpath(second.program.dataHome() + u"/Corvane"_s));
        const int file = open(QFile::encodeName(second.lockFile()).constData(),
                              O_RDWR | O_CREAT | O_CLOEXEC, 0600);
        QVERIFY(dprintf(file, "%d", getpid()) > 0);
        struct flock firstBytes = {};
        firstBytes.l_type = F_WRLCK;
        firstBytes.l_len = 2;
        QCOMPARE(fcntl(file, F_OFD_SETLK, &firstBytes), 0);
        static volatile std::sig_atomic_t isAsked;
        isAsked = 0;
        const auto former = std::signal(SIGURG, [](int) { isAsked = 1; });
        session.start(second.program);
        QTRY_VERIFY(isAsked);
        std::signal(SIGURG, former);
        QVERIFY(!Keyboard().isGrabbed(KEY_K, controlAlt));
        close(file);
        QTRY_VERIFY(Keyboard().isGrabbed(KEY_K, controlAlt));
        second.verifyThatItsKeysWork();
    }

    void runsInOneSessionOfTheUserOnly_data() { addRoads(); }
    void runsInOneSessionOfTheUserOnly()
    {
        QFETCH(const bool, hasBus);
        const Session session(hasBus);
        Instance first;
        first.startIn(session);
        ProgramUnderTest second;
        second.environment.insert(u"DISPLAY"_s, u":9999"_s);
        session.startBeside(first.program, second);
        verifyThatItEnds(second, 1, otherSession);
        first.verifyThatItsKeysWork();
        QVERIFY(!windowOnScreen(u"Corvane"_s));
    }

    void keepsItsPlaceWhenAFilePanelShowsItsFolder()
    {
        SettingsDesk first;
        // Where its panels begin.
        first.program.environment.insert(u"HOME"_s, first.program.dataHome() + u"/Corvane"_s);
        first.open();
        first.press(u"Add"_s);
        const Accessible sheet = first.sheet(u"New shortcut"_s);
        const Accessible kind = sheet.findAll(u"combo box"_s).constFirst();
        QVERIFY(kind.choose(u"Open a folder or file"_s, first.keyboard));
        SettingsDesk::press(sheet, u"Choose…"_s);
        const Accessible panel = first.sheet(u"Choose"_s);
        QVERIFY(panel.await(u"tree item"_s, u"entries.json.lock"_s).isThere());

        const Session session(false);
        ProgramUnderTest second;
        second.environment.insert(u"DISPLAY"_s, u":9999"_s);
        session.startBeside(first.program, second);
        verifyThatItEnds(second, 1, otherSession);
    }

    void isAskedFromWhereThereIsNoDisplay_data() { addRoads(); }
    void isAskedFromWhereThereIsNoDisplay()
    {
        QFETCH(const bool, hasBus);
        const Session session(hasBus);
        Instance first;
        first.startIn(session);
        ProgramUnderTest second;
        second.environment.remove(u"DISPLAY"_s);
        session.startBeside(first.program, second);
        verifyThatItEnds(second, 0, "");
        QTRY_VERIFY(windowOnScreen(u"Corvane"_s));
    }

    void forgetsTheDisplayOfAnInstanceThatDied()
    {
        const Session session(false);
        Instance first;
        QVERIFY(QDir().mkpath(first.program.dataHome() + u"/Corvane"_s));
        QFile former(first.lockFile());
        QVERIFY(former.open(QIODevice::WriteOnly));
        former.write(":9999");
        former.close();
        first.startIn(session);
        ProgramUnderTest second;
        session.startBeside(first.program, second);
        verifyThatItEnds(second, 0, "");
    }

    void keepsItsLockFileToItself()
    {
        const Session session;
        Instance first;
        first.startIn(session);
        QCOMPARE(QFile::permissions(first.lockFile()) & ~(QFile::ReadUser | QFile::WriteUser),
                 QFile::ReadOwner | QFile::WriteOwner);
    }

    void leavesAloneWhatIsInThePlaceOfItsLockFile_data()
    {
        QTest::addColumn<void (*)(const QString &)>("make");
        const auto row = [](const char *title, void (*make)(const QString &)) {
            QTest::newRow(title) << make;
        };
        row("a folder", [](const QString &path) { QVERIFY(QDir().mkdir(path)); });
        row("a link", [](const QString &path) { QVERIFY(QFile::link(path + u".target"_s, path)); });
        row("a pipe", [](const QString &path) {
            QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
        });
    }
    void leavesAloneWhatIsInThePlaceOfItsLockFile()
    {
        using Make = void (*)(const QString &);
        QFETCH(const Make, make);
        const Session session(false);
        Instance first;
        QVERIFY(QDir().mkpath(first.program.dataHome() + u"/Corvane"_s));
        make(first.lockFile());
        first.startIn(session);
        first.verifyThatItsKeysWork();
        QVERIFY(!QFile::exists(first.lockFile() + u".target"_s));
        QCOMPARE(first.program.stop(), 0);
        QCOMPARE(first.program.errorOutput(), QByteArray());
    }

    void outlivesTheBus_data()
    {
        QTest::addColumn<bool>("hasNewBus");
        QTest::newRow("for good") << false;
        QTest::newRow("which is started anew") << true;
    }
    void outlivesTheBus()
    {
        QFETCH(const bool, hasNewBus);
        Session session;
        Instance first;
        // Where GIO, too, has a connection to the bus once the window is open.
        first.program.environment.insert(u"XDG_CURRENT_DESKTOP"_s, u"GNOME"_s);
        first.program.environment.insert(u"GSETTINGS_BACKEND"_s, u"dconf"_s);
        first.startIn(session);
        session.call(u"Activate"_s, {QVariantMap()});
        QTRY_VERIFY(first.program.hasThread("gdbus"));
        session.endBus();
        first.verifyThatItsKeysWork();

        const Session next(hasNewBus);
        ProgramUnderTest second;
        next.startBeside(first.program, second);
        verifyThatItEnds(second, 0, "");
        first.verifyThatItsKeysWork();
        QCOMPARE(first.program.stop(), 0);
    }

    void hasItsKeysThoughTheBusHangs()
    {
        const Session session;
        QCOMPARE(kill(session.busProcess(), SIGSTOP), 0);
        Instance first;
        session.start(first.program);
        QTRY_VERIFY_WITH_TIMEOUT(Keyboard().isGrabbed(KEY_K, controlAlt), 3000);
        first.verifyThatItsKeysWork();
        QCOMPARE(first.onK.starts().constFirst()[u"busAddress"].toString(), session.busAddress());

        ProgramUnderTest second;
        session.startBeside(first.program, second);
        verifyThatItEnds(second, 0, "");
        QTRY_VERIFY(windowOnScreen(u"Corvane"_s));
        first.verifyThatItsKeysWork();
        QCOMPARE(first.program.stop(), 0);
        QCOMPARE(first.program.errorOutput(), QByteArray());
    }

    void givesUpAfterFiveSeconds()
    {
        const Session session;
        Instance first;
        first.startIn(session);
        QCOMPARE(kill(session.busProcess(), SIGSTOP), 0);
        QCOMPARE(kill(first.program.processId(), SIGSTOP), 0);
        ProgramUnderTest second;
        const QDeadlineTimer limit(6000);
        session.startBeside(first.program, second);
        verifyThatItEnds(second, 1, noAnswer);
        QVERIFY(!limit.hasExpired());
        QCOMPARE(kill(first.program.processId(), SIGCONT), 0);
        QCOMPARE(kill(session.busProcess(), SIGCONT), 0);
        first.verifyThatItsKeysWork();
    }

    void worksWhileTheBusHangs_data()
    {
        QTest::addColumn<Moment>("awaitMoment");
        const auto row = [](const char *title, Moment awaitMoment) {
            QTest::newRow(title) << awaitMoment;
        };
        row("from when it has its name", [](const Session &session) { session.awaitName(); });
        row("from when its keys are held",
            [](const Session &) { QTRY_VERIFY(Keyboard().isGrabbed(KEY_K, controlAlt)); });
        row("from when its window is open", [](const Session &session) {
            session.awaitName();
            session.call(u"Activate"_s, {QVariantMap()});
            QTRY_VERIFY(windowOnScreen(u"Corvane"_s));
            closeWindow(*windowOnScreen(u"Corvane"_s));
            QTRY_VERIFY(!windowOnScreen(u"Corvane"_s));
        });
    }
    void worksWhileTheBusHangs()
    {
        QFETCH(const Moment, awaitMoment);
        const Session session;
        // With an answer about trays Qt makes an icon, and waits if the bus stops in that
        // millisecond.
        const RecordedService watcher(session.busAddress(), u"org.kde.StatusNotifierWatcher"_s,
                                      RecordedService::silence);
        Instance first;
        session.start(first.program);
        awaitMoment(session);
        QCOMPARE(kill(session.busProcess(), SIGSTOP), 0);
        QTRY_VERIFY(Keyboard().isGrabbed(KEY_K, controlAlt));
        first.verifyThatItsKeysWork();
        first.verifyThatItsKeysWork();

        const Session noBus(false);
        ProgramUnderTest second;
        noBus.startBeside(first.program, second);
        verifyThatItEnds(second, 0, "");
        QTRY_VERIFY(windowOnScreen(u"Corvane"_s));
        first.verifyThatItsKeysWork();
        QCOMPARE(first.program.stop(), 0);
    }

    void hearsKeysInAFloodOfCalls()
    {
        const Session session;
        Instance first;
        first.startIn(session);
        session.call(u"Activate"_s, {QVariantMap()});
        QTRY_VERIFY(windowOnScreen(u"Corvane"_s));
        session.flood(5000);
        const double before = first.program.cpuMilliseconds();
        first.verifyThatItsKeysWork();
        const double work = first.program.cpuMilliseconds() - before;
        qInfo("the press ran its entry after %.0f ms of work", work);
        QVERIFY(work < 500);
    }

    void firesEntries_data()
    {
        QTest::addColumn<QString Instance::*>("id");
        QTest::addColumn<RecordedApp Instance::*>("app");
        QTest::newRow("with keys") << &Instance::idOnK << &Instance::onK;
        QTest::newRow("without keys") << &Instance::idWithoutKeys << &Instance::withoutKeys;
    }
    void firesEntries()
    {
        QFETCH(QString Instance::*const, id);
        QFETCH(RecordedApp Instance::*const, app);
        const Session session;
        Instance first;
        first.startIn(session);
        QCOMPARE(session.fire({first.*id}).type(), QDBusMessage::ReplyMessage);
        QTRY_COMPARE((first.*app).starts().size(), 1);
        QCOMPARE(session.fire({(first.*id).toLower()}).type(), QDBusMessage::ReplyMessage);
        QTRY_COMPARE((first.*app).starts().size(), 2);
    }

    void runsAnEntryOnceForEachPress_data()
    {
        QTest::addColumn<RepeatRate>("rate");
        QTest::addColumn<QList<int>>("pauses");
        QTest::addColumn<int>("runs");
        const auto held = [](int delay) { return QList<int>{0, delay} + QList<int>(27, 30); };
        const RepeatRate usual{500, 33};
        QTest::newRow("held keys") << usual << held(500) << 1;
        QTest::newRow("held keys that repeat late") << RepeatRate{1500, 33} << held(1500) << 1;
        QTest::newRow("two presses") << usual << QList<int>{0, 120} << 2;
    }
    void runsAnEntryOnceForEachPress()
    {
        QFETCH(const RepeatRate, rate);
        QFETCH(const QList<int>, pauses);
        QFETCH(const int, runs);
        const Session session;
        Instance first;
        first.startIn(session);
        rate.set();
        session.fireInRhythm(first.idOnK, pauses);
        QTRY_COMPARE(first.onK.starts().size(), runs);
        // A press after the end of the repeats runs last.
        session.fireInRhythm(first.idOnK, {200});
        QTRY_COMPARE(first.onK.starts().size(), runs + 1);
        session.fireInRhythm(first.idWithoutKeys, {0});
        QTRY_COMPARE(first.withoutKeys.starts().size(), 1);
        QCOMPARE(first.onK.starts().size(), runs + 1);
    }

    void firesByTheDesktopsOwnTool()
    {
        const Session session;
        Instance first;
        first.startIn(session);
        QProcess tool;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, session.busAddress());
        tool.setProcessEnvironment(environment);
        tool.start(u"gapplication"_s, {u"action"_s, name, u"fire"_s, u"'%1'"_s.arg(first.idOnK)});
        QTRY_COMPARE(first.onK.starts().size(), 1);
        QTRY_COMPARE(tool.state(), QProcess::NotRunning);
        QCOMPARE(tool.exitCode(), 0);
    }

    void runsNothingThatItsKeysWouldNotRun_data()
    {
        QTest::addColumn<bool>("isEnabled");
        QTest::addColumn<QByteArray>("setting");
        QTest::newRow("a disabled entry") << false << QByteArray("pauseAll=false");
        QTest::newRow("while paused") << true << QByteArray("pauseAll=true");
    }
    void runsNothingThatItsKeysWouldNotRun()
    {
        QFETCH(const bool, isEnabled);
        QFETCH(const QByteArray, setting);
        const Session session;
        const RecordedApp app;
        ProgramUnderTest first;
        first.entriesAreEnabled = isEnabled;
        first.addDefault(setting);
        const QString id = first.addApp(app.desktopFile(), storedControlAltK);
        session.start(first);
        QTRY_COMPARE(session.fire({id}).type(), QDBusMessage::ReplyMessage);
        // Answered when all that the call above has queued is done.
        for (int i = 0; i < 3; ++i)
            session.call(u"Activate"_s, {QVariantMap()});
        QCOMPARE(first.stop(), 0);
        QVERIFY(app.starts().isEmpty());
    }

    void refusesWhatIsNoCallOfItsActions_data()
    {
        QTest::addColumn<QString>("method");
        QTest::addColumn<QVariantList>("arguments");
        QTest::addColumn<QString>("error");
        QTest::addColumn<QString>("sentence");
        const QString invalid = u"org.freedesktop.DBus.Error.InvalidArgs"_s;
        const QString unknown = u"org.freedesktop.DBus.Error.UnknownMethod"_s;
        const auto row = [&](const char *title, const QVariantList &parameters,
                             const QString &sentence) {
            QTest::newRow(title) << u"ActivateAction"_s
                                 << QVariantList{u"fire"_s, QVariant(parameters), QVariantMap()}
                                 << invalid << sentence;
        };
        const QString oneText = u"The action takes one text, the id of an entry."_s;
        const QString noEntry = u"There is no entry with the id “%1”."_s;
        const QString id = u"1B4E28BA-2FA1-11D2-883F-0016D3CCA427"_s;
        row("no parameter", {}, oneText);
        row("two parameters", {id, id}, oneText);
        row("a number", {1}, oneText);
        row("a list of texts", {QStringList(id)}, oneText);
        row("an unknown id", {id}, noEntry.arg(id));
        row("the zero id", {QUuid().toString(QUuid::WithoutBraces)},
            noEntry.arg(QUuid().toString(QUuid::WithoutBraces)));
        row("an empty text", {QString()}, noEntry.arg(QString()));
        row("no id", {u"Files"_s}, noEntry.arg(u"Files"_s));
        QTest::newRow("another action")
            << u"ActivateAction"_s
            << QVariantList{u"quit"_s, QVariant(QVariantList()), QVariantMap()} << invalid
            << u"There is no action “quit”."_s;
        QTest::newRow("too few arguments")
            << u"ActivateAction"_s << QVariantList{u"fire"_s} << unknown << QString();
        QTest::newRow("no platform data")
            << u"Activate"_s << QVariantList() << unknown << QString();
        QTest::newRow("files to open")
            << u"Open"_s << QVariantList{QStringList(), QVariantMap()} << unknown << QString();
    }
    void refusesWhatIsNoCallOfItsActions()
    {
        QFETCH(const QString, method);
        QFETCH(const QVariantList, arguments);
        QFETCH(const QString, error);
        QFETCH(const QString, sentence);
        const Session session;
        Instance first;
        first.startIn(session);
        const QDBusMessage answer = session.call(method, arguments);
        QCOMPARE(answer.errorName(), error);
        QVERIFY(sentence.isEmpty() || answer.errorMessage() == sentence);
    }

    void refusesAnIdWithMoreAroundIt_data()
    {
        QTest::addColumn<QString>("form");
        QTest::newRow("in braces") << u"{%1}"_s;
        QTest::newRow("with a blank before it") << u" %1"_s;
        QTest::newRow("with a letter behind it") << u"%1A"_s;
        QTest::newRow("with a line break behind it") << u"%1\n"_s;
    }
    void refusesAnIdWithMoreAroundIt()
    {
        QFETCH(const QString, form);
        const Session session;
        Instance first;
        first.startIn(session);
        const QDBusMessage answer = session.fire({form.arg(first.idOnK)});
        QCOMPARE(answer.errorName(), u"org.freedesktop.DBus.Error.InvalidArgs"_s);
        QCOMPARE(first.program.stop(), 0);
        QVERIFY(first.onK.starts().isEmpty());
    }

    void startsOnBehalfOfTheActionThatIsHandedOver()
    {
        const Session session;
        Instance first;
        first.startIn(session);
        session.fire({first.idOnK}, {{u"desktop-startup-id"_s, u"panel_TIME123"_s}});
        QTRY_COMPARE(first.onK.starts().size(), 1);
        const auto id = first.onK.starts().constFirst()[u"startupId"].toString();
        QVERIFY(id.endsWith(u"_TIME123"_s));
    }

    void startsOnBehalfOfThisMomentIfNothingIsHandedOver()
    {
        const Session session;
        Instance first;
        first.startIn(session);
        const quint32 before = currentServerTime().value();
        session.fire({first.idOnK});
        QTRY_COMPARE(first.onK.starts().size(), 1);
        const auto id = first.onK.starts().constFirst()[u"startupId"].toString();
        const auto time = id.section(u"_TIME"_s, -1).toUInt();
        QVERIFY(time >= before && time <= currentServerTime().value());
    }
};

QTEST_GUILESS_MAIN(OneInstanceTest)
#include "OneInstanceTest.moc"
