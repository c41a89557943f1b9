#include "viewkit/Item.h"

#include "viewkit/Paragraph.h"
#include "viewkit/ShortenedLabel.h"
#include "viewkit/SymbolView.h"

#include <QFontMetrics>
#include <QLabel>

namespace viewkit
{

namespace
{
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
