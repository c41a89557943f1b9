// The running program, as the desktop knows it.
#pragma once

class QString;
class QUuid;
class QWidget;

class SharedApplication
{
public:
    virtual ~SharedApplication() = default;

    /// Shows the window in front of all others and gives it the keyboard focus, on behalf of the
    /// user's latest action.
    virtual void activate(QWidget &window) = 0;

    /// Does the same for a window of ours on which the user has just dropped something. Another
    /// program has the focus as a rule.
    virtual void activateAfterDrop(QWidget &window) = 0;

    /// The command that does what a press of the entry's keys does. The user can bind the desktop's
    /// own keys to it.
    virtual QString fireCommand(const QUuid &entry) const = 0;

    /// Quits the program with status 0.
    virtual void terminate() = 0;
};
