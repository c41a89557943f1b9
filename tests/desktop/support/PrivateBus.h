// A session bus that nobody uses but the test, the program under test and whoever is told of its
// address, whatever user that is.
#pragma once

#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>
#include <sys/types.h>

class PrivateBus
{
public:
    /// The bus starts the program, in that environment, when somebody calls that name, and no other
    /// for any name.
    explicit PrivateBus(
        const QString &activatableName = {}, const QString &program = {},
        const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment());
    ~PrivateBus();
    Q_DISABLE_COPY_MOVE(PrivateBus)

    /// As DBUS_SESSION_BUS_ADDRESS has it.
    QString address() const { return m_address; }

    /// Of the bus's own process.
    pid_t processId() const { return pid_t(m_daemon.processId()); }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
};
