// The login item, as an XDG autostart file of the user.
#pragma once

#include "platform/LoginItem.h"

#include <QString>

class AutostartLoginItem : public LoginItem
{
public:
    /// Takes the folder of the user's autostart files and the absolute path of the program to
    /// start.
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

/// The path of the running program. To be called at the start: an upgrade may delete the file
/// later.
QString runningProgram();
