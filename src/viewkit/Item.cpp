#include "viewkit/Item.h"

#include "symbols/SystemSymbol.h"
#include "viewkit/AccessibleRole.h"
#include "viewkit/Card.h"
#include "viewkit/FocusRing.h"
#include "viewkit/Layouts.h"
#include "viewkit/Paragraph.h"
#include "viewkit/ShortenedLabel.h"
#include "viewkit/Suggestions.h"
#include "viewkit/Switch.h"
#include "viewkit/SymbolView.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QFrame>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalBlocker>
#include <limits>
#include <memory>

namespace
{
/// Some styles leave a long label no room.
constexpr int roomBesideLabel = 12;

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

Surface surfaceOf(QPalette::ColorRole role)
{
    return role == QPalette::ButtonText ? Surface::button : Surface::window;
}

/// Keeps what the widget shows in that role in that colour.
Rule coloured(QWidget *widget, QPalette::ColorRole role, TextColor textColor)
{
    // Legible colours take some reckoning, so only for a new palette.
    const auto known = std::make_shared<qint64>(0);
    return [widget, role, textColor, known] {
        if (widget->palette().cacheKey() == *known)
            return;
        QPalette palette = widget->palette();
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            const auto shown = group == QPalette::Disabled ? QPalette::Active : group;
            palette.setColor(group, role, color(textColor, palette, surfaceOf(role), shown));
        }
        widget->setPalette(palette);
        *known = widget->palette().cacheKey();
    };
}

TextSource always(const QString &text)
{
    return [text] { return text; };
}

/// Screen readers say its name when it appears, whatever the role of the widget itself.
QWidget *noticeOn(QWidget *widget)
{
    auto *const notice = new QWidget(widget);
    setAccessibleRole(*notice, QAccessible::Notification);
    notice->setAttribute(Qt::WA_TransparentForMouseEvents);
    notice->resize(1, 1);
    return notice;
}

/// Deaf to the repeats of a key that is still held from a dialog before.
class Button : public QPushButton
{
public:
    QSize sizeHint() const override
    {
        QSize size = QPushButton::sizeHint();
        const int label = fontMetrics().size(Qt::TextShowMnemonic, text()).width();
        if (!text().isEmpty())
            size = size.expandedTo({label + 2 * roomBesideLabel, 0});
        // In line with those beside it.
        if (!icon().isNull())
            size.setHeight(buttonHeight());
        return size;
    }

protected:
    void keyPressEvent(QKeyEvent *event) override
    {
        if (event->isAutoRepeat())
            event->ignore();
        else
            QPushButton::keyPressEvent(event);
    }
};

/// Takes a double click for a click: by the second one the next thing may be in this place.
class DecisiveButton final : public Button
{
protected:
    void mouseDoubleClickEvent(QMouseEvent *event) override { event->accept(); }
};

template <typename Kind>
QPushButton *pushButton(const QString &label, Action action)
{
    auto *const button = new Kind;
    button->setText(label);
    // Return presses the default button, whichever has or had the focus.
    button->setAutoDefault(false);
    QObject::connect(button, &QPushButton::clicked, button, std::move(action));
    return button;
}

/// Changes by clicks and keys only: who scrolls past it with the wheel does not mean it.
class PickerBox final : public QComboBox
{
protected:
    void wheelEvent(QWheelEvent *event) override { event->ignore(); }
};

/// A control that is on or off, and follows the binding.
Item bound(QAbstractButton *control, Binding<bool> isOn)
{
    // Not clicked, which assistive programs do not cause.
    QObject::connect(control, &QAbstractButton::toggled, control, std::move(isOn.set));
    return {.widget = control, .rules = {[control, get = std::move(isOn.get)] {
                                   const QSignalBlocker itIsNotTheUser(control);
                                   control->setChecked(get());
                               }}};
}

/// Keeps the button's drawing in the colour of its text, or in that colour.
Rule drawn(QPushButton *button, const QString &symbol,
           std::optional<TextColor> textColor = std::nullopt)
{
    // Making an icon reads a drawing, so only for a new colour.
    const auto drawnIn = std::make_shared<QColor>();
    return [button, symbol, textColor, drawnIn] {
        const QPalette palette = button->palette();
        const QColor wanted =
            textColor ? color(*textColor, palette) : palette.color(QPalette::ButtonText);
        if (std::exchange(*drawnIn, wanted) != wanted)
            button->setIcon(systemSymbol(symbol, wanted));
    };
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
    return {.widget = line, .rules = {coloured(line, QPalette::WindowText, TextColor::line)}};
}

Item text(TextStyle style, const QString &text)
{
    return labelled(style, new QLabel, always(text));
}

Item text(TextStyle style, TextSource source)
{
    return labelled(style, new QLabel, std::move(source));
}

Item paragraph(TextStyle style, const QString &text)
{
    return labelled(style, new Paragraph, always(text));
}

Item paragraph(TextStyle style, TextSource source)
{
    return labelled(style, new Paragraph, std::move(source));
}

Item shortenedText(TextStyle style, TextSource source)
{
    return labelled(style, new ShortenedLabel, std::move(source));
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
            // So that a text is there when its label is shown.
            for (const Rule &rule : item.rules)
                rule();
            // At once; the layout shows it on a later turn of the event loop.
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

Item symbol(const QString &name, int side)
{
    return symbol(always(name), side);
}

Item symbol(const QString &name, TextStyle style)
{
    auto *const view = new SymbolView;
    view->setSymbol(name);
    return {.widget = view,
            .rules = {[view, style] { view->setSide(QFontMetrics(font(style)).height()); }}};
}

Item symbol(TextSource name, int side)
{
    auto *const view = new SymbolView;
    view->setSide(side);
    return {.widget = view, .rules = {[view, name = std::move(name)] { view->setSymbol(name()); }}};
}

Item button(const QString &label, Action action)
{
    return {.widget = pushButton<Button>(label, std::move(action))};
}

Item button(TextSource label, Action action)
{
    auto *const button = pushButton<Button>({}, std::move(action));
    return {.widget = button, .rules = {[button, label = std::move(label)] {
                                  if (const QString text = label(); button->text() != text)
                                      button->setText(text);
                              }}};
}

Item button(const QString &label, const QString &symbol, Action action)
{
    auto *const button = pushButton<Button>(label, std::move(action));
    return {.widget = button, .rules = {drawn(button, symbol)}};
}

Item defaultButton(const QString &label, Action action)
{
    auto *const button = pushButton<DecisiveButton>(label, std::move(action));
    button->setDefault(true);
    // Within the outline that it has in any case.
    new FocusRing(button, 3);
    return {.widget = button};
}

Item destructiveButton(const QString &label, Action action)
{
    auto *const button = pushButton<DecisiveButton>(label, std::move(action));
    return {.widget = button, .rules = {coloured(button, QPalette::ButtonText, TextColor::error)}};
}

Item destructiveButton(const QString &symbol, const QString &name, Action action)
{
    auto *const button = pushButton<DecisiveButton>({}, std::move(action));
    button->setToolTip(name);
    button->setAccessibleName(name);
    return {.widget = button, .rules = {drawn(button, symbol, TextColor::error)}};
}

Item toggle(const QString &name, Binding<bool> isOn)
{
    auto *const control = new Switch;
    control->setAccessibleName(name);
    return bound(control, std::move(isOn));
}

Item checkBox(const QString &label, Binding<bool> isOn)
{
    return bound(new QCheckBox(label), std::move(isOn));
}

Item scrolledText(const QString &name, TextStyle style, int height, const QString &text)
{
    auto *const area = new QPlainTextEdit(text);
    area->setAccessibleName(name);
    area->setReadOnly(true);
    area->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    area->setFixedHeight(height);
    new FocusRing(area, 1);
    return styled(style, {.widget = area});
}

Item textField(const QString &name, const QString &placeholder, Binding<QString> content)
{
    auto *const field = new QLineEdit;
    field->setMaxLength(std::numeric_limits<int>::max());
    field->setAccessibleName(name);
    field->setPlaceholderText(placeholder);
    // Not textEdited, which assistive programs that set the text do not cause.
    QObject::connect(field, &QLineEdit::textChanged, field, content.set);
    // The cursor stays where it is while the text is what the user types.
    const Rule rule = [field, get = std::move(content.get)] {
        if (const QString text = get(); field->text() != text)
            field->setText(text);
    };
    // Some desktops leave that colour to chance.
    return {
        .widget = field,
        .rules = {rule, coloured(field, QPalette::PlaceholderText, TextColor::secondary)},
    };
}

Item suggesting(std::function<QStringList()> suggestions, Item textField)
{
    new Suggestions(qobject_cast<QLineEdit *>(textField.widget), std::move(suggestions));
    return textField;
}

Item picker(const QString &label, const QStringList &titles, Binding<int> choice)
{
    auto *const box = new PickerBox;
    box->addItems(titles);
    box->setAccessibleName(label);
    QObject::connect(box, &QComboBox::currentIndexChanged, box, choice.set);
    auto *const caption = new QLabel(label);
    caption->setBuddy(box);
    Row row{spacing(8), {.widget = caption}, stretched({.widget = box})};
    row.rules.append([box, get = std::move(choice.get)] { box->setCurrentIndex(get()); });
    return row;
}

Item widget(QWidget *widget, Rule rule)
{
    Item item{.widget = widget};
    if (rule)
        item.rules.append(std::move(rule));
    return item;
}

Item tinted(TextColor textColor, Item item)
{
    // Whatever it lies upon.
    item.widget->setForegroundRole(QPalette::WindowText);
    item.rules.append(coloured(item.widget, QPalette::WindowText, textColor));
    return item;
}

Item styled(TextStyle style, Item item)
{
    item.rules.append([widget = item.widget, style] {
        if (const QFont wanted = font(style); widget->font() != wanted)
            widget->setFont(wanted);
    });
    return item;
}

Item announced(Item item)
{
    auto *const label = qobject_cast<QLabel *>(item.widget);
    Q_ASSERT(label);
    item.rules.append([label, notice = noticeOn(label)] {
        if (notice->accessibleName() != label->text())
            notice->setAccessibleName(label->text());
    });
    return item;
}

Item announcedChanges(Item item)
{
    auto *const button = qobject_cast<QAbstractButton *>(item.widget);
    Q_ASSERT(button);
    item.rules.append([button, notice = noticeOn(button)] {
        if (notice->accessibleName() == button->text())
            return;
        // Hidden first, because only what appears is said.
        notice->hide();
        notice->setAccessibleName(button->text());
        notice->setVisible(button->isVisible() && !button->hasFocus());
    });
    return item;
}

Item card(Item item)
{
    item.widget = new Card(item.widget);
    return item;
}

Item shownWhen(Predicate isShown, Item item)
{
    // First, so that a text is there when its label is shown.
    item.rules.append([widget = item.widget, isShown = std::move(isShown)] {
        if (const bool wanted = isShown(); widget->isHidden() == wanted)
            widget->setVisible(wanted);
    });
    return item;
}

Item enabledWhen(Predicate isEnabled, Item item)
{
    item.rules.append([widget = item.widget, isEnabled = std::move(isEnabled)] {
        widget->setEnabled(isEnabled());
    });
    return item;
}

Item stretched(Item item)
{
    item.stretch = 1;
    return item;
}

Item fixedWidth(int width, Item item)
{
    item.widget->setFixedWidth(width);
    return item;
}

Item alignTop(Item item)
{
    item.alignment = Qt::AlignTop;
    return item;
}

Item centredLines(Item item)
{
    if (auto *const label = qobject_cast<QLabel *>(item.widget))
        label->setAlignment(Qt::AlignCenter);
    return item;
}

Item centred(Item item)
{
    item = centredLines(std::move(item));
    // An alignment of the item itself would take no notice of texts on several lines.
    return Row{Spacer{}, std::move(item), Spacer{}};
}

Item sheetWhen(QWidget *owner, Predicate isShown, std::function<QDialog *(QWidget *owner)> make)
{
    const auto sheet = std::make_shared<QPointer<QDialog>>();
    return {.rules = {[=, isShown = std::move(isShown), make = std::move(make)] {
                const bool wanted = isShown();
                if (wanted == !sheet->isNull())
                    return;
                if (wanted) {
                    *sheet = make(owner);
                    // Later: the owner may be on its way to the screen only.
                    const auto open = [sheet, made = sheet->data()] {
                        if (*sheet == made)
                            made->open();
                    };
                    QMetaObject::invokeMethod(*sheet, open, Qt::QueuedConnection);
                } else {
                    (*sheet)->hide();
                    (*sheet)->deleteLater();
                    sheet->clear();
                }
            }}};
}
