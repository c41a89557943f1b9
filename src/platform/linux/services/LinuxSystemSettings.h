// Opens the settings pages of the known desktops.
#pragma once

#include "platform/SystemSettings.h"
#include "platform/linux/activation/UserActivation.h"
#include "platform/linux/launch/AppLauncher.h"

#include <QProcessEnvironment>
#include <QStringList>

class LinuxSystemSettings : public SystemSettings
{
public:
    /// The environment determines the desktop and the folders of programs. The activation must
    /// outlive it.
    LinuxSystemSettings(UserActivation &activation, const QProcessEnvironment &environment);

    void openNotificationSettings() override;
    void openLoginItems() override;
    void openKeyboardSettings() override;

private:
    void open(const QStringList &command);

    UserActivation &m_activation;
    AppLauncher m_launcher;
    QProcessEnvironment m_environment;
};

/// The path of the program that shows the page, followed by its arguments; empty if there is none.
QStringList notificationSettingsCommand(const QProcessEnvironment &environment);
QStringList loginItemsCommand(const QProcessEnvironment &environment);
QStringList keyboardSettingsCommand(const QProcessEnvironment &environment);
