#include "viewkit/Card.h"

#include <QPainter>
#include <QVBoxLayout>

namespace viewkit
{

namespace
{
/// The design's radius.
constexpr qreal cardRadius = 10;
/// Chosen by eye: the accent colour shows, and text keeps its contrast.
constexpr float cardOpacity = 0.12F;
} // namespace

Card::Card(QWidget *content)
{
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(content);
}

void Card::paintEvent(QPaintEvent *)
{
    QColor accent = palette().color(QPalette::Active, QPalette::Highlight);
    accent.setAlphaF(cardOpacity);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(accent);
    painter.drawRoundedRect(rect(), cardRadius, cardRadius);
}

} // namespace viewkit
