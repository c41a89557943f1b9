#include "platform/linux/hotkeys/DBusKGlobalAccel.h"

#include "platform/linux/base/ApplicationId.h"
#include "platform/linux/base/DBusStructure.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusPendingCall>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDeadlineTimer>
#include <chrono>
#include <memory>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
/// The form of keys in calls: up to four presses that follow each other. Ours are one press.
struct PlasmaKeySequence {
    int code = 0;
};

QDBusArgument &operator<<(QDBusArgument &argument, const PlasmaKeySequence &sequence)
{
    return writeStructure(argument, QList<int>{sequence.code, 0, 0, 0});
}

const QDBusArgument &operator>>(const QDBusArgument &argument, PlasmaKeySequence &sequence)
{
    QList<int> presses;
    readStructure(argument, presses);
    sequence.code = presses.value(0);
    return argument;
}

const QString shortcutsService = u"org.kde.kglobalaccel"_s;
const QString shortcutsPath = u"/kglobalaccel"_s;
const QString shortcutsInterface = u"org.kde.KGlobalAccel"_s;
const QString componentInterface = u"org.kde.kglobalaccel.Component"_s;
/// What users read in System Settings.
const QString componentTitle = u"Corvane"_s;

/// SetPresent and NoAutoloading: without the latter, the service would keep the keys that it had.
constexpr uint presentAndNotAutoloaded = 2 | 4;

/// A service owns its name before it can answer.
constexpr auto settlingTime = 50ms;
/// All ends of the program together may take 250 ms.
constexpr auto patienceAtTheEnd = 200ms;

/// The object of the component: its name with every other character replaced.
QString componentPath()
{
    return u"/component/"_s + QString(applicationId).replace(u'.', u'_');
}

QStringList actionId(const QString &name, const QString &title = {})
{
    return {applicationId, name, componentTitle, title};
}

/// The codes of an argument that holds key sequences; those that are empty are left out.
QList<int> codesOf(const QVariant &argument)
{
    QList<int> codes;
    for (const auto &sequence : qdbus_cast<QList<PlasmaKeySequence>>(argument)) {
        if (sequence.code != 0)
            codes << sequence.code;
    }
    return codes;
}

QDBusMessage methodCall(const QString &method, const QVariantList &arguments)
{
    auto message =
        QDBusMessage::createMethodCall(shortcutsService, shortcutsPath, shortcutsInterface, method);
    message.setAutoStartService(false);
    message.setArguments(arguments);
    return message;
}

/// The names in the answer to allShortcutInfos.
QStringList namesIn(const QDBusMessage &shortcuts)
{
    QStringList names;
    if (shortcuts.signature() != u"a(ssssssaiai)")
        return names;
    const auto list = shortcuts.arguments().constFirst().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString name;
        list.beginStructure();
        list >> name;
        list.endStructure();
        names << name;
    }
    return names;
}

bool isAbsence(const QDBusMessage &answer)
{
    return answer.errorName() == u"org.freedesktop.DBus.Error.ServiceUnknown"
        || answer.errorName() == u"org.freedesktop.DBus.Error.NameHasNoOwner"
        || answer.errorName() == u"org.freedesktop.DBus.Error.Disconnected";
}
} // namespace

void DBusKGlobalAccel::start()
{
    qDBusRegisterMetaType<PlasmaKeySequence>();
    qDBusRegisterMetaType<QList<PlasmaKeySequence>>();
    m_settling.setInterval(settlingTime);
    m_settling.setSingleShot(true);
    connect(&m_settling, &QTimer::timeout, this, &KGlobalAccel::appeared);

    auto bus = QDBusConnection::sessionBus();
    auto *const owner = new QDBusServiceWatcher(shortcutsService, bus,
                                                QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owner, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &newOwner) {
                m_settling.stop();
                Q_EMIT gone();
                if (!newOwner.isEmpty())
                    m_settling.start();
            });
    // Accepts any sender: given a name, Qt would block to ask the bus for its owner. From Plasma
    // 6.5 on, repeats have a signal of their own, which is of no use here (not tried;
    // KGlobalAccel's release notes).
    bus.connect(QString(), componentPath(), componentInterface, u"globalShortcutPressed"_s, this,
                SLOT(takePress(QString, QString)));
    bus.connect(QString(), componentPath(), componentInterface, u"globalShortcutReleased"_s, this,
                SLOT(takeRelease(QString, QString)));
    bus.connect(QString(), shortcutsPath, shortcutsInterface, u"yourShortcutsChanged"_s, this,
                SLOT(takeChange(QDBusMessage)));
    Q_EMIT appeared();
}

void DBusKGlobalAccel::takePress(const QString &component, const QString &action)
{
    if (component == applicationId)
        Q_EMIT pressed(action);
}

void DBusKGlobalAccel::takeRelease(const QString &component, const QString &action)
{
    if (component == applicationId)
        Q_EMIT released(action);
}

void DBusKGlobalAccel::takeChange(const QDBusMessage &signal)
{
    if (signal.signature() != u"asa(ai)")
        return;
    const QStringList id = signal.arguments().at(0).toStringList();
    if (id.value(0) == applicationId)
        Q_EMIT codesChanged(id.value(1), codesOf(signal.arguments().at(1)));
}

void DBusKGlobalAccel::call(const QString &method, const QVariantList &arguments,
                            const DBusAnswerHandler &handler)
{
    callAsynchronously(methodCall(method, arguments), this, handler);
}

void DBusKGlobalAccel::readActions(NamesHandler handler)
{
    auto question = QDBusMessage::createMethodCall(shortcutsService, componentPath(),
                                                   componentInterface, u"allShortcutInfos"_s);
    question.setAutoStartService(false);
    callAsynchronously(question, this, [handler = std::move(handler)](const QDBusMessage &answer) {
        // Other errors mean that the service does not know the component.
        handler(isAbsence(answer) ? std::nullopt : std::optional(namesIn(answer)));
    });
}

void DBusKGlobalAccel::set(const QString &name, const QString &title, const QList<int> &codes,
                           CodesHandler handler)
{
    struct Answers {
        std::optional<QList<int>> granted;
        QList<int> ours;
    };
    const auto answers = std::make_shared<Answers>();
    QList<PlasmaKeySequence> sequences;
    for (const int code : codes)
        sequences << PlasmaKeySequence{code};
    call(u"doRegister"_s, {actionId(name, title)});
    call(u"setShortcutKeys"_s,
         {actionId(name, title), QVariant::fromValue(sequences), presentAndNotAutoloaded},
         [answers](const QDBusMessage &answer) {
             if (answer.type() == QDBusMessage::ReplyMessage && !answer.arguments().isEmpty())
                 answers->granted = codesOf(answer.arguments().constFirst());
         });
    // Newer services grant the keys to every program that asks, and send presses to one of them
    // (not tried; kglobalacceld's sources of 2026). So ask who has the keys.
    for (const int code : codes) {
        const bool isLast = code == codes.constLast();
        call(u"actionList"_s, {QVariant::fromValue(PlasmaKeySequence{code})},
             [answers, name, code, isLast, handler](const QDBusMessage &answer) {
                 const auto holder = answer.arguments().value(0).toStringList();
                 if (holder.value(0) == applicationId && holder.value(1) == name)
                     answers->ours << code;
                 if (isLast)
                     handler(answers->granted ? std::optional(answers->ours) : std::nullopt);
             });
    }
}

void DBusKGlobalAccel::setTitle(const QString &name, const QString &title)
{
    call(u"doRegister"_s, {actionId(name, title)});
}

void DBusKGlobalAccel::unregister(const QString &name, std::function<void()> handler)
{
    call(u"unregister"_s, {applicationId, name},
         [handler = std::move(handler)](const QDBusMessage &) { handler(); });
}

void DBusKGlobalAccel::unregisterNow(const QStringList &names)
{
    std::optional<QDBusPendingCall> last;
    for (const QString &name : names)
        last = QDBusConnection::sessionBus().asyncCall(
            methodCall(u"unregister"_s, {applicationId, name}), int(patienceAtTheEnd.count()));
    // The service serves the calls in their order.
    if (last)
        last->waitForFinished();
}
