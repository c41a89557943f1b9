#include "platform/linux/base/DBusObject.h"

#include <QDBusConnection>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

DBusObject::DBusObject(QString path, QString interface, QString introspection)
    : m_path(std::move(path))
    , m_interface(std::move(interface))
    , m_introspection(std::move(introspection))
{
}

void DBusObject::publish()
{
    QDBusConnection::sessionBus().registerVirtualObject(m_path, this);
}

QString DBusObject::introspect(const QString &) const
{
    return m_introspection;
}

bool DBusObject::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    QDBusMessage reply;
    if (message.interface() == u"org.freedesktop.DBus.Properties")
        reply = answerForProperties(message);
    else if (message.interface() == m_interface || message.interface().isEmpty())
        reply = answer(message);
    else
        return false;
    if (message.isReplyRequired())
        connection.send(reply);
    return true;
}

QDBusMessage DBusObject::answerForProperties(const QDBusMessage &call) const
{
    const QString interface = call.arguments().value(0).toString();
    const QString name = call.arguments().value(1).toString();
    // An empty name asks for any interface that has the property.
    if (!interface.isEmpty() && interface != m_interface)
        return call.createErrorReply(QDBusError::UnknownInterface,
                                     u"There is no interface "_s + interface);
    const QVariantMap values = properties();
    if (call.member() == u"GetAll")
        return call.createReply(values);
    if (!values.contains(name))
        return call.createErrorReply(QDBusError::UnknownProperty,
                                     u"There is no property "_s + name);
    if (call.member() == u"Set")
        return call.createErrorReply(QDBusError::PropertyReadOnly, name + u" cannot be changed"_s);
    return call.createReply(QVariant::fromValue(QDBusVariant(values.value(name))));
}

void DBusObject::emitSignal(const QString &name, const QVariantList &arguments) const
{
    auto signal = QDBusMessage::createSignal(m_path, m_interface, name);
    signal.setArguments(arguments);
    QDBusConnection::sessionBus().send(signal);
}

QDBusMessage DBusObject::unknownMethod(const QDBusMessage &call)
{
    return call.createErrorReply(
        QDBusError::UnknownMethod,
        u"There is no method %1(%2)"_s.arg(call.member(), call.signature()));
}
