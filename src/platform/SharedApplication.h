// The running program, as the desktop knows it.
#pragma once

class QWidget;

class SharedApplication
{
public:
    virtual ~SharedApplication() = default;

    /// Shows the window in front of all others and gives it the keyboard, on behalf of what the
    /// user has just done.
    virtual void activate(QWidget &window) = 0;

    /// Ends the program, with status 0.
    virtual void terminate() = 0;
};
