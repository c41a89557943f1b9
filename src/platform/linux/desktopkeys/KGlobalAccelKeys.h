// The keyboard shortcuts of Plasma, from the service that holds them all.
#pragma once

#include "platform/linux/desktopkeys/DBusDesktopKeys.h"

/// Hears of a change in Plasma's settings. That a program has brought shortcuts of its own, or has
/// taken them away, is not said by anyone: that takes a refresh.
class KGlobalAccelKeys : public DBusDesktopKeys
{
    Q_OBJECT

public:
    KGlobalAccelKeys();
    void start() override;

private:
    void read() override;
    void readComponents(const QDBusMessage &paths);
    void add(const QDBusMessage &shortcuts);

    /// What this reading has heard, and how many components have not answered yet.
    Accelerators m_found;
    qsizetype m_unanswered = 0;
};
