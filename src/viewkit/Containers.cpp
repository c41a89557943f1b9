#include "viewkit/Item.h"

#include "viewkit/AccessibleRole.h"
#include "viewkit/Tint.h"

#include <QBoxLayout>
#include <QFrame>
#include <memory>

namespace viewkit
{

namespace
{
Item box(QBoxLayout::Direction direction, std::initializer_list<Item> items)
{
    auto *const widget = new QWidget;
    auto *const layout = new QBoxLayout(direction, widget);
    layout->setContentsMargins({});
    layout->setSpacing(0);
    Item whole{.widget = widget};
    for (const Item &item : items) {
        if (item.adjust)
            item.adjust(*layout);
        if (item.widget)
            layout->addWidget(item.widget, item.stretch, item.alignment);
        whole.rules += item.rules;
    }
    return whole;
}
} // namespace

Column::Column(std::initializer_list<Item> items)
    : Item(box(QBoxLayout::TopToBottom, items))
{
}

Row::Row(std::initializer_list<Item> items)
    : Item(box(QBoxLayout::LeftToRight, items))
{
}

Spacer::Spacer()
{
    adjust = [](QBoxLayout &layout) { layout.addStretch(); };
}

Item padding(int size)
{
    return padding(size, size);
}

Item padding(int horizontal, int vertical)
{
    return {.adjust = [=](QBoxLayout &layout) {
        layout.setContentsMargins(horizontal, vertical, horizontal, vertical);
    }};
}

Item spacing(int size)
{
    return {.adjust = [size](QBoxLayout &layout) { layout.setSpacing(size); }};
}

Item divider()
{
    auto *const line = new QFrame;
    line->setFrameStyle(QFrame::HLine | QFrame::Plain);
    setAccessibleRole(*line, QAccessible::Separator);
    return {.widget = line, .rules = {tint(line, QPalette::WindowText, TextColor::line)}};
}

Item forEachText(int spacing, std::function<QStringList()> source,
                 std::function<Item(const QString &text)> makeItem)
{
    struct Shown {
        QStringList texts;
        QList<Rule> rules;
    };
    auto *const widget = new QWidget;
    auto *const layout = new QVBoxLayout(widget);
    layout->setContentsMargins({});
    layout->setSpacing(spacing);
    const auto replace = [layout, makeItem = std::move(makeItem)](const QStringList &texts) {
        while (const std::unique_ptr<QLayoutItem> former{layout->takeAt(0)})
            delete former->widget();
        QList<Rule> rules;
        for (const QString &text : texts) {
            const Item item = makeItem(text);
            layout->addWidget(item.widget);
            // Run the rules first, so that the label already has its text when it is shown.
            for (const Rule &rule : item.rules)
                rule();
            // Show it now; otherwise the layout would do so on a later turn of the event loop.
            item.widget->show();
            rules += item.rules;
        }
        return rules;
    };
    const auto show = [widget, source = std::move(source), replace,
                       shown = std::make_shared<Shown>()] {
        if (const QStringList texts = source(); texts != shown->texts)
            *shown = {texts, replace(texts)};
        for (const Rule &rule : std::as_const(shown->rules))
            rule();
        widget->setVisible(!shown->texts.isEmpty());
    };
    widget->hide();
    return {.widget = widget, .rules = {show}};
}

} // namespace viewkit
