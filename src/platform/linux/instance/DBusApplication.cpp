#include "platform/linux/instance/DBusApplication.h"

#include "foundation/Text.h"
#include "foundation/Uuid.h"
#include "platform/linux/base/ApplicationId.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <chrono>

using namespace Qt::StringLiterals;

namespace
{
const QString objectPath = u"/org/corvane/Corvane"_s;
/// A working bus answers in less than a millisecond, and hot keys must be live after 3 s.
constexpr std::chrono::seconds maxWaitForBus(2);

QDBusError errorOfActivating(const StartupTokens &tokens, const QDeadlineTimer &deadline)
{
    auto call = QDBusMessage::createMethodCall(applicationId, objectPath,
                                               u"org.freedesktop.Application"_s, u"Activate"_s);
    call << tokens.toPlatformData();
    // If the other instance has gone, we take its place; no service must be started instead.
    call.setAutoStartService(false);
    const int timeout = qMax(1, int(deadline.remainingTime()));
    return {QDBusConnection::sessionBus().call(call, QDBus::Block, timeout)};
}

/// Whether the called instance is absent, or exited before it answered. A timeout gives the same
/// error.
bool mayHaveGone(const QDBusError &error)
{
    return error.type() == QDBusError::NoReply || error.type() == QDBusError::ServiceUnknown
        || error.name() == u"org.freedesktop.DBus.Error.NameHasNoOwner";
}
} // namespace

InstanceClaim DBusApplication::claim(const StartupTokens &tokens, const QDeadlineTimer &deadline)
{
    auto bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return InstanceClaim::first;
    // Qt also uses this interface when it looks for assistive programs, and would wait for 25 s if
    // the bus has stopped meanwhile.
    bus.interface()->setTimeout(int(std::chrono::milliseconds(maxWaitForBus).count()));
    // Register the object first: clients that find the name expect it.
    if (!bus.registerObject(objectPath, this, QDBusConnection::ExportAllSlots))
        return InstanceClaim::first;
    do {
        const auto request = bus.interface()->registerService(applicationId);
        if (!request.isValid() || request == QDBusConnectionInterface::ServiceRegistered)
            return InstanceClaim::first;
        const QDBusError error = errorOfActivating(tokens, deadline);
        if (!error.isValid())
            return InstanceClaim::handedOver;
        if (!mayHaveGone(error))
            return InstanceClaim::unanswered;
    } while (!deadline.hasExpired());
    return InstanceClaim::unanswered;
}

bool DBusApplication::activateOther(const StartupTokens &tokens, const QDeadlineTimer &deadline)
{
    return !errorOfActivating(tokens, deadline).isValid();
}

void DBusApplication::Activate(const QVariantMap &platformData)
{
    activate(StartupTokens::fromPlatformData(platformData));
}

void DBusApplication::ActivateAction(const QString &name, const QVariantList &parameters,
                                     const QVariantMap &platformData)
{
    if (name != u"fire") {
        refuse(u"There is no action %1."_s.arg(quoted(name)));
        return;
    }
    if (parameters.size() != 1
        || parameters.constFirst().metaType() != QMetaType::fromType<QString>()) {
        refuse(u"The action takes one text, the id of an entry."_s);
        return;
    }
    const QString text = parameters.constFirst().toString();
    const auto id = uuidFromText(text);
    if (!id || !fire(*id, StartupTokens::fromPlatformData(platformData)))
        refuse(u"There is no entry with the id %1."_s.arg(quoted(text)));
}

void DBusApplication::refuse(const QString &reason) const
{
    sendErrorReply(QDBusError::InvalidArgs, reason);
}
