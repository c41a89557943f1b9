#include "settings/Badge.h"

#include "viewkit/Colors.h"

#include <QPainter>

using namespace viewkit;

namespace
{
/// The design's radius.
constexpr qreal badgeRadius = 6;
/// Chosen by eye: the plate stands out a little on light and on dark backgrounds.
constexpr float badgeOpacity = 0.15F;
} // namespace

Badge::Badge()
{
    setTextFormat(Qt::PlainText);
    setContentsMargins(8, 2, 8, 2);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Badge::paintEvent(QPaintEvent *event)
{
    QColor plate = color(TextColor::secondary, palette());
    plate.setAlphaF(badgeOpacity);
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(plate);
        painter.drawRoundedRect(rect(), badgeRadius, badgeRadius);
    }
    QLabel::paintEvent(event);
}
