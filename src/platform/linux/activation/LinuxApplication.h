// Activates the program's windows and quits it, on X11 and Wayland.
#pragma once

#include "platform/SharedApplication.h"

struct UserActivation;

class LinuxApplication : public SharedApplication
{
public:
    /// The activation must outlive it.
    explicit LinuxApplication(UserActivation &activation);

    void activate(QWidget &window) override;
    void activateAfterDrop(QWidget &window) override;
    QString fireCommand(const QUuid &entry) const override;
    void terminate() override;

private:
    UserActivation &m_activation;
};
