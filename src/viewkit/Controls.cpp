#include "viewkit/Item.h"

#include "symbols/SystemSymbol.h"
#include "viewkit/FocusRing.h"
#include "viewkit/Layouts.h"
#include "viewkit/Suggestions.h"
#include "viewkit/Switch.h"
#include "viewkit/Tint.h"

#include <QCheckBox>
#include <QComboBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QToolButton>
#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

namespace viewkit
{

namespace
{
/// The minimum space on either side of a button's label; some styles leave none beside a long one.
constexpr int roomBesideLabel = 12;

/// A button that ignores auto-repeats of a key that is still held from an earlier dialog.
class Button : public QPushButton
{
public:
    QSize sizeHint() const override
    {
        QSize size = QPushButton::sizeHint();
        const int label = fontMetrics().size(Qt::TextShowMnemonic, text()).width();
        if (!text().isEmpty())
            size = size.expandedTo({label + 2 * roomBesideLabel, 0});
        // Match the height of buttons without an icon.
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

/// Treats a double click as one click: by the second click something else may be in this place.
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
    // Return always presses the default button, whichever button has or had the focus.
    button->setAutoDefault(false);
    QObject::connect(button, &QPushButton::clicked, button, std::move(action));
    return button;
}

/// Ignores the wheel, so that scrolling past the box does not change it.
class PickerBox final : public QComboBox
{
protected:
    void wheelEvent(QWheelEvent *event) override { event->ignore(); }
};

/// Binds a control that is on or off.
Item bound(QAbstractButton *control, Binding<bool> isOn)
{
    // Use toggled, because assistive programs do not trigger clicked.
    QObject::connect(control, &QAbstractButton::toggled, control, std::move(isOn.set));
    return {.widget = control, .rules = {[control, get = std::move(isOn.get)] {
                                   const QSignalBlocker itIsNotTheUser(control);
                                   control->setChecked(get());
                               }}};
}

/// Keeps the button's drawing in the given colour, or else in the colour of its text.
Rule drawn(QPushButton *button, const QString &symbol,
           std::optional<TextColor> textColor = std::nullopt)
{
    // Creating an icon reads the drawing, so do it only when the colour changes.
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

Item decisiveButton(const QString &label, Action action)
{
    return {.widget = pushButton<DecisiveButton>(label, std::move(action))};
}

Item defaultButton(const QString &label, Action action)
{
    auto *const button = pushButton<DecisiveButton>(label, std::move(action));
    button->setDefault(true);
    // The inset puts the ring inside the outline that a default button always has.
    new FocusRing(button, 3);
    return {.widget = button};
}

Item destructiveButton(const QString &label, Action action)
{
    auto *const button = pushButton<DecisiveButton>(label, std::move(action));
    return {.widget = button, .rules = {tint(button, QPalette::ButtonText, TextColor::error)}};
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
    // Use textChanged, because assistive programs that set the text do not trigger textEdited.
    QObject::connect(field, &QLineEdit::textChanged, field, content.set);
    // Write only a text that differs, so that the cursor stays in place while the user types.
    const Rule rule = [field, get = std::move(content.get)] {
        if (const QString text = get(); field->text() != text)
            field->setText(text);
    };
    // Some desktops provide no usable colour for placeholder text.
    return {
        .widget = field,
        .rules = {rule, tint(field, QPalette::PlaceholderText, TextColor::secondary)},
    };
}

Item searchField(Binding<QString> content)
{
    Item item = textField(u"Search"_s, u"Search"_s, std::move(content));
    qobject_cast<QLineEdit *>(item.widget)->setClearButtonEnabled(true);
    item.widget->findChild<QToolButton *>()->setAccessibleName(u"Clear"_s);
    return item;
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

} // namespace viewkit
