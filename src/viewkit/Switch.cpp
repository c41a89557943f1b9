#include "viewkit/Switch.h"

#include "viewkit/Colors.h"

#include <QEvent>
#include <QPainter>

namespace viewkit
{

namespace
{
/// As in FocusRing.
constexpr qreal focusRingWidth = 1.5;
/// The margin around the track: room for the focus ring and a gap.
constexpr qreal trackMargin = 3;
/// The gap between the knob and the edge of the track.
constexpr qreal knobGap = 2;
} // namespace

Switch::Switch()
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize Switch::sizeHint() const
{
    // The track is about as high as a line of text.
    const int track = std::max(16, fontMetrics().height());
    return QSize(track * 9 / 5, track) + QSize(2, 2) * int(trackMargin);
}

bool Switch::event(QEvent *event)
{
    if (event->type() == QEvent::Enter || event->type() == QEvent::Leave)
        update();
    return QCheckBox::event(event);
}

void Switch::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF track =
        QRectF(rect()).adjusted(trackMargin, trackMargin, -trackMargin, -trackMargin);
    const qreal radius = track.height() / 2;

    if (hasFocus()) {
        painter.setPen(QPen(palette().color(QPalette::Highlight), focusRingWidth));
        painter.setBrush(Qt::NoBrush);
        const qreal inset = focusRingWidth / 2;
        const QRectF ring = QRectF(rect()).adjusted(inset, inset, -inset, -inset);
        painter.drawRoundedRect(ring, ring.height() / 2, ring.height() / 2);
    }

    const QColor on = palette().color(QPalette::Highlight);
    QColor off = color(TextColor::secondary, palette());
    if (underMouse())
        off = off.lighter(110);
    painter.setPen(Qt::NoPen);
    painter.setBrush(isChecked() ? on : off);
    painter.drawRoundedRect(track, radius, radius);

    const qreal side = track.height() - 2 * knobGap;
    const bool isAtRight = isChecked() == (layoutDirection() == Qt::LeftToRight);
    const qreal left = isAtRight ? track.right() - knobGap - side : track.left() + knobGap;
    painter.setBrush(palette().color(isChecked() ? QPalette::HighlightedText : QPalette::Base));
    painter.drawEllipse(QRectF(left, track.top() + knobGap, side, side));
}

} // namespace viewkit
