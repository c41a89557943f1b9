// A service on a session bus that records what it is asked, and answers as it is told to.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QList>
#include <QString>
#include <functional>

class RecordedService : public QDBusVirtualObject
{
public:
    /// What it does with a call: true if it has dealt with it.
    using Answer = std::function<bool(const QDBusMessage &, const QDBusConnection &)>;

    /// Owns the name on that bus, with a connection of its own.
    RecordedService(const QString &busAddress, const QString &name, Answer answer);
    ~RecordedService() override;

    /// Answers each call of a method with these values.
    static Answer reply(const QVariantList &values);
    static bool silence(const QDBusMessage &, const QDBusConnection &) { return true; }
    /// It leaves the bus in place of an answer.
    static bool death(const QDBusMessage &, const QDBusConnection &connection)
    {
        QDBusConnection::disconnectFromBus(connection.name());
        return true;
    }

    /// The calls of a method, each as one text: object path and arguments.
    QStringList calls(const QString &method) const;

    void emitSignal(const QString &path, const QString &interface, const QString &name,
                    const QVariantList &values) const;

    /// Leaves the bus at once.
    void die();

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

private:
    QString m_connectionName;
    Answer m_answer;
    QList<QDBusMessage> m_messages;
};
