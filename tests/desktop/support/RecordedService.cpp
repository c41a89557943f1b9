#include "support/RecordedService.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace
{
QString text(const QVariant &value);

/// What is between the brackets of a compound value.
QString content(const QDBusArgument &argument)
{
    QStringList texts;
    while (!argument.atEnd()) {
        if (argument.currentType() == QDBusArgument::MapEntryType) {
            argument.beginMapEntry();
            const QString key = text(argument.asVariant());
            texts << key + u": "_s + text(argument.asVariant());
            argument.endMapEntry();
        } else {
            texts << text(argument.asVariant());
        }
    }
    return texts.join(u", "_s);
}

QString text(const QDBusArgument &argument)
{
    QString inside;
    switch (argument.currentType()) {
    case QDBusArgument::StructureType:
        argument.beginStructure();
        inside = u'(' + content(argument) + u')';
        argument.endStructure();
        break;
    case QDBusArgument::ArrayType:
        argument.beginArray();
        inside = u'[' + content(argument) + u']';
        argument.endArray();
        break;
    case QDBusArgument::MapType:
        argument.beginMap();
        inside = u'{' + content(argument) + u'}';
        argument.endMap();
        break;
    default:
        inside = text(argument.asVariant());
    }
    return inside;
}

QString text(const QVariant &value)
{
    if (value.metaType() == QMetaType::fromType<QDBusVariant>())
        return text(value.value<QDBusVariant>().variant());
    if (value.metaType() == QMetaType::fromType<QDBusArgument>())
        return text(value.value<QDBusArgument>());
    if (value.metaType() == QMetaType::fromType<QStringList>())
        return u'[' + value.toStringList().join(u", "_s) + u']';
    return value.toString();
}
} // namespace

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
            texts << text(argument);
        found << texts.join(u" | "_s);
    }
    return found;
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
