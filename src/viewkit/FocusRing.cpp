#include "viewkit/FocusRing.h"

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

FocusRing::FocusRing(QWidget *control, int inset)
    : QWidget(control)
    , m_inset(inset)
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setVisible(control->hasFocus());
    control->installEventFilter(this);
}

bool FocusRing::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::FocusIn:
    case QEvent::FocusOut:
        setVisible(event->type() == QEvent::FocusIn);
        raise();
        break;
    case QEvent::Resize:
        resize(parentWidget()->size());
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void FocusRing::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(palette().color(QPalette::Highlight), ringWidth));
    const QRectF ring = QRectF(rect()).adjusted(m_inset, m_inset, -m_inset, -m_inset);
    painter.drawRoundedRect(ring, ringRadius, ringRadius);
}

} // namespace viewkit
