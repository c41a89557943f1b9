// Makes sure that the program runs once per list and session, and receives requests of other
// programs.
#pragma once

#include "platform/linux/base/StartupTokens.h"
#include "platform/linux/instance/DBusApplication.h"
#include "platform/linux/instance/FireCalls.h"
#include "platform/linux/instance/InstanceHandlers.h"
#include "platform/linux/instance/InstanceLock.h"

#include <QString>
#include <QTimer>
#include <optional>

struct UserActivation;

/// Only one instance of the class may exist.
class SingleInstance
{
public:
    /// The lock file must lie beside the list.
    explicit SingleInstance(const QString &lockFile);

    /// Claims to be the only instance for the session's display. If another one is running, waits
    /// for it to take over our tokens. To be called once, before the program touches the bus or
    /// anything that two instances must not share. Needs no QApplication yet.
    InstanceClaim claim(const StartupTokens &tokens);

    /// Calls the handlers from the event loop, also for requests since the claim, and records the
    /// user's action before each call. To be called once, when QApplication exists.
    void attachToEventLoop(UserActivation &activation, const InstanceHandlers &handlers);

    /// Handles the signal by which another start asks for the window.
    void handleSignal();

private:
    void queueActivation(const StartupTokens &tokens);

    DBusApplication m_bus;
    InstanceLock m_lock;
    StartupTokens m_latestTokens;
    /// Fires once all calls that came together have been received.
    QTimer m_activation;
    std::optional<FireCalls> m_fireCalls;
};
