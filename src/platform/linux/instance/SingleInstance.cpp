#include "platform/linux/instance/SingleInstance.h"

#include "platform/linux/activation/StartupNotification.h"
#include "platform/linux/activation/UserActivation.h"
#include "platform/linux/base/Session.h"
#include "platform/linux/base/SessionBus.h"

#include <QDeadlineTimer>
#include <chrono>

namespace
{
/// How long the other instance may take to answer. It may still be starting, which a busy login
/// stretches to seconds; a user who waits longer takes the start for failed.
constexpr std::chrono::seconds patience(5);
} // namespace

SingleInstance::SingleInstance(const QString &lockFile)
    : m_lock(lockFile)
{
    m_activation.setSingleShot(true);
    m_activation.setInterval(0);
}

InstanceClaim SingleInstance::claim(const StartupTokens &tokens)
{
    const QByteArrayList displays = displayNames(QProcessEnvironment::systemEnvironment());
    const QDeadlineTimer deadline(patience);
    avoidHangingSessionBus();
    do {
        switch (m_lock.take(displays)) {
        case InstanceLock::State::ours:
        case InstanceLock::State::impossible:
            return m_bus.claim(tokens, deadline);
        case InstanceLock::State::heldElsewhere:
            return InstanceClaim::elsewhere;
        case InstanceLock::State::heldHere:
            // The signal also reaches an instance that has lost its bus, but carries no tokens.
            if (m_bus.activateOther(tokens, deadline) || m_lock.ask(deadline))
                return InstanceClaim::handedOver;
        }
    } while (!deadline.hasExpired());
    return InstanceClaim::unanswered;
}

void SingleInstance::attachToEventLoop(UserActivation &activation, const InstanceHandlers &handlers)
{
    m_activation.callOnTimeout([this, &activation, activate = handlers.activate] {
        activation.accept(m_latestTokens);
        activate();
        StartupNotification::finish(m_latestTokens.startupId);
        m_latestTokens = {};
    });
    m_bus.activate = [this](const StartupTokens &tokens) { queueActivation(tokens); };
    m_fireCalls.emplace(activation, handlers);
    m_bus.fire = [this](const QUuid &id, const StartupTokens &tokens) {
        return m_fireCalls->take(id, tokens);
    };
}

void SingleInstance::handleSignal()
{
    m_activation.start();
    m_lock.answer();
}

void SingleInstance::queueActivation(const StartupTokens &tokens)
{
    m_activation.start();
    if (tokens == StartupTokens())
        return;
    // A newer start replaces the pending one, so its notification ends here.
    StartupNotification::finish(m_latestTokens.startupId);
    m_latestTokens = tokens;
}
