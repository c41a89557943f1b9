// Opens applications (.desktop files and executables), and files, folders and addresses in their
// default applications.
#pragma once

#include "platform/Workspace.h"
#include "platform/linux/activation/OpenWindows.h"
#include "platform/linux/activation/UserActivation.h"
#include "platform/linux/launch/AppLauncher.h"
#include "platform/linux/launch/DesktopApp.h"
#include "platform/linux/launch/DesktopAppCache.h"

#include <memory>

class LinuxWorkspace : public Workspace
{
public:
    /// The activation must outlive it. The windows are null in sessions that do not show theirs.
    LinuxWorkspace(UserActivation &activation, std::unique_ptr<OpenWindows> windows);

    /// To be called once, when the event loop runs.
    void start();

    bool canActivate() const override { return m_windows && m_windows->isAvailable(); }
    void prepareToActivate(const QString &path) override;
    void openApplication(const QString &path, const OpenConfiguration &configuration,
                         std::function<void(std::optional<Error>)> completion) override;
    void open(const QUrl &url, std::function<void(bool isOpened)> completion) override;
    void openToEdit(const QString &path, std::function<void(bool isOpened)> completion) override;

private:
    void openBy(const std::optional<DesktopApp> &app, const QUrl &target,
                std::function<void(bool isOpened)> completion);
    /// Whether there is a window of that program or application to bring to the front.
    bool bringProgramToFront(const QString &path) const;
    bool bringToFront(const DesktopApp &app) const;

    UserActivation &m_activation;
    const std::unique_ptr<OpenWindows> m_windows;
    AppLauncher m_launcher{StartupNotification::announce};
    DesktopAppCache m_apps;
};
