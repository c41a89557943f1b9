// Sees to it that the program runs once in a session, and hears what other programs ask of it.
#pragma once

#include "platform/linux/instance/DBusApplication.h"
#include "platform/linux/instance/InstanceClaim.h"
#include "platform/linux/instance/InstanceLock.h"

#include <QUuid>
#include <functional>

struct UserActivation;

struct InstanceHandlers {
    /// The program was started once more, or activated.
    std::function<void()> activate;
    /// Does what the key press of that entry does; tells whether there is such an entry.
    std::function<bool(const QUuid &)> fire;
};

/// There is one in a program.
class SingleInstance
{
public:
    /// Claims the session's one place; waits for another instance that has it to take over our
    /// tokens. To be called once, before the program touches anything that two instances must not
    /// share. Needs no QApplication yet.
    InstanceClaim claim(const StartupTokens &tokens);

    /// Calls the handlers from the event loop, also for what was asked since the claim, and notes
    /// before each on whose behalf it is. To be called once, when QApplication exists.
    void attachToEventLoop(UserActivation &activation, const InstanceHandlers &handlers);

private:
    DBusApplication m_bus;
    InstanceLock m_lock;
    bool m_isLocked = false;
};
