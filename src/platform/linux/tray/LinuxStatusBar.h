// The tray of a Linux desktop, of any kind.
#pragma once

#include "platform/StatusBar.h"

struct UserActivation;

class LinuxStatusBar : public StatusBar
{
public:
    /// The activation must outlive it and its items.
    explicit LinuxStatusBar(UserActivation &activation)
        : m_activation(activation)
    {
    }

    std::unique_ptr<StatusItem> makeStatusItem(StatusItemDelegate &delegate) override;

private:
    UserActivation &m_activation;
};
