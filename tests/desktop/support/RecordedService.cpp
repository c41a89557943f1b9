#include "support/RecordedService.h"

#include "support/DBusText.h"

#include <QUuid>

using namespace Qt::StringLiterals;

RecordedService::RecordedService(const QString &busAddress, const QString &name, Answer answer)
    : m_connectionName(QUuid::createUuid().toString())
    , m_answer(std::move(answer))
{
    auto connection = QDBusConnection::connectToBus(busAddress, m_connectionName);
    if (!connection.registerVirtualObject(u"/"_s, this, QDBusConnection::SubPath)
        || !connection.registerService(name))
        qFatal("cannot be %s: %s", qPrintable(name), qPrintable(connection.lastError().message()));
}

RecordedService::~RecordedService()
{
    die();
}

RecordedService::Answer RecordedService::reply(const QVariantList &values)
{
    return [values](const QDBusMessage &message, const QDBusConnection &connection) {
        return connection.send(message.createReply(values));
    };
}

QStringList RecordedService::calls(const QString &method) const
{
    QStringList found;
    for (const QDBusMessage &message : m_messages) {
        if (message.member() != method)
            continue;
        QStringList texts{message.path()};
        for (const QVariant &argument : message.arguments())
            texts << dbusText(argument);
        found << texts.join(u" | "_s);
    }
    return found;
}

void RecordedService::emitSignal(const QString &path, const QString &interface, const QString &name,
                                 const QVariantList &values) const
{
    auto signal = QDBusMessage::createSignal(path, interface, name);
    signal.setArguments(values);
    QDBusConnection(m_connectionName).send(signal);
}

void RecordedService::die()
{
    QDBusConnection::disconnectFromBus(m_connectionName);
}

bool RecordedService::handleMessage(const QDBusMessage &message, const QDBusConnection &connection)
{
    m_messages << message;
    return m_answer(message, connection);
}
