// The item as desktops read it over the bus and show it by themselves: org.kde.StatusNotifierItem.
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

    /// What desktops show from now on; the text is the tooltip and for screen readers.
    void setButton(const QIcon &icon, const QString &description);

Q_SIGNALS:
    /// The user wants the menu, at that place of the screen, and the desktop leaves it to us.
    void clicked(const QPoint &place);

    /// A token for what the user does next, for windows on Wayland.
    void activationTokenProvided(const QByteArray &token);

private:
    QVariantMap properties() const override;
    QDBusMessage answer(const QDBusMessage &call) override;

    QString m_id;
    QIcon m_icon;
    QString m_description;
    /// The icon as it goes over the bus; drawn when it is first asked for.
    mutable QVariant m_pixmaps;
};
