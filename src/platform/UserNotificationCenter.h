// The desktop's notifications and the permission to post them.
#pragma once

#include <QString>
#include <functional>

enum class AuthorizationStatus {
    notDetermined = 0,
    denied = 1,
    authorized = 2,
    provisional = 3,
};

/// The permissions that a program can ask for; combined with OR.
enum AuthorizationOption : unsigned {
    badgeOption = 1,
    soundOption = 2,
    alertOption = 4,
};

struct NotificationRequest {
    /// A later request with the same identifier would replace this one.
    QString identifier;
    QString title;
    QString body;

    bool operator==(const NotificationRequest &) const = default;
};

/// No call waits for the desktop. Completions are called later on the main thread, or never if the
/// desktop does not answer.
class UserNotificationCenter
{
public:
    virtual ~UserNotificationCenter() = default;

    virtual void getNotificationSettings(std::function<void(AuthorizationStatus)> completion) = 0;

    /// Lets the desktop ask the user; completes with whether permission was granted.
    virtual void requestAuthorization(unsigned options,
                                      std::function<void(bool isGranted)> completion) = 0;

    /// Shows a notification at once. A failure is silent.
    virtual void add(const NotificationRequest &request) = 0;
};
