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
    std::optional<Error> start(const QStringList &arguments, const QString &workingFolder);
    std::optional<Error> openDesktopFile(const QString &path);

    ChildReaper m_reaper;
};
