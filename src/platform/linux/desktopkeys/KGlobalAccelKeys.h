// The keyboard shortcuts of Plasma, from the KGlobalAccel service, which holds them all.
#pragma once

#include "platform/linux/desktopkeys/DBusDesktopKeys.h"

/// Follows changes in Plasma's settings. No signal tells that a program has added or removed
/// shortcuts of its own: that takes a refresh.
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

    /// The shortcuts found in this reading, and how many components have not answered yet.
    QList<DesktopKey> m_found;
    qsizetype m_unanswered = 0;
};
