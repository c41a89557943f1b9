#include "viewkit/Ring.h"

#include <QEvent>
#include <QPainter>

namespace viewkit
{

namespace
{
/// Chosen by eye: 1 pixel is hard to see at some scales, and 2 look heavy beside a field's frame.
constexpr qreal ringWidth = 1.5;
/// The corner radius of Fusion's buttons and fields.
constexpr qreal ringRadius = 2;
} // namespace

Ring::Ring(QWidget *widget, int inset)
    : QWidget(widget)
    , m_inset(inset)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    widget->installEventFilter(this);
}

bool Ring::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        resize(parentWidget()->size());
    return QWidget::eventFilter(watched, event);
}

void Ring::showEvent(QShowEvent *event)
{
    raise();
    QWidget::showEvent(event);
}

void Ring::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Highlight), ringWidth));
    const QRectF ring = QRectF(rect()).adjusted(m_inset, m_inset, -m_inset, -m_inset);
    painter.drawRoundedRect(ring, ringRadius, ringRadius);
}

} // namespace viewkit
