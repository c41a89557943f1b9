#include "viewkit/Item.h"

#include "viewkit/ShortenedLabel.h"
#include "viewkit/SymbolView.h"

#include <QFontMetrics>
#include <QLabel>
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

/// A text wrapped over as many lines as needed; it breaks within words that are too long for a
/// line.
class Paragraph final : public QLabel
{
public:
    Paragraph()
    {
        // Enables height-for-width. The class breaks the lines itself, because QLabel breaks only
        // between words.
        setWordWrap(true);
    }

    QSize sizeHint() const override
    {
        const int widest = fontMetrics().averageCharWidth() * maxLineLength;
        return QLabel::sizeHint().boundedTo({widest, QWIDGETSIZE_MAX});
    }

    QSize minimumSizeHint() const override
    {
        const int widest = fontMetrics().averageCharWidth() * maxWordLength;
        return QLabel::minimumSizeHint().boundedTo({widest, QWIDGETSIZE_MAX});
    }

    int heightForWidth(int width) const override
    {
        QTextLayout layout;
        return layOut(layout, width);
    }

protected:
    void paintEvent(QPaintEvent *) override
    {
        QTextLayout layout;
        const int unused = height() - layOut(layout, width());
        const bool isTop = alignment() & Qt::AlignTop;
        QPainter painter(this);
        painter.setPen(palette().color(foregroundRole()));
        layout.draw(&painter, {0, isTop ? 0. : unused / 2.});
    }

private:
    /// Fills the layout, and returns its height.
    int layOut(QTextLayout &layout, int width) const
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
};

/// A label in the style, whose text follows the source.
Item labelled(TextStyle style, QLabel *label, TextSource source)
{
    label->setTextFormat(Qt::PlainText);
    const Rule rule = [label, source = std::move(source)] {
        if (const QString text = source(); label->text() != text)
            label->setText(text);
    };
    return styled(style, {.widget = label, .rules = {rule}});
}
} // namespace

Item text(TextStyle style, TextSource source)
{
    return labelled(style, new QLabel, std::move(source));
}

Item paragraph(TextStyle style, TextSource source)
{
    return labelled(style, new Paragraph, std::move(source));
}

Item shortenedText(TextStyle style, TextSource source)
{
    return labelled(style, new ShortenedLabel, std::move(source));
}

Item symbol(TextSource name, int side)
{
    auto *const view = new SymbolView;
    view->setSide(side);
    return {.widget = view, .rules = {[view, name = std::move(name)] { view->setSymbol(name()); }}};
}

Item symbol(const QString &name, TextStyle style)
{
    auto *const view = new SymbolView;
    view->setSymbol(name);
    return {.widget = view,
            .rules = {[view, style] { view->setSide(QFontMetrics(font(style)).height()); }}};
}

} // namespace viewkit
