// The program's presence on the session bus: its name, which only one instance can own, and the
// interface org.freedesktop.Application.
#pragma once

#include "platform/linux/base/StartupTokens.h"

#include <QDBusContext>
#include <QDeadlineTimer>
#include <QObject>
#include <QUuid>
#include <QVariantMap>
#include <functional>

/// The result of the attempt to become the only instance.
enum class InstanceClaim {
    /// We are the only instance, until the program exits, however it does.
    first,
    /// Another instance is running and has taken over the request that we were started for.
    handedOver,
    /// Another instance is running and does not answer.
    unanswered,
    /// Another instance is running in another session of the user.
    elsewhere,
};

class DBusApplication : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// Must be set before the event loop runs, which also answers the calls that came earlier.
    std::function<void(const StartupTokens &)> activate;
    /// Returns whether there is an entry with that id.
    std::function<bool(const QUuid &, const StartupTokens &)> fire;

    /// Claims the name. If another instance owns it, waits for that one to take over our tokens.
    /// Without a bus there is no other instance; a bus that comes or goes later changes nothing.
    /// Needs no QApplication yet.
    InstanceClaim claim(const StartupTokens &tokens, const QDeadlineTimer &deadline);

    /// Hands our tokens over to the instance that owns the name. False if there is none, or if it
    /// does not answer before the deadline.
    static bool activateOther(const StartupTokens &tokens, const QDeadlineTimer &deadline);

public Q_SLOTS:
    // The methods of the interface; the names are those on the bus.
    void Activate(const QVariantMap &platformData);
    void ActivateAction(const QString &name, const QVariantList &parameters,
                        const QVariantMap &platformData);

private:
    void refuse(const QString &reason) const;
};
