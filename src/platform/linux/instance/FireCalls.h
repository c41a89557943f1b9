// Runs the entries that other programs ask for, once for each press of their keys.
#pragma once

#include "platform/linux/base/StartupTokens.h"
#include "platform/linux/instance/InstanceHandlers.h"
#include "platform/linux/instance/RepeatFilter.h"

#include <QHash>
#include <QTimer>

struct UserActivation;

class FireCalls
{
public:
    FireCalls(UserActivation &activation, const InstanceHandlers &handlers);

    /// Returns at once whether there is such an entry, even if it runs later or not at all.
    bool take(const QUuid &id, const StartupTokens &tokens);

private:
    void hit(const QUuid &id, const StartupTokens &tokens);
    void wakeUp();
    void scheduleWakeUp();
    void run(const QUuid &id, const StartupTokens &tokens);

    UserActivation &m_activation;
    const InstanceHandlers m_handlers;
    RepeatFilter m_filter;
    /// Those of the undecided hits.
    QHash<QUuid, StartupTokens> m_undecided;
    QTimer m_timer;
};
