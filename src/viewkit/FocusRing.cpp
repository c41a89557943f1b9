#include "viewkit/FocusRing.h"

#include <QEvent>

namespace viewkit
{

FocusRing::FocusRing(QWidget *control, int inset)
    : Ring(control, inset)
{
    setVisible(control->hasFocus());
}

bool FocusRing::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        setVisible(event->type() == QEvent::FocusIn);
    return Ring::eventFilter(watched, event);
}

} // namespace viewkit
