#include "viewkit/ScrolledContent.h"

#include <QEvent>
#include <QLayout>

namespace viewkit
{

ScrolledContent::ScrolledContent(QWidget *content, int minHeight)
    : m_minHeight(minHeight)
{
    setFrameShape(NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    // Its controls are reached one by one.
    setFocusPolicy(Qt::NoFocus);
    setWidget(content);
    viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
}

int ScrolledContent::neededHeight(int width) const
{
    return widget()->layout()->totalMinimumHeightForWidth(width);
}

QSize ScrolledContent::minimumSizeHint() const
{
    return {widget()->minimumSizeHint().width(), m_minHeight};
}

bool ScrolledContent::eventFilter(QObject *watched, QEvent *event)
{
    const bool isHandled = QScrollArea::eventFilter(watched, event);
    // QScrollArea hides changes of its content from the layout that it is in.
    if (watched == widget() && event->type() == QEvent::LayoutRequest)
        updateGeometry();
    return isHandled;
}

} // namespace viewkit
