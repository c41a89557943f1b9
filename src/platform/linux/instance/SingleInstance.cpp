#include "platform/linux/instance/SingleInstance.h"

#include "platform/linux/UserActivation.h"
#include "platform/linux/x11/StartupNotification.h"

InstanceClaim SingleInstance::claim(const StartupTokens &tokens)
{
    const InstanceClaim onBus = m_bus.claim(tokens);
    if (onBus != InstanceClaim::impossible)
        return onBus;
    const InstanceClaim byLock = m_lock.claim(instanceLockPaths(), tokens);
    m_isLocked = byLock == InstanceClaim::first;
    return byLock;
}

void SingleInstance::attachToEventLoop(UserActivation &activation, const InstanceHandlers &handlers)
{
    m_bus.activate = [&activation, activate = handlers.activate](const StartupTokens &tokens) {
        activation.handedOver(tokens);
        activate();
        StartupNotification::finish(tokens.startupId);
    };
    m_bus.fire = [&activation, fire = handlers.fire](const QUuid &id, const StartupTokens &tokens) {
        activation.handedOver(tokens);
        const bool isKnown = fire(id);
        StartupNotification::finish(tokens.startupId);
        return isKnown;
    };
    if (m_isLocked)
        m_lock.attachToEventLoop(m_bus.activate);
}
