// The desktop's notifications, and whether the user lets us post them.
#pragma once

#include <QString>
#include <functional>

enum class AuthorizationStatus {
    notDetermined = 0,
    denied = 1,
    authorized = 2,
    provisional = 3,
};

/// What a program asks the user to be allowed to; an OR of these.
enum AuthorizationOption : unsigned {
    badgeOption = 1,
    soundOption = 2,
    alertOption = 4,
};

struct NotificationRequest {
    /// A request with the identifier of an earlier one would replace it.
    QString identifier;
    QString title;
    QString body;

    bool operator==(const NotificationRequest &) const = default;
};

/// Nothing here waits for the desktop; the completions are called later, on the main thread, or
/// never where the desktop does not answer.
class UserNotificationCenter
{
public:
    virtual ~UserNotificationCenter() = default;

    virtual void getNotificationSettings(std::function<void(AuthorizationStatus)> completion) = 0;

    /// Lets the desktop ask the user; completes with whether that was granted.
    virtual void requestAuthorization(unsigned options,
                                      std::function<void(bool isGranted)> completion) = 0;

    /// Shows a notification at once. A failure is silent.
    virtual void add(const NotificationRequest &request) = 0;
};
