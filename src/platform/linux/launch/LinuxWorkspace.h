// Opens applications (.desktop files and executables), and files, folders and addresses in their
// default applications.
#pragma once

#include "platform/Workspace.h"
#include "platform/linux/activation/UserActivation.h"
#include "platform/linux/launch/AppLauncher.h"
#include "platform/linux/launch/DesktopAppCache.h"

class LinuxWorkspace : public Workspace
{
public:
    /// The activation must outlive it.
    explicit LinuxWorkspace(UserActivation &activation);

    void openApplication(const QString &path,
                         std::function<void(std::optional<Error>)> completion) override;
    void open(const QUrl &url, std::function<void(bool isOpened)> completion) override;

private:
    UserActivation &m_activation;
    AppLauncher m_launcher{StartupNotification::announce};
    DesktopAppCache m_apps;
};
