#include "viewkit/FocusReturn.h"

#include <QApplication>
#include <QDialog>

namespace viewkit
{

namespace
{
/// Queued, because the window manager must have heard before of what has happened.
void activateSoon(QWidget &window)
{
    QMetaObject::invokeMethod(
        &window, [&window] { window.activateWindow(); }, Qt::QueuedConnection);
}

/// The dialog that locks the window; null if there is none.
QWidget *dialogAbove(const QWidget &window)
{
    QWidget *const dialog = QApplication::activeModalWidget();
    for (const QWidget *below = dialog; below; below = below->parentWidget()) {
        if (below->parentWidget() == &window)
            return dialog;
    }
    return nullptr;
}

/// Whether the user was in the dialog, and not in another program. Only the user can have closed a
/// panel of the desktop, of whose focus Qt knows nothing.
bool hadFocus(const QDialog &dialog)
{
    return QGuiApplication::applicationState() == Qt::ApplicationActive
        || dialog.testAttribute(Qt::WA_DontShowOnScreen);
}
} // namespace

FocusReturn::FocusReturn()
{
    qApp->installEventFilter(this);
}

bool FocusReturn::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::WindowActivate)
        leaveLocked(qobject_cast<QWidget *>(watched));
    // A spontaneous event only tells that the desktop has hidden the dialog, such as with a
    // minimized window.
    else if (event->type() == QEvent::Hide && !event->spontaneous())
        leaveHidden(qobject_cast<QDialog *>(watched));
    return false;
}

void FocusReturn::leaveLocked(const QWidget *window)
{
    if (QWidget *const dialog = window ? dialogAbove(*window) : nullptr)
        activateSoon(*dialog);
}

void FocusReturn::leaveHidden(const QDialog *dialog)
{
    QWidget *const below = dialog ? dialog->parentWidget() : nullptr;
    if (below && below->isVisible() && hadFocus(*dialog))
        activateSoon(*below);
}

} // namespace viewkit
