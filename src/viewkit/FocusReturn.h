// Gives the focus to the window that accepts input when a dialog closes.
#pragma once

#include <QObject>

class QDialog;
class QWidget;

namespace viewkit
{

/// Some window managers give the focus to the lowest window instead, sometimes a little later, and
/// that window ignores all input while another dialog is open above it.
class FocusReturn : public QObject
{
    Q_OBJECT

public:
    /// Watches all dialogs of the application.
    FocusReturn();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    /// Null for what is no such widget.
    static void leaveLocked(const QWidget *window);
    static void leaveHidden(const QDialog *dialog);
};

} // namespace viewkit
