// Sees to it that the program runs once for a list and in a session, and hears what other programs
// ask of it.
#pragma once

#include "platform/linux/base/StartupTokens.h"
#include "platform/linux/instance/DBusApplication.h"
#include "platform/linux/instance/InstanceClaim.h"
#include "platform/linux/instance/InstanceLock.h"

#include <QString>
#include <QTimer>
#include <QUuid>
#include <functional>

struct UserActivation;

struct InstanceHandlers {
    /// The program was started once more, or activated: called once for all that came together.
    std::function<void()> activate;
    /// Does what the key press of that entry does; tells whether there is such an entry.
    std::function<bool(const QUuid &)> fire;
};

/// There is one in a program.
class SingleInstance
{
public:
    /// The lock file belongs beside the list.
    explicit SingleInstance(const QString &lockFile);

    /// Claims the one place for the program, for the session's display; waits for another instance
    /// that has it to take over our tokens. To be called once, before the program touches the bus
    /// or anything that two instances must not share. Needs no QApplication yet.
    InstanceClaim claim(const StartupTokens &tokens);

    /// Calls the handlers from the event loop, also for what was asked since the claim, and notes
    /// before each on whose behalf it is. To be called once, when QApplication exists.
    void attachToEventLoop(UserActivation &activation, const InstanceHandlers &handlers);

    /// Another start has asked by a signal for the window.
    void handleSignal();

private:
    void queueActivation(const StartupTokens &tokens);

    DBusApplication m_bus;
    InstanceLock m_lock;
    StartupTokens m_latestTokens;
    /// Runs out once the calls that have come together are all taken in.
    QTimer m_activation;
};
