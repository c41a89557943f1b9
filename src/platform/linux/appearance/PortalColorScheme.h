// The desktop's preference for light or dark windows, from the settings of its portal.
#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QVariant>
#include <memory>
#include <optional>

/// Follows portals that appear, disappear and are replaced at any time; starts none. An answer
/// stays valid until the next one; an error counts as no preference.
class PortalColorScheme : public QObject
{
    Q_OBJECT

public:
    /// Asks the current portal, and from then on each new one.
    void start();

    /// Nothing until the portal has answered, and if the user has no preference.
    std::optional<bool> prefersDark() const { return m_prefersDark; }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void settingChanged(const QDBusMessage &change);

private:
    void read();
    void take(QVariant value);

    /// Receives the answer to the latest call; earlier ones are out of date.
    std::unique_ptr<QObject> m_reading;
    std::optional<bool> m_prefersDark;
};
