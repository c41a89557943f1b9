// Gives the focus back to the window below when a dialog closes.
#pragma once

#include <QObject>

namespace viewkit
{

/// Some window managers give the focus to the lowest window instead, which ignores all input while
/// another dialog is open above it.
class FocusReturn : public QObject
{
    Q_OBJECT

public:
    /// Watches all dialogs of the application.
    FocusReturn();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace viewkit
