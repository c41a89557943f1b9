// Opens applications: .desktop files as the desktop reads them, and executable files.
#pragma once

#include "platform/Workspace.h"
#include "platform/linux/launch/ChildReaper.h"

class LinuxWorkspace : public Workspace
{
public:
    void openApplication(const QString &path,
                         std::function<void(std::optional<Error>)> completion) override;

private:
    using Completion = std::function<void(std::optional<Error>)>;

    void openDesktopFile(const QString &path, Completion completion);
    std::optional<Error> start(const QStringList &arguments, const QString &workingFolder);

    ChildReaper m_reaper;
};
