// Notifications through org.freedesktop.Notifications on the session bus.
#pragma once

#include "platform/UserNotificationCenter.h"

/// The desktop does not ask for permission: every program that reaches its service may post. It may
/// still have a switch for our notifications, and applies that itself.
class DBusNotificationCenter : public UserNotificationCenter
{
public:
    /// Takes the names of our icon and of our .desktop file, by which the desktop attributes the
    /// notifications. A program that exits at once passes an empty desktop entry: some desktops
    /// remove the notifications of an app when it exits.
    DBusNotificationCenter(QString icon, QString desktopEntry);

    /// Completes with authorized if the service runs or can be started, else with denied.
    void getNotificationSettings(std::function<void(AuthorizationStatus)> completion) override;
    void requestAuthorization(unsigned options,
                              std::function<void(bool isGranted)> completion) override;
    void add(const NotificationRequest &request) override;

    /// Like add() above; the completion is called when the service has answered or cannot be
    /// reached.
    void add(const NotificationRequest &request, std::function<void()> completion);

private:
    QString m_icon;
    QString m_desktopEntry;
};
