// The shortcuts of XFCE and LXQt, from their real services, and from some that misbehave.

#include "platform/EventFlag.h"
#include "platform/linux/desktopkeys/KGlobalAccelKeys.h"
#include "platform/linux/desktopkeys/LxqtKeys.h"
#include "platform/linux/desktopkeys/XfconfKeys.h"
#include "support/PrivateBus.h"
#include "support/RecordedService.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <cstdio>
#include <functional>
#include <memory>
#include <optional>
#include <sys/stat.h>
#include <xkbcommon/xkbcommon-keysyms.h>

using namespace Qt::StringLiterals;
using Answer = RecordedService::Answer;
using Accelerators = QList<Accelerator>;

namespace
{
const QString xfconf = u"org.xfce.Xfconf"_s;
const QString kglobalaccel = u"org.kde.kglobalaccel"_s;
const QString globalkeys = u"org.lxqt.global_key_shortcuts"_s;
const QString channel = u"xfce4-keyboard-shortcuts"_s;

/// What is soon enough for a change of the settings.
constexpr int soon = 1000;
/// Milliseconds, far fewer than any service is waited for.
constexpr int noWait = 1000;

constexpr Accelerator superK{.modifiers = commandEventFlag, .keysym = XKB_KEY_k};
constexpr Accelerator superL{.modifiers = commandEventFlag, .keysym = XKB_KEY_l};
constexpr Accelerator controlAltT{
    .modifiers = controlEventFlag | optionEventFlag,
    .keysym = XKB_KEY_t,
};
constexpr Accelerator altF4{.modifiers = optionEventFlag, .keysym = XKB_KEY_F4};

/// One of KGlobalAccel's.
struct ShortcutInfo {
    QList<int> keys;
    QString action = u"Name"_s;
    QString component = u"Name"_s;
};

QDBusArgument &operator<<(QDBusArgument &argument, const ShortcutInfo &info)
{
    argument.beginStructure();
    const auto other = u"Name"_s;
    argument << other << info.action << other << info.component << other << other;
    argument << info.keys << QList<int>();
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, ShortcutInfo &)
{
    return argument;
}

Accelerators accelerators(const DesktopKeys &source)
{
    Accelerators found;
    for (const DesktopKey &key : source.keys().value_or(QList<DesktopKey>()))
        found << key.accelerator;
    return found;
}

bool has(const DesktopKeys &source, const Accelerator &accelerator)
{
    return accelerators(source).contains(accelerator);
}

bool hasNothing(const DesktopKeys &source)
{
    return accelerators(source).isEmpty();
}

/// The names of the actions that use the keys, with "none" for those without a name.
QStringList actions(const DesktopKeys &source, const Accelerator &accelerator)
{
    QStringList names;
    for (const DesktopKey &key : source.keys().value_or(QList<DesktopKey>())) {
        if (key.accelerator == accelerator)
            names << key.action.value_or(u"none"_s);
    }
    return names;
}

bool isOnTheBus(const QString &service)
{
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(service);
}

void write(const QString &path, const QByteArray &text)
{
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    QVERIFY2(file.open(QIODevice::WriteOnly), qPrintable(path));
    file.write(text);
}

/// A desktop's own service, until it is killed.
class RealService
{
public:
    RealService(const QString &program, QString name)
        : m_name(std::move(name))
    {
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(program, QStringList());
        if (!m_process.waitForStarted() || !QTest::qWaitFor([this] { return isOnTheBus(m_name); }))
            qFatal("%s does not start", qPrintable(program));
    }
    ~RealService() { kill(); }
    Q_DISABLE_COPY_MOVE(RealService)

    void send(int signal) const { ::kill(pid_t(m_process.processId()), signal); }
    void kill()
    {
        m_process.kill();
        m_process.waitForFinished();
        // Otherwise the next one would seem to have started already.
        QTRY_VERIFY(!isOnTheBus(m_name));
    }

private:
    QString m_name;
    QProcess m_process;
};

struct Xfconfd : RealService {
    Xfconfd()
        : RealService(program(), xfconf)
    {
    }
    static QString program()
    {
        const QSettings description(u"/usr/share/dbus-1/services/org.xfce.Xfconf.service"_s,
                                    QSettings::IniFormat);
        return description.value(u"D-BUS Service/Exec"_s).toString();
    }
    /// As the user's programs change the settings.
    static void change(const QStringList &words)
    {
        QCOMPARE(QProcess::execute(u"xfconf-query"_s, QStringList{u"-c"_s, channel} + words), 0);
    }
    static void set(const QString &property, const QString &value,
                    const QString &type = u"string"_s)
    {
        change({u"-p"_s, property, u"-n"_s, u"-t"_s, type, u"-s"_s, value});
    }
    static void reset(const QString &property) { change({u"-p"_s, property, u"-r"_s}); }
    /// From now on those of the user count.
    static void override(const QString &folder)
    {
        set(folder + u"/custom/override"_s, u"true"_s, u"bool"_s);
    }
};

struct Globalkeysd : RealService {
    Globalkeysd()
        : RealService(u"lxqt-globalkeysd"_s, globalkeys)
    {
    }
    static QVariantList call(const QString &method, const QVariantList &arguments)
    {
        auto question = QDBusMessage::createMethodCall(globalkeys, u"/daemon"_s,
                                                       globalkeys + u".daemon"_s, method);
        question.setArguments(arguments);
        return QDBusConnection::sessionBus().call(question).arguments();
    }
    /// Its number.
    static qulonglong add(const QString &shortcut)
    {
        return call(u"addCommandAction"_s, {shortcut, u"true"_s, QStringList(), u"Test"_s})
            .value(1)
            .toULongLong();
    }
};

Answer failing()
{
    return [](const QDBusMessage &call, const QDBusConnection &connection) {
        return connection.send(call.createErrorReply(QDBusError::Failed, u"It failed"_s));
    };
}

QVariantMap xfceSettings(const QString &key)
{
    return {{u"/commands/default/"_s + key, u"true"_s}};
}

/// KGlobalAccel with two components, of which the second answers so.
Answer withComponents(const Answer &second)
{
    return [second](const QDBusMessage &call, const QDBusConnection &connection) {
        if (call.path() == u"/component/second")
            return second(call, connection);
        const QVariant answer = call.member() == u"allComponents"
            ? QVariant::fromValue(QList{QDBusObjectPath(u"/component/first"_s),
                                        QDBusObjectPath(u"/component/second"_s)})
            : QVariant::fromValue(QList<ShortcutInfo>());
        return connection.send(call.createReply(answer));
    };
}

/// A service of that name with one shortcut.
Answer good(const QString &service)
{
    if (service == xfconf)
        return RecordedService::reply({xfceSettings(u"<Super>k"_s)});
    return withComponents(RecordedService::reply({QVariant::fromValue(
        QList{ShortcutInfo{.keys = {0, int(Qt::MetaModifier) | Qt::Key_K}}})}));
}

std::unique_ptr<DesktopKeys> sourceOver(const QString &service)
{
    if (service == xfconf)
        return std::make_unique<XfconfKeys>();
    return std::make_unique<KGlobalAccelKeys>();
}
} // namespace

Q_DECLARE_METATYPE(Answer)

class ShortcutSourcesTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_signs;
    const QString m_sign = m_signs.filePath(u"started"_s);
    const PrivateBus m_bus{xfconf, u"/usr/bin/touch "_s + m_sign};
    std::unique_ptr<QTemporaryDir> m_home;

    QString userFile() const { return m_home->filePath(u"user/lxqt/globalkeyshortcuts.conf"_s); }
    QString systemFile() const
    {
        return m_home->filePath(u"system/lxqt/globalkeyshortcuts.conf"_s);
    }

private Q_SLOTS:
    void initTestCase()
    {
        qputenv("DBUS_SESSION_BUS_ADDRESS", m_bus.address().toLatin1());
        qDBusRegisterMetaType<ShortcutInfo>();
        qDBusRegisterMetaType<QList<ShortcutInfo>>();
        qDBusRegisterMetaType<QMap<QString, QString>>();
    }

    void init()
    {
        m_home = std::make_unique<QTemporaryDir>();
        qputenv("XDG_CONFIG_HOME", m_home->filePath(u"user"_s).toLocal8Bit());
        qunsetenv("XDG_CONFIG_DIRS");
    }

    void cleanup() { QVERIFY2(!QFile::exists(m_sign), "the bus was made to start a service"); }

    void knowsWhatXfceComesWith()
    {
        const Xfconfd daemon;
        XfconfKeys source;
        source.start();
        QTRY_VERIFY(has(source, controlAltT));
        QVERIFY(has(source, altF4));
    }

    void followsTheSettingsOfXfce_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::newRow("of commands") << u"/commands"_s;
        QTest::newRow("of the window manager") << u"/xfwm4"_s;
    }
    void followsTheSettingsOfXfce()
    {
        QFETCH(const QString, folder);
        const Xfconfd daemon;
        Xfconfd::override(folder);
        XfconfKeys source;
        source.start();
        QTRY_VERIFY(source.keys());
        Xfconfd::set(folder + u"/custom/<Super>k"_s, u"true"_s);
        QTRY_VERIFY_WITH_TIMEOUT(has(source, superK), soon);
        Xfconfd::set(folder + u"/custom/<Super>k"_s, u""_s);
        QTRY_VERIFY_WITH_TIMEOUT(!has(source, superK), soon);
        Xfconfd::set(folder + u"/custom/<Super>k"_s, u"true"_s);
        QTRY_VERIFY_WITH_TIMEOUT(has(source, superK), soon);
        Xfconfd::reset(folder + u"/custom/<Super>k"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!has(source, superK), soon);
    }

    void namesTheActionsOfXfce()
    {
        const Xfconfd daemon;
        Xfconfd::override(u"/commands"_s);
        Xfconfd::set(u"/commands/custom/<Super>k"_s, u"sh -c 'xterm  -e \"a_b\"'"_s);
        Xfconfd::set(u"/commands/custom/<Super>l"_s, QString(10'000, u'x'));
        XfconfKeys source;
        source.start();
        QTRY_COMPARE(actions(source, altF4), QStringList{u"Close window"_s});
        QCOMPARE(actions(source, superK), QStringList{u"sh -c 'xterm  -e \"a_b\"'"_s});
        QCOMPARE(actions(source, superL).value(0).size(), 200);
        Xfconfd::set(u"/commands/custom/<Super>k"_s, u"xterm\n-e\ttop"_s);
        QTRY_COMPARE(actions(source, superK), QStringList{u"xterm -e top"_s});
    }

    void namesTheCommandsOfXfceBeforeItsWindows()
    {
        const Xfconfd daemon;
        for (const auto &folder : {u"/commands"_s, u"/xfwm4"_s}) {
            Xfconfd::override(folder);
            Xfconfd::set(folder + u"/custom/<Super>k"_s, u"tile_up_key"_s);
        }
        XfconfKeys source;
        source.start();
        QTRY_COMPARE(actions(source, superK), (QStringList{u"tile_up_key"_s, u"Tile up"_s}));
    }

    void takesTheUsersShortcutsOfXfceOnlyWhereTheyOverride()
    {
        const Xfconfd daemon;
        Xfconfd::set(u"/commands/custom/<Super>k"_s, u"true"_s);
        XfconfKeys source;
        source.start();
        QTRY_VERIFY(has(source, controlAltT));
        QVERIFY(!has(source, superK));
        Xfconfd::override(u"/commands"_s);
        QTRY_VERIFY_WITH_TIMEOUT(has(source, superK), soon);
        QVERIFY(!has(source, controlAltT));
        QVERIFY2(has(source, altF4), "the window manager's are still the desktop's");
    }

    void takesNoShortcutsOfXfceFromOtherSettings_data()
    {
        QTest::addColumn<QString>("property");
        QTest::addColumn<QString>("type");
        QTest::newRow("one of a shortcut") << u"/commands/custom/<Super>k/startup"_s << u"string"_s;
        QTest::newRow("one of another provider") << u"/provider/custom/<Super>k"_s << u"string"_s;
        QTest::newRow("one outside of the folders") << u"/commands/<Super>k"_s << u"string"_s;
        QTest::newRow("one that is no text") << u"/commands/custom/<Super>k"_s << u"int"_s;
    }
    void takesNoShortcutsOfXfceFromOtherSettings()
    {
        QFETCH(const QString, property);
        QFETCH(const QString, type);
        const Xfconfd daemon;
        Xfconfd::override(u"/commands"_s);
        Xfconfd::set(property, u"1"_s, type);
        Xfconfd::set(u"/commands/custom/<Super>l"_s, u"true"_s);
        XfconfKeys source;
        source.start();
        QTRY_VERIFY(has(source, superL));
        QVERIFY(!has(source, superK));
    }

    void takesNoShortcutsOfXfceThatCallUs()
    {
        const Xfconfd daemon;
        Xfconfd::override(u"/commands"_s);
        Xfconfd::set(u"/commands/custom/<Super>k"_s,
                     u"gapplication action org.corvane.Corvane fire \"'X'\""_s);
        Xfconfd::set(u"/commands/custom/<Super>l"_s, u"true"_s);
        XfconfKeys source;
        source.start();
        QTRY_VERIFY(has(source, superL));
        QVERIFY(!has(source, superK));
    }

    void knowsNothingWhileXfceIsGone()
    {
        XfconfKeys source;
        source.start();
        auto daemon = std::make_unique<Xfconfd>();
        QTRY_VERIFY(has(source, controlAltT));
        daemon.reset();
        QTRY_VERIFY(!source.keys());
        daemon = std::make_unique<Xfconfd>();
        QTRY_VERIFY(has(source, controlAltT));
    }

    void waitsForNobodyAndTakesALateAnswer()
    {
        const Xfconfd daemon;
        daemon.send(SIGSTOP);
        QElapsedTimer timer;
        timer.start();
        XfconfKeys source;
        source.start();
        QCoreApplication::processEvents();
        QVERIFY(timer.elapsed() < noWait);
        QVERIFY(!source.keys());
        daemon.send(SIGCONT);
        QTRY_VERIFY(has(source, controlAltT));
    }

    void outlivesServicesThatMisbehave_data()
    {
        QTest::addColumn<QString>("service");
        QTest::addColumn<QString>("lastQuestion");
        QTest::addColumn<Answer>("answer");
        QTest::addColumn<QList<Accelerators>>("understood");
        const auto reply = [](const auto &value) {
            return RecordedService::reply({QVariant::fromValue(value)});
        };
        const QList<Accelerators> nothing;
        const QList<Accelerators> noShortcuts{{}};
        const auto addXfce = [](const char *row, const Answer &answer,
                                const QList<Accelerators> &understood) {
            QTest::addRow("XFCE %s", row)
                << xfconf << u"/org/xfce/Xfconf"_s << answer << understood;
        };
        addXfce("never answers", RecordedService::silence, nothing);
        addXfce("fails", failing(), nothing);
        addXfce("dies", Answer(RecordedService::death), nothing);
        addXfce("answers nothing", RecordedService::reply({}), nothing);
        addXfce("answers a text", reply(u"<Super>l"_s), nothing);
        addXfce("answers settings of another kind",
                reply(QMap<QString, QString>{{u"/commands/default/<Super>l"_s, u"true"_s}}),
                nothing);
        addXfce("answers settings that are no shortcuts",
                reply(QVariantMap{{u"/commands/default/<Super>l"_s, QByteArray("true")},
                                  {u"/commands/default/"_s, u"true"_s},
                                  {u"/commands/default/<Nonsense"_s, u"true"_s},
                                  {u"/commands/custom/override"_s, 1}}),
                noShortcuts);
        const auto addPlasma = [](const char *row, const Answer &answer,
                                  const QList<Accelerators> &understood) {
            QTest::addRow("Plasma %s", row)
                << kglobalaccel << u"/kglobalaccel"_s << answer << understood;
        };
        addPlasma("never answers", RecordedService::silence, nothing);
        addPlasma("fails", failing(), nothing);
        addPlasma("dies", Answer(RecordedService::death), nothing);
        addPlasma("answers nothing", RecordedService::reply({}), nothing);
        addPlasma("answers a text", reply(u"/component/first"_s), nothing);
        addPlasma("has no components", reply(QList<QDBusObjectPath>()), noShortcuts);
        const auto addComponent = [](const char *row, const Answer &answer,
                                     const QList<Accelerators> &understood) {
            QTest::addRow("Plasma has a component that %s", row)
                << kglobalaccel << u"/component/second"_s << withComponents(answer) << understood;
        };
        addComponent("never answers", RecordedService::silence, nothing);
        addComponent("fails", failing(), noShortcuts);
        addComponent("dies", Answer(RecordedService::death), nothing);
        addComponent("answers nothing", RecordedService::reply({}), noShortcuts);
        addComponent("answers numbers", reply(QList<int>{int(Qt::MetaModifier) | Qt::Key_L}),
                     noShortcuts);
        addComponent("has keys that are none", reply(QList{ShortcutInfo{.keys = {0, -1, 1}}}),
                     noShortcuts);
    }
    void outlivesServicesThatMisbehave()
    {
        QFETCH(const QString, service);
        QFETCH(const QString, lastQuestion);
        QFETCH(const Answer, answer);
        QFETCH(const QList<Accelerators>, understood);
        bool hasAnswered = false;
        RecordedService bad(m_bus.address(), service,
                            [&](const QDBusMessage &call, const QDBusConnection &connection) {
                                hasAnswered = hasAnswered || call.path() == lastQuestion;
                                return answer(call, connection);
                            });
        const auto source = sourceOver(service);
        QList<Accelerators> heard;
        connect(source.get(), &DesktopKeys::changed, this, [&heard, &source] {
            if (source->keys())
                heard << accelerators(*source);
        });
        source->start();
        QTRY_VERIFY(hasAnswered);
        bad.die();
        const RecordedService next(m_bus.address(), service, good(service));
        QTRY_COMPARE(heard, understood + QList<Accelerators>{{superK}});
    }

    void namesTheActionsOfPlasma_data()
    {
        QTest::addColumn<QString>("component");
        QTest::addColumn<QString>("action");
        QTest::addColumn<QString>("name");
        const auto add = [](const char *row, const QString &component, const QString &action,
                            const QString &name) {
            QTest::newRow(row) << component << action << name;
        };
        add("both titles", u"KWin"_s, u"Close Window"_s, u"KWin: Close Window"_s);
        add("one title twice", u"Konsole"_s, u"Konsole"_s, u"Konsole"_s);
        add("no title of the component", QString(), u"Do It"_s, u"Do It"_s);
        add("no title of the action", u"Konsole"_s, QString(), u"Konsole: Name"_s);
        add("no titles", QString(), QString(), u"Name"_s);
        add("line breaks", u"a\nb"_s, u"c\r\n\u0007d"_s, u"a b: c  d"_s);
        add("a long title", u"K"_s, QString(10'000, u'x'),
            u"K: "_s + QString(97, u'x') + u'…' + QString(99, u'x'));
    }
    void namesTheActionsOfPlasma()
    {
        QFETCH(const QString, component);
        QFETCH(const QString, action);
        const QList infos{ShortcutInfo{
            .keys = {int(Qt::MetaModifier) | Qt::Key_K, int(Qt::MetaModifier) | Qt::Key_L},
            .action = action,
            .component = component}};
        const RecordedService service(
            m_bus.address(), kglobalaccel,
            withComponents(RecordedService::reply({QVariant::fromValue(infos)})));
        KGlobalAccelKeys source;
        source.start();
        QTRY_VERIFY(has(source, superK));
        QTEST(actions(source, superK).value(0), "name");
        QTEST(actions(source, superL).value(0), "name");
    }

    void asksEachComponentOfPlasmaOnce()
    {
        const RecordedService service(m_bus.address(), kglobalaccel, good(kglobalaccel));
        KGlobalAccelKeys source;
        source.start();
        QTRY_VERIFY(has(source, superK));
        QCOMPARE(service.calls(u"allComponents"_s).size(), 1);
        QCOMPARE(service.calls(u"allShortcutInfos"_s),
                 (QStringList{u"/component/first"_s, u"/component/second"_s}));
    }

    void dropsAnswersThatAreOutOfDate()
    {
        QList<QDBusMessage> questions;
        std::optional<QDBusConnection> connection;
        const auto noting = [&](const QDBusMessage &question, const QDBusConnection &itsOwn) {
            questions << question;
            connection = itsOwn;
            return true;
        };
        const RecordedService service(m_bus.address(), xfconf, noting);
        const auto answer = [&](int index, const QString &key) {
            connection->send(questions.at(index).createReply(QVariant(xfceSettings(key))));
        };
        XfconfKeys source;
        source.start();
        QTRY_COMPARE(questions.size(), 1);
        source.refresh();
        QTRY_COMPARE(questions.size(), 2);
        answer(1, u"<Super>k"_s);
        QTRY_VERIFY(has(source, superK));
        answer(0, u"<Super>l"_s);
        // By the time of the next question that answer has been there.
        source.refresh();
        QTRY_COMPARE(questions.size(), 3);
        QVERIFY(has(source, superK));
    }

    void asksOnceForManyChangesAndNeverOtherwise()
    {
        const RecordedService service(m_bus.address(), xfconf, good(xfconf));
        const auto change = [&service](const QString &changedChannel) {
            service.emitSignal(u"/org/xfce/Xfconf"_s, xfconf, u"PropertyChanged"_s,
                               {changedChannel, u"/commands/default/<Super>k"_s,
                                QVariant::fromValue(QDBusVariant(u"true"_s))});
        };
        const auto questions = [&service] { return service.calls(u"GetAllProperties"_s); };
        XfconfKeys source;
        source.start();
        QTRY_VERIFY(has(source, superK));
        for (int i = 0; i < 50; ++i)
            change(channel);
        QTRY_VERIFY(questions().size() > 1);
        QVERIFY(!QTest::qWaitFor([&] { return questions().size() > 10; }, 200));
        const qsizetype before = questions().size();
        change(u"xfce4-panel"_s);
        QVERIFY(!QTest::qWaitFor([&] { return questions().size() > before; }, 200));
        QCOMPARE(questions().constLast(), u"/org/xfce/Xfconf | "_s + channel + u" | /"_s);
    }

    void followsTheServiceOfLxqt()
    {
        const Globalkeysd daemon;
        LxqtKeys source;
        source.start();
        const qulonglong id = Globalkeysd::add(u"Meta+K"_s);
        QTRY_VERIFY_WITH_TIMEOUT(has(source, superK), soon);
        Globalkeysd::call(u"changeShortcut"_s, {id, u"Meta+L"_s});
        QTRY_VERIFY_WITH_TIMEOUT(has(source, superL) && !has(source, superK), soon);
        Globalkeysd::call(u"enableAction"_s, {id, false});
        QTRY_VERIFY_WITH_TIMEOUT(!has(source, superL), soon);
        Globalkeysd::call(u"enableAction"_s, {id, true});
        QTRY_VERIFY_WITH_TIMEOUT(has(source, superL), soon);
        Globalkeysd::call(u"removeAction"_s, {id});
        QTRY_VERIFY_WITH_TIMEOUT(!has(source, superL), soon);
    }

    void namesTheActionsOfTheServiceOfLxqt()
    {
        const Globalkeysd daemon;
        LxqtKeys source;
        source.start();
        const auto add = [](const QString &method, const QVariantList &arguments) {
            QVERIFY(!Globalkeysd::call(method, arguments).isEmpty());
        };
        add(u"addCommandAction"_s,
            {u"Meta+K"_s, u"xterm"_s,
             QStringList{u"-e"_s, u"a, \"b\" \\ c;="_s, u"Gr\u00fc\u00dfe"_s, u"\u20ac"_s},
             u"Unused"_s});
        add(u"addMethodAction"_s,
            {u"Meta+L"_s, u"org.example"_s, QVariant::fromValue(QDBusObjectPath(u"/org/a"_s)),
             u"org.example.A"_s, u"open"_s, u"\u00d6ffnen, \"jetzt\""_s});
        add(u"addMethodAction"_s,
            {u"Control+Alt+T"_s, u"org.example"_s,
             QVariant::fromValue(QDBusObjectPath(u"/org/a"_s)), u"org.example.A"_s, u"close"_s,
             QString()});
        QTRY_COMPARE(actions(source, superK),
                     QStringList{u"xterm -e a, \"b\" \\ c;= Gr\u00fc\u00dfe \u20ac"_s});
        QTRY_COMPARE(actions(source, superL), QStringList{u"\u00d6ffnen, \"jetzt\""_s});
        QTRY_COMPARE(actions(source, controlAltT), QStringList{u"/org/a/close"_s});
    }

    void namesTheActionsInAFileOfLxqt_data()
    {
        QTest::addColumn<QByteArray>("settings");
        QTest::addColumn<QString>("name");
        const auto add = [](const char *row, const QByteArray &settings, const QString &name) {
            QTest::newRow(row) << settings << name;
        };
        add("a command", "Exec=xterm\nComment=Terminal\n", u"xterm"_s);
        add("a command with arguments", "Exec=xterm, -e, htop\n", u"xterm -e htop"_s);
        add("an argument with a comma", "Exec=sh, -c, \"a, b\"\n", u"sh -c a, b"_s);
        add("escaped signs", "Exec=a \\\"q\\\" \\\\ b\n", u"a \"q\" \\ b"_s);
        add("escaped letters", "Exec=Gr\\xfc\\xdf\\x65\n", u"Grüße"_s);
        add("an escaped line break", "Exec=a\\nb\\x1b\n", u"a b"_s);
        add("plain UTF-8", "Exec=Grüße\n", u"Grüße"_s);
        add("what is not UTF-8", "Exec=a\xff\n", u"a\ufffd"_s);
        add("an unfinished escape", "Exec=a\\\n", u"a"_s);
        add("an unfinished code", "Exec=a\\x\n", u"a"_s);
        add("a code beyond all letters", "Exec=a\\x123456789abcdef0041\n", u"aA"_s);
        add("an unfinished quotation", "Exec=a, \"b, c\n", u"a b, c"_s);
        add("a long command", "Exec=" + QByteArray(10'000, 'x') + "\n",
            QString(100, u'x') + u'…' + QString(99, u'x'));
        add("a D-Bus action", "path=/a\nmethod=open\nComment=Open it\n", u"Open it"_s);
        add("one without a comment", "path=/a\nmethod=open\nComment=\n", u"/a/open"_s);
        add("one without a method", "path=/a/show\n", u"/a/show"_s);
        add("an empty command", "Exec=\n", u"none"_s);
    }
    void namesTheActionsInAFileOfLxqt()
    {
        QFETCH(const QByteArray, settings);
        QFETCH(const QString, name);
        const QByteArray another = "[Meta%2BL.7]\nExec=another\nComment=Another\nmethod=m\n";
        write(userFile(), another + "[Meta%2BK.1]\n" + settings + another);
        LxqtKeys source;
        source.start();
        QTRY_VERIFY(has(source, superL));
        QCOMPARE(actions(source, superK), QStringList{name});
    }

    void keepsActionsOfTheSameKeysOfLxqtInOrder()
    {
        write(userFile(), "[Meta%2BK.1]\nExec=second\n[Meta%2BK.2]\nExec=first\n");
        LxqtKeys source;
        source.start();
        QTRY_COMPARE(actions(source, superK), (QStringList{u"second"_s, u"first"_s}));
    }

    void readsAFileAsTheServiceOfLxqtDoes_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("isInForce");
        const auto add = [](const char *row, bool isInForce, const QByteArray &text) {
            QTest::newRow(row) << text << isInForce;
        };
        add("a shortcut for a command", true, "[Meta%2BK.1]\nEnabled=true\nExec=true\n");
        add("one for a method of a program", true, "[Meta%2BK.1]\nEnabled=true\npath=/a\n");
        add("one for nothing", false, "[Meta%2BK.1]\nEnabled=true\nComment=Nothing\n");
        add("one that is switched off", false, "[Meta%2BK.1]\nEnabled=false\nExec=true\n");
        add("off in large letters", false, "[Meta%2BK.1]\nEnabled=FALSE\nExec=true\n");
        add("off by a number", false, "[Meta%2BK.1]\nExec=true\nEnabled=0\n");
        add("off by saying nothing", false, "[Meta%2BK.1]\nExec=true\nEnabled=\n");
        add("on by any other word", true, "[Meta%2BK.1]\nExec=true\nEnabled=maybe\n");
        add("on for want of a word", true, "[Meta%2BK.1]\nExec=true\n");
        add("one without a number", true, "[Meta%2BK]\nExec=true\n");
        add("one with a plain sign", true, "[Meta+K.1]\nExec=true\n");
        add("blanks", true, "  [Meta%2BK.1]\n  Enabled = true\n Exec = true\n");
        add("other line ends", true, "[Meta%2BK.1]\r\nEnabled=true\r\nExec=true\r\n");
        add("no last line end", true, "[Meta%2BK.1]\nExec=true");
        add("one that is commented out", false, ";[Meta%2BK.1]\nExec=true\n");
        add("an unknown shortcut", false, "[Super%2BK.1]\nExec=true\n");
    }
    void readsAFileAsTheServiceOfLxqtDoes()
    {
        QFETCH(const QByteArray, text);
        QFETCH(const bool, isInForce);
        const QByteArray another = "[Meta%2BL.7]\nExec=true\n";
        write(userFile(), another + text);
        LxqtKeys source;
        source.start();
        QVERIFY2(!source.keys(), "the start does not wait for the file");
        QTRY_VERIFY(has(source, superL));
        QCOMPARE(has(source, superK), isInForce);
    }

    void takesNoShortcutsOfLxqtThatCallUs()
    {
        write(userFile(),
              "[Meta%2BL.7]\nExec=true\n[Meta%2BK.1]\nExec=gapplication, action, "
              "org.corvane.Corvane, fire, 'X'\n");
        LxqtKeys source;
        source.start();
        QTRY_VERIFY(has(source, superL));
        QVERIFY(!has(source, superK));
    }

    void followsTheFileOfLxqtThroughAllItsChanges()
    {
        qputenv("XDG_CONFIG_DIRS", m_home->filePath(u"system"_s).toLocal8Bit());
        const QByteArray withK = "[Meta%2BK.1]\nExec=true\n";
        const QByteArray withL = "[Meta%2BL.1]\nExec=true\n";
        LxqtKeys source;
        source.start();
        QCoreApplication::processEvents();
        QVERIFY(!source.keys());

        write(systemFile(), withK);
        QTRY_VERIFY_WITH_TIMEOUT(has(source, superK), soon);
        write(userFile(), withL);
        QTRY_VERIFY_WITH_TIMEOUT(has(source, superL) && !has(source, superK), soon);
        write(userFile(), withK);
        QTRY_VERIFY_WITH_TIMEOUT(has(source, superK) && !has(source, superL), soon);
        // Another program still reads the one that is replaced.
        QFile reader(userFile());
        QVERIFY(reader.open(QIODevice::ReadOnly));
        write(userFile() + u".new"_s, withL);
        QCOMPARE(std::rename(qPrintable(userFile() + u".new"_s), qPrintable(userFile())), 0);
        QTRY_VERIFY_WITH_TIMEOUT(has(source, superL) && !has(source, superK), soon);
        write(userFile(), QByteArray());
        QTRY_VERIFY_WITH_TIMEOUT(source.keys() && hasNothing(source), soon);
        QVERIFY(QFile::remove(userFile()));
        QTRY_VERIFY_WITH_TIMEOUT(has(source, superK), soon);
        QVERIFY(QDir(m_home->filePath(u"system"_s)).removeRecursively());
        QTRY_VERIFY_WITH_TIMEOUT(!source.keys(), soon);
        QVERIFY(QDir(m_home->filePath(u"user"_s)).removeRecursively());
        write(userFile(), withL);
        QTRY_VERIFY_WITH_TIMEOUT(has(source, superL), soon);
    }

    void passesOverWhatIsNoFileOfLxqt_data()
    {
        using Making = std::function<void(const QString &path)>;
        QTest::addColumn<Making>("make");
        const auto add = [](const char *row, const Making &make) { QTest::newRow(row) << make; };
        // As Debian has one.
        add("a folder", [](const QString &path) { QVERIFY(QDir().mkpath(path + u"/x"_s)); });
        add("a pipe", [](const QString &path) {
            QDir().mkpath(QFileInfo(path).path());
            QCOMPARE(mkfifo(qPrintable(path), 0600), 0);
        });
        add("a link to nowhere", [](const QString &path) {
            QDir().mkpath(QFileInfo(path).path());
            QVERIFY(QFile::link(u"/no/such/file"_s, path));
        });
    }
    void passesOverWhatIsNoFileOfLxqt()
    {
        QFETCH(const std::function<void(const QString &path)>, make);
        qputenv("XDG_CONFIG_DIRS", m_home->filePath(u"system"_s).toLocal8Bit());
        make(userFile());
        write(systemFile(), "[Meta%2BK.1]\nExec=true\n");
        LxqtKeys source;
        source.start();
        QTRY_VERIFY(has(source, superK));
    }

    void outlivesBrokenFilesOfLxqt_data()
    {
        QTest::addColumn<QByteArray>("text");
        QRandomGenerator random(1);
        QByteArray noise(500'000, ' ');
        random.generate(reinterpret_cast<quint32 *>(noise.begin()),
                        reinterpret_cast<quint32 *>(noise.end()));
        QTest::newRow("noise") << noise;
        QTest::newRow("a file without an end") << QByteArray(50'000'000, '[');
        QTest::newRow("signs") << QByteArray("[]\n=\n[\n]\n[%]\n[%zz.]\n[.1]\nEnabled\nExec=\n");
        QTest::newRow("objects of Qt")
            << QByteArray("[Meta%2BL.1]\nExec=\"@Variant(\\0\\0\\0\\v\\xff"
                          "\\xff\\xff\\xff)\"\nEnabled=false\n");
    }
    void outlivesBrokenFilesOfLxqt()
    {
        QFETCH(const QByteArray, text);
        write(userFile(), text);
        LxqtKeys source;
        source.start();
        QElapsedTimer timer;
        timer.start();
        QCoreApplication::processEvents();
        QVERIFY(timer.elapsed() < noWait);
        QVERIFY(hasNothing(source));
        write(userFile(), "[Meta%2BK.1]\nExec=true\n");
        QTRY_VERIFY_WITH_TIMEOUT(has(source, superK), soon);
    }
};

QTEST_GUILESS_MAIN(ShortcutSourcesTest)
#include "ShortcutSourcesTest.moc"
