// A computer with the Shortcuts that it is given, to which it adds those that are made.
#pragma once

#include "platform/ShortcutLibrary.h"

#include <optional>

class FakeShortcutLibrary : public ShortcutLibrary
{
public:
    QStringList names() override
    {
        ++timesRead;
        return shortcuts;
    }

    Result<QString> create(const QString &name) override
    {
        created << name;
        if (error)
            return *error;
        shortcuts << name;
        return path + u'/' + name;
    }

    Result<QString> folder() override
    {
        if (error)
            return *error;
        return path;
    }

    QStringList shortcuts;
    int timesRead = 0;

    /// The names that were to be made into Shortcuts.
    QStringList created;

    const QString path = QStringLiteral("/my/shortcuts");

    /// Why nothing can be made.
    std::optional<Error> error;
};
