// Exports the tray item over the bus, for desktops to show by themselves:
// org.kde.StatusNotifierItem.
#pragma once

#include "platform/linux/base/DBusObject.h"

#include <QIcon>
#include <QPoint>
#include <QVariantMap>

class StatusNotifierItem : public DBusObject
{
    Q_OBJECT

public:
    explicit StatusNotifierItem(QString id);

    /// Sets what desktops show; the text is the tooltip and for screen readers.
    void setButton(const QIcon &icon, const QString &description);

Q_SIGNALS:
    /// Emitted when the user wants the menu at that position of the screen and the desktop leaves
    /// it to us.
    void clicked(const QPoint &place);

    /// Emitted with the token for the user's next action, for windows on Wayland.
    void activationTokenProvided(const QByteArray &token);

private:
    QVariantMap properties() const override;
    QDBusMessage answer(const QDBusMessage &call) override;

    QString m_id;
    QIcon m_icon;
    QString m_description;
    /// The icon in its form for the bus; drawn on first use.
    mutable QVariant m_pixmaps;
};
