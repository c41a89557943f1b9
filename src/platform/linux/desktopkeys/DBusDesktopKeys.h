// The keyboard shortcuts of a desktop that has a service on the session bus keep them.
#pragma once

#include "platform/linux/base/DBusCall.h"
#include "platform/linux/desktopkeys/DesktopKeys.h"

#include <QDBusMessage>
#include <QTimer>
#include <QVariantList>
#include <memory>

/// Of services that come, go and are replaced at any time; none is started for it.
class DBusDesktopKeys : public DesktopKeys
{
    Q_OBJECT

public:
    void start() override;

public Q_SLOTS:
    /// Reads anew, soon, and once for all that ask meanwhile; what was heard holds until then.
    void refresh() override;

protected:
    explicit DBusDesktopKeys(QString service);

    /// Refreshes whenever the signal comes with these first arguments.
    void refreshOn(const QString &path, const QString &interface, const QString &signal,
                   const QStringList &arguments = {});

    /// Asks for all that there is, and takes it when it has been answered.
    virtual void read() = 0;

    /// Calls a method. Its answer, which may be an error, is dropped if another reading has begun.
    void ask(const QString &path, const QString &interface, const QString &method,
             const QVariantList &arguments, const DBusAnswerHandler &handler);

private:
    void beginReading();

    QString m_service;
    QTimer m_pause;
    /// Owns the questions of this reading.
    std::unique_ptr<QObject> m_reading;
};
