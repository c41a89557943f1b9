// How the desktop wants windows to look, as far as Qt does not find out by itself.
#pragma once

#include <QObject>
#include <QString>
#include <optional>

class QFont;
class QPalette;

class Appearance : public QObject
{
    Q_OBJECT

public:
    /// False until the desktop has answered, and where it does not tell.
    virtual bool prefersDark() const = 0;

    /// The desktop's own colours; nothing if Qt knows and follows them, or if there are none.
    virtual std::optional<QPalette> palette() const = 0;

    /// Nothing if Qt knows it, or if there is none.
    virtual std::optional<QFont> font() const = 0;

    /// Empty if Qt knows it, or if there is none. The theme may be missing.
    virtual QString iconTheme() const = 0;

Q_SIGNALS:
    /// Emitted after each change.
    void changed();
};
