// The program on the session bus, as the desktop's other programs reach it: its name, of which
// there is one, and the interface org.freedesktop.Application.
#pragma once

#include "platform/linux/base/StartupTokens.h"
#include "platform/linux/instance/InstanceClaim.h"

#include <QDBusContext>
#include <QDeadlineTimer>
#include <QObject>
#include <QUuid>
#include <QVariantMap>
#include <functional>

class DBusApplication : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// To be set before the event loop runs, which answers also the calls that came before.
    std::function<void(const StartupTokens &)> activate;
    /// Tells whether there is an entry with that id.
    std::function<bool(const QUuid &, const StartupTokens &)> fire;

    /// Claims the name; waits for another instance that has it to take over our tokens. Without a
    /// bus there is no other; one that comes or goes later changes nothing. Needs no QApplication
    /// yet.
    InstanceClaim claim(const StartupTokens &tokens, const QDeadlineTimer &deadline);

    /// Hands our tokens over to the instance that has the name. False if there is none, or no
    /// answer until the deadline.
    static bool activateOther(const StartupTokens &tokens, const QDeadlineTimer &deadline);

public Q_SLOTS:
    // The interface; the bus knows them by these names.
    void Activate(const QVariantMap &platformData);
    void ActivateAction(const QString &name, const QVariantList &parameters,
                        const QVariantMap &platformData);

private:
    void refuse(const QString &reason) const;
};
