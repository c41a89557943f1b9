#include "viewkit/FocusReturn.h"

#include <QApplication>
#include <QDialog>

namespace viewkit
{

namespace
{
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
    // A spontaneous event only tells that the desktop has hidden the dialog, such as with a
    // minimized window.
    if (event->type() != QEvent::Hide || event->spontaneous())
        return false;
    const auto *const dialog = qobject_cast<QDialog *>(watched);
    QWidget *const below = dialog ? dialog->parentWidget() : nullptr;
    if (!below || !below->isVisible() || !hadFocus(*dialog))
        return false;
    // Queued, because the window manager must have heard of the end of the dialog before.
    QMetaObject::invokeMethod(
        below, [below] { below->activateWindow(); }, Qt::QueuedConnection);
    return false;
}

} // namespace viewkit
