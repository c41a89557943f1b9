// The desktop's wish for light or dark windows, from the settings in its portal.
#pragma once

#include "platform/Appearance.h"

#include <QDBusMessage>
#include <QVariant>
#include <memory>

/// Of portals that come, go and are replaced at any time; none is started for it. What one has said
/// holds until the next answers; one that answers with an error wishes nothing.
class PortalAppearance : public Appearance
{
    Q_OBJECT

public:
    /// Asks the portal that is there, and from now on each that comes.
    void start();

    bool prefersDark() const override { return m_prefersDark; }

private Q_SLOTS:
    void settingChanged(const QDBusMessage &change);

private:
    void read();
    void take(QVariant value);

    /// Receives the answer to the latest question; others are out of date.
    std::unique_ptr<QObject> m_reading;
    bool m_prefersDark = false;
};
