// The settings pages of the desktops that we know.
#pragma once

#include "platform/SystemSettings.h"
#include "platform/linux/activation/UserActivation.h"
#include "platform/linux/launch/AppLauncher.h"

#include <QProcessEnvironment>
#include <QStringList>

class LinuxSystemSettings : public SystemSettings
{
public:
    /// The environment tells the desktop and where programs are. The activation must outlive it.
    LinuxSystemSettings(UserActivation &activation, const QProcessEnvironment &environment);

    void openNotificationSettings() override;
    void openLoginItems() override;

private:
    void open(const QStringList &command);

    UserActivation &m_activation;
    AppLauncher m_launcher;
    QProcessEnvironment m_environment;
};

/// The path of the program that shows the page, and its arguments; empty if there is none.
QStringList notificationSettingsCommand(const QProcessEnvironment &environment);
QStringList loginItemsCommand(const QProcessEnvironment &environment);
