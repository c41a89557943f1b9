#include "viewkit/Paragraph.h"

#include <QPainter>
#include <QStyle>
#include <QTextLayout>
#include <QtMath>

namespace viewkit
{

namespace
{
/// In average characters: longer words break if there is no room. No word of the program's own
/// texts is longer.
constexpr int maxWordLength = 16;

/// QLabel's own maximum for a readable line, in the same unit.
constexpr int maxLineLength = 80;
} // namespace

Paragraph::Paragraph()
{
    // Enables height-for-width. The class breaks the lines itself, because QLabel breaks only
    // between words.
    setWordWrap(true);
}

QSize Paragraph::sizeHint() const
{
    const int widest = fontMetrics().averageCharWidth() * maxLineLength;
    return QLabel::sizeHint().boundedTo({widest, QWIDGETSIZE_MAX});
}

QSize Paragraph::minimumSizeHint() const
{
    const int widest = fontMetrics().averageCharWidth() * maxWordLength;
    return QLabel::minimumSizeHint().boundedTo({widest, QWIDGETSIZE_MAX});
}

int Paragraph::heightForWidth(int width) const
{
    QTextLayout layout;
    return layOut(layout, width);
}

/// Fills the layout, and returns its height.
int Paragraph::layOut(QTextLayout &layout, int width) const
{
    QTextOption option(QStyle::visualAlignment(layoutDirection(), alignment()));
    option.setTextDirection(layoutDirection());
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setText(QString(text()).replace(u'\n', QChar::LineSeparator));
    layout.setFont(font());
    layout.setTextOption(option);
    layout.beginLayout();
    qreal height = 0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLeadingIncluded(true);
        line.setLineWidth(width);
        line.setPosition({0, height});
        height += line.height();
    }
    layout.endLayout();
    return qCeil(height);
}

void Paragraph::paintEvent(QPaintEvent *)
{
    QTextLayout layout;
    const int unused = height() - layOut(layout, width());
    const bool isTop = alignment() & Qt::AlignTop;
    QPainter painter(this);
    painter.setPen(palette().color(foregroundRole()));
    layout.draw(&painter, {0, isTop ? 0. : unused / 2.});
}

} // namespace viewkit
