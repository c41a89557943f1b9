// The words of the program's design, with signs for modifier keys. The user can choose its texts of
// keys on every system.
#pragma once

#include "platform/Wording.h"

class DesignWording : public Wording
{
public:
    QString keys(qint64 keyCode, qint64 modifiers) const override;
    QString requiredModifiers() const override;
    QString alreadyUsed(const QString &keys, const KeyUser &user) const override;
    QString couldNotOpen(const QString &target) const override;
    QString couldNotRunShortcuts() const override;
    QString computer() const override;
    QString system() const override;
    QString loginItemIsOff() const override;
    QString openLoginItems() const override;
    QString nameOfShortcut() const override;
    std::optional<QString> version() const override;
    QString credits() const override;
};
