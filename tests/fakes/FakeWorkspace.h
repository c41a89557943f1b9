// A workspace that records what it is asked to open, and answers when it is told to.
#pragma once

#include "platform/Workspace.h"

#include <QStringList>

class FakeWorkspace : public Workspace
{
public:
    void openApplication(const QString &path,
                         std::function<void(std::optional<Error>)> completion) override
    {
        opened.append(path);
        m_completion = std::move(completion);
    }

    /// Ends the last opening.
    void finish(const std::optional<Error> &error = std::nullopt) { m_completion(error); }

    QStringList opened;

private:
    std::function<void(std::optional<Error>)> m_completion;
};
