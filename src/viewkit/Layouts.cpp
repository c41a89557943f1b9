#include "viewkit/Layouts.h"

#include <QLayout>
#include <QWidget>

void settleLayouts(QWidget &widget)
{
    for (QObject *const child : widget.children()) {
        if (auto *const part = qobject_cast<QWidget *>(child); part && !part->isWindow())
            settleLayouts(*part);
    }
    if (widget.layout())
        widget.layout()->activate();
}

int settledHeight(QWidget &widget, int width)
{
    settleLayouts(widget);
    return widget.hasHeightForWidth() ? widget.heightForWidth(width) : widget.sizeHint().height();
}
