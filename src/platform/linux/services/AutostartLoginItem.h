// The login item as an XDG autostart file of the user.
#pragma once

#include "platform/LoginItem.h"

#include <QString>

class AutostartLoginItem : public LoginItem
{
public:
    /// The folder of the user's autostart files, and the absolute path of what is to be started.
    AutostartLoginItem(const QString &folder, const QString &program);

    LoginItemStatus status() const override;
    std::optional<Error> registerItem() override;
    std::optional<Error> unregisterItem() override;

private:
    std::optional<Error> write();

    QString m_folder;
    QString m_file;
    QString m_program;
};

/// Where the running program is. To be asked for at the start: later an upgrade may have taken it
/// away.
QString runningProgram();
