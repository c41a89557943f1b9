// The words of the design, or those of a made-up system with other names for keys and their users.
#pragma once

#include "platform/KeyUser.h"
#include "words/DesignWording.h"

class FakeWording : public DesignWording
{
public:
    QString keys(qint64 keyCode, qint64 modifiers) const override
    {
        return isMadeUp ? QStringLiteral("%1 and %2").arg(keyCode).arg(modifiers)
                        : DesignWording::keys(keyCode, modifiers);
    }
    QString requiredModifiers() const override
    {
        return isMadeUp ? QStringLiteral("256") : DesignWording::requiredModifiers();
    }
    QString alreadyUsed(const QString &keys, const KeyUser &user) const override
    {
        if (!isMadeUp)
            return DesignWording::alreadyUsed(keys, user);
        if (user.kind == KeyUser::Kind::superKey)
            return keys + QStringLiteral(" after Super");
        return keys
            + (user.kind == KeyUser::Kind::program ? QStringLiteral(" of a program")
                                                   : QStringLiteral(" for "))
            + user.action.value_or(QString());
    }

    void makeUp()
    {
        isMadeUp = true;
        Q_EMIT changed();
    }

    bool isMadeUp = false;
};
