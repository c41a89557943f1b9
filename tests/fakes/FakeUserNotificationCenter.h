// A notification center that records what is posted, and whose user has made up their mind or
// answers when told to.
#pragma once

#include "fakes/CallLog.h"
#include "platform/UserNotificationCenter.h"

#include <QList>

class FakeUserNotificationCenter : public UserNotificationCenter
{
public:
    explicit FakeUserNotificationCenter(CallLog log = CallLog())
        : m_log(log)
    {
    }

    void getNotificationSettings(std::function<void(AuthorizationStatus)> completion) override
    {
        ++timesAsked;
        completion(status);
    }

    void requestAuthorization(unsigned options,
                              std::function<void(bool isGranted)> completion) override
    {
        requestedOptions.append(options);
        m_completion = std::move(completion);
    }

    void add(const NotificationRequest &request) override
    {
        added.append(request);
        m_log.note(QStringLiteral("post"));
    }

    /// Ends the last request for authorization.
    void answer(bool isGranted) { m_completion(isGranted); }

    /// What was posted, title and body.
    QList<std::pair<QString, QString>> texts() const
    {
        QList<std::pair<QString, QString>> found;
        for (const NotificationRequest &request : added)
            found.append({request.title, request.body});
        return found;
    }

    AuthorizationStatus status = AuthorizationStatus::authorized;
    int timesAsked = 0;
    QList<unsigned> requestedOptions;
    QList<NotificationRequest> added;

private:
    CallLog m_log;
    std::function<void(bool)> m_completion;
};
