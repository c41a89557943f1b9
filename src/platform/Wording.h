// What this system and its keys are called, and the sentences that depend on that.
#pragma once

#include <QObject>
#include <QString>
#include <optional>

struct KeyUser;

/// Answers at once from what is known so far.
class Wording : public QObject
{
    Q_OBJECT

public:
    /// The text of a combination: a virtual key code and a mask of KeyModifier bits.
    virtual QString keys(qint64 keyCode, qint64 modifiers) const = 0;

    /// The modifiers of which a combination needs one, as in "Ctrl, Alt or Super".
    virtual QString requiredModifiers() const = 0;

    /// Warns that the user of the keys, which are given as text, may win.
    virtual QString alreadyUsed(const QString &keys, const KeyUser &user) const = 0;

    /// Says that the system failed to open something, such as "the website".
    virtual QString couldNotOpen(const QString &target) const = 0;
    virtual QString couldNotRunShortcuts() const = 0;

    /// The kind of computer, as in "your computer".
    virtual QString computer() const = 0;

    /// The system that has shortcuts of its own, in the middle of a sentence.
    virtual QString system() const = 0;

    /// Says that the system does not start the program at login, although the user asked for it.
    virtual QString loginItemIsOff() const = 0;
    /// The label of the button that opens the settings for that.
    virtual QString openLoginItems() const = 0;

    /// The placeholder of the field for the name of a Shortcut.
    virtual QString nameOfShortcut() const = 0;

    /// The program's version; nothing where the system itself shows it.
    virtual std::optional<QString> version() const = 0;

    /// How key combinations are registered, and what the program is built with.
    virtual QString credits() const = 0;

Q_SIGNALS:
    /// Emitted when texts of keys have changed.
    void changed();
};
