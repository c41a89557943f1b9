// Calls objects of the test's own process over the session bus, as another program would.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QStringList>

class DBusClient : public QObject
{
    Q_OBJECT

public:
    /// Of what the session bus's shared connection has at that path.
    DBusClient(QString path, QString interface);
    ~DBusClient() override;

    /// Calls a method, while the event loop runs on, and waits for the answer: its values as one
    /// text, or the name of the error.
    QString call(const QString &method, const QVariantList &arguments = {});

    /// The same for a method of another interface.
    QString call(const QString &interface, const QString &method, const QVariantList &arguments);

    /// The signals of the interface so far, each with its values as one text.
    QStringList signalsSoFar() const { return m_signals; }

private Q_SLOTS:
    void note(const QDBusMessage &signal);

private:
    QString m_path;
    QString m_interface;
    QDBusConnection m_connection;
    QStringList m_signals;
};
