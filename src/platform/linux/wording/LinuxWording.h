// The words of the running Linux desktop.
#pragma once

#include "platform/Wording.h"

#include <QProcessEnvironment>

class KeyboardLayout;

class LinuxWording final : public Wording
{
public:
    /// The layout must outlive it. The method says how key combinations are registered, as in
    /// "X11".
    LinuxWording(const QProcessEnvironment &environment, const KeyboardLayout &layout,
                 const QString &hotkeyMethod);

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

private:
    QString nameOf(const KeyUser &user) const;

    const KeyboardLayout &m_layout;
    QString m_desktop;
    /// What the desktop calls the Super key.
    QString m_super;
    /// What the Super key alone opens, where it keeps combinations from us.
    QString m_whatSuperOpens;
    QString m_hotkeyMethod;
};
