// The desktop's preference for light or dark windows, from the settings of its portal.
#pragma once

#include "platform/Appearance.h"

#include <QDBusMessage>
#include <QVariant>
#include <memory>

/// Follows portals that appear, disappear and are replaced at any time; starts none. An answer
/// stays valid until the next one; an error counts as no preference.
class PortalAppearance : public Appearance
{
    Q_OBJECT

public:
    /// Asks the current portal, and from then on each new one.
    void start();

    bool prefersDark() const override { return m_prefersDark; }

private Q_SLOTS:
    void settingChanged(const QDBusMessage &change);

private:
    void read();
    void take(QVariant value);

    /// Receives the answer to the latest call; earlier ones are out of date.
    std::unique_ptr<QObject> m_reading;
    bool m_prefersDark = false;
};
