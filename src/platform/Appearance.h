// Whether the user wants light or dark windows, as far as the desktop tells.
#pragma once

#include <QObject>

class Appearance : public QObject
{
    Q_OBJECT

public:
    /// False until the desktop has said so, and where it says nothing.
    virtual bool prefersDark() const = 0;

Q_SIGNALS:
    /// After each change.
    void changed();
};
