// Whether the user prefers light or dark windows, if the desktop tells.
#pragma once

#include <QObject>

class Appearance : public QObject
{
    Q_OBJECT

public:
    /// False until the desktop has answered, and where it does not tell.
    virtual bool prefersDark() const = 0;

Q_SIGNALS:
    /// Emitted after each change.
    void changed();
};
