// The keyboard shortcuts of a desktop whose service on the session bus stores them.
#pragma once

#include "platform/linux/base/DBusCall.h"
#include "platform/linux/desktopkeys/DesktopKeys.h"

#include <QDBusMessage>
#include <QTimer>
#include <QVariantList>
#include <memory>

/// Follows services that appear, disappear and are replaced at any time. No service is started for
/// it.
class DBusDesktopKeys : public DesktopKeys
{
    Q_OBJECT

public:
    void start() override;

public Q_SLOTS:
    /// Schedules a new reading; requests made until then share it. The former answers remain valid
    /// meanwhile.
    void refresh() override;

protected:
    explicit DBusDesktopKeys(QString service);

    /// Refreshes whenever the signal arrives with these first arguments.
    void refreshOn(const QString &path, const QString &interface, const QString &signal,
                   const QStringList &arguments = {});

    /// Requests all shortcuts and stores them once answered.
    virtual void read() = 0;

    /// Calls a method. The answer, which may be an error, is dropped if another reading has begun.
    void ask(const QString &path, const QString &interface, const QString &method,
             const QVariantList &arguments, const DBusAnswerHandler &handler);

private:
    void beginReading();

    QString m_service;
    QTimer m_pause;
    /// Owns the pending calls of this reading.
    std::unique_ptr<QObject> m_reading;
};
