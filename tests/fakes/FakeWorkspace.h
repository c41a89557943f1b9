// A workspace that records what it is asked to open, and answers when it is told to.
#pragma once

#include "platform/Workspace.h"

#include <QList>
#include <QStringList>

class FakeWorkspace : public Workspace
{
public:
    void openApplication(const QString &path,
                         std::function<void(std::optional<Error>)> completion) override
    {
        opened.append(path);
        m_completions.append(std::move(completion));
    }

    void open(const QUrl &url, std::function<void(bool isOpened)> completion) override
    {
        opened.append(url.toString(QUrl::FullyEncoded));
        m_completions.append([completion = std::move(completion)](
                                 const std::optional<Error> &error) { completion(!error); });
    }

    /// Ends the first opening that has not ended.
    void finish(const std::optional<Error> &error = std::nullopt)
    {
        m_completions.takeFirst()(error);
    }

    /// Paths of applications, and addresses.
    QStringList opened;

private:
    QList<std::function<void(std::optional<Error>)>> m_completions;
};
