#include "viewkit/ShortenedLabel.h"

#include "foundation/Text.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace viewkit
{

ShortenedLabel::ShortenedLabel()
{
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QSize ShortenedLabel::sizeHint() const
{
    // Measure this text, since it may need fallback fonts of another height.
    return fontMetrics().size(0, onOneLine(text())) + QSize(1, 0);
}

QSize ShortenedLabel::minimumSizeHint() const
{
    const int shortest = fontMetrics().averageCharWidth() * 8;
    const QSize whole = sizeHint();
    return {std::min(shortest, whole.width()), whole.height()};
}

QString ShortenedLabel::shownText() const
{
    return fontMetrics().elidedText(onOneLine(text()), Qt::ElideMiddle, width());
}

bool ShortenedLabel::event(QEvent *event)
{
    if (event->type() != QEvent::ToolTip)
        return QLabel::event(event);
    const bool isShortened = sizeHint().width() > width();
    QToolTip::showText(
        static_cast<QHelpEvent *>(event)->globalPos(),
        isShortened ? u"<span>"_s + text().toHtmlEscaped() + u"</span>"_s : QString(), this);
    return true;
}

void ShortenedLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QString text = shownText();
    // Each text keeps its own direction, but all start at the same edge.
    const int direction =
        text.isRightToLeft() ? Qt::TextForceRightToLeft : Qt::TextForceLeftToRight;
    const auto edge = QStyle::visualAlignment(layoutDirection(), Qt::AlignLeading);
    style()->drawItemText(&painter, rect(), int(edge | Qt::AlignVCenter) | direction, palette(),
                          isEnabled(), text, foregroundRole());
}

} // namespace viewkit
