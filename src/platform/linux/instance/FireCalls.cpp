#include "platform/linux/instance/FireCalls.h"

#include "platform/linux/activation/StartupNotification.h"
#include "platform/linux/activation/UserActivation.h"

#include <algorithm>

namespace
{
RepeatFilter::Time now()
{
    return std::chrono::duration_cast<RepeatFilter::Time>(
        std::chrono::steady_clock::now().time_since_epoch());
}
} // namespace

FireCalls::FireCalls(UserActivation &activation, const InstanceHandlers &handlers)
    : m_activation(activation)
    , m_handlers(handlers)
{
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    // Queued, so that calls which have arrived by then are heard first.
    m_timer.callOnTimeout(
        &m_timer, [this] { wakeUp(); }, Qt::QueuedConnection);
}

bool FireCalls::take(const QUuid &id, const StartupTokens &tokens)
{
    const bool isKnown = m_handlers.isKnown(id);
    if (isKnown)
        hit(id, tokens);
    else
        StartupNotification::finish(tokens.startupId);
    return isKnown;
}

void FireCalls::hit(const QUuid &id, const StartupTokens &tokens)
{
    const auto kind = m_filter.hit(id, now(), m_handlers.keyRepeat());
    StartupNotification::finish(m_undecided.take(id).startupId);
    // The filter hears of hits during a recording too: keys that are still held afterwards repeat.
    if (kind == RepeatFilter::Hit::repeat || m_handlers.isRecording())
        StartupNotification::finish(tokens.startupId);
    else if (kind == RepeatFilter::Hit::press)
        run(id, tokens);
    else
        m_undecided.insert(id, tokens);
    scheduleWakeUp();
}

void FireCalls::wakeUp()
{
    for (const QUuid &id : m_filter.wakeUp(now())) {
        // Nothing is kept of a hit during a recording.
        if (m_undecided.contains(id))
            run(id, m_undecided.take(id));
    }
    scheduleWakeUp();
}

void FireCalls::scheduleWakeUp()
{
    if (const auto next = m_filter.nextWakeUp())
        m_timer.start(std::max(RepeatFilter::Time::zero(), *next - now()));
    else
        m_timer.stop();
}

void FireCalls::run(const QUuid &id, const StartupTokens &tokens)
{
    m_activation.accept(tokens);
    m_handlers.fire(id);
    StartupNotification::finish(tokens.startupId);
}
