#include "support/DBusClient.h"

#include "support/DBusText.h"

#include <QDBusPendingCall>
#include <QTest>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace
{
QString valuesOf(const QDBusMessage &message)
{
    QStringList texts;
    for (const QVariant &value : message.arguments())
        texts << dbusText(value);
    return texts.join(u" | "_s);
}
} // namespace

DBusClient::DBusClient(QString path, QString interface)
    : m_path(std::move(path))
    , m_interface(std::move(interface))
    , m_connection(QDBusConnection::connectToBus(QDBusConnection::SessionBus,
                                                 QUuid::createUuid().toString()))
{
    m_connection.connect(QDBusConnection::sessionBus().baseService(), m_path, m_interface, {}, this,
                         SLOT(note(QDBusMessage)));
}

DBusClient::~DBusClient()
{
    QDBusConnection::disconnectFromBus(m_connection.name());
}

QString DBusClient::call(const QString &method, const QVariantList &arguments)
{
    return call(m_interface, method, arguments);
}

QString DBusClient::call(const QString &interface, const QString &method,
                         const QVariantList &arguments)
{
    auto message = QDBusMessage::createMethodCall(QDBusConnection::sessionBus().baseService(),
                                                  m_path, interface, method);
    message.setArguments(arguments);
    const QDBusPendingCall answer = m_connection.asyncCall(message);
    [&answer] { QTRY_VERIFY(answer.isFinished()); }();
    return answer.isError() ? answer.error().name() : valuesOf(answer.reply());
}

void DBusClient::note(const QDBusMessage &signal)
{
    m_signals << signal.member() + u" | "_s + valuesOf(signal);
}
