// A workspace that records what it is asked to open, and answers when it is told to.
#pragma once

#include "platform/Workspace.h"

#include <QList>
#include <QStringList>

class FakeWorkspace : public Workspace
{
public:
    bool canActivate() const override { return isActivating; }

    void prepareToActivate(const QString &path) override { prepared.append(path); }

    void openApplication(const QString &path, const OpenConfiguration &configuration,
                         std::function<void(std::optional<Error>)> completion) override
    {
        opened.append(path);
        activating.append(configuration.activates);
        m_completions.append(std::move(completion));
    }

    void open(const QUrl &url, std::function<void(bool isOpened)> completion) override
    {
        opened.append(url.toString(QUrl::FullyEncoded));
        m_completions.append([completion = std::move(completion)](
                                 const std::optional<Error> &error) { completion(!error); });
    }

    void openToEdit(const QString &path, std::function<void(bool isOpened)> completion) override
    {
        edited.append(path);
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

    /// Paths of files and folders that were to be edited.
    QStringList edited;

    /// For each opened application, whether it was to come to the front if it was open.
    QList<bool> activating;

    /// Paths of the applications for which it was to prepare for that.
    QStringList prepared;

    bool isActivating = true;

private:
    QList<std::function<void(std::optional<Error>)>> m_completions;
};
