// Notifications through org.freedesktop.Notifications on the session bus.
#pragma once

#include "platform/UserNotificationCenter.h"

/// The desktop asks nobody for permission: whoever reaches its service may post. It may still have
/// a switch of its own for our notifications, and keeps to it itself.
class DBusNotificationCenter : public UserNotificationCenter
{
public:
    /// The names of our icon, and of our .desktop file, by which the desktop knows whose
    /// notifications these are. A program that ends at once leaves the latter empty: some desktops
    /// take the notifications of an app away when it goes.
    DBusNotificationCenter(QString icon, QString desktopEntry);

    /// Authorized if the service runs or can be started, else denied.
    void getNotificationSettings(std::function<void(AuthorizationStatus)> completion) override;
    void requestAuthorization(unsigned options,
                              std::function<void(bool isGranted)> completion) override;
    void add(const NotificationRequest &request) override;

    /// The same; the completion is called when the service has answered, or cannot be reached.
    void add(const NotificationRequest &request, std::function<void()> completion);

private:
    QString m_icon;
    QString m_desktopEntry;
};
