// What the body of a view is written with: its parts, in the order in which they stand on the
// screen, and the rules that keep them in line with what they show.
#pragma once

#include "viewkit/Colors.h"
#include "viewkit/TextStyle.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>

class QBoxLayout;
class QDialog;
class QWidget;

namespace viewkit
{

/// Brings one widget in line with the state that it shows. Run again after each change, so it
/// writes only what differs.
using Rule = std::function<void()>;
using Predicate = std::function<bool()>;
using Action = std::function<void()>;
using TextSource = std::function<QString()>;

/// A value that a control shows and changes.
template <typename T>
struct Binding {
    std::function<T()> get;
    std::function<void(const T &)> set;
};

/// A part of a body; its widget belongs to the body that it is put into.
struct Item {
    /// What shows it; null for a part that only changes its row or column.
    QWidget *widget = nullptr;
    std::function<void(QBoxLayout &)> adjust = {};
    QList<Rule> rules = {};
    Qt::Alignment alignment = {};
    int stretch = 0;
};

/// Things below and beside each other, without space between or around them unless they say so.
struct Column : Item {
    Column(std::initializer_list<Item> items);
};
struct Row : Item {
    Row(std::initializer_list<Item> items);
};

/// Space that takes all that the others leave.
struct Spacer : Item {
    Spacer();
};

/// Around and between the items of a row or column, in device-independent pixels.
Item padding(int size);
Item padding(int horizontal, int vertical);
Item spacing(int size);

Item divider();

/// On one line.
Item text(TextStyle style, const QString &text);
Item text(TextStyle style, TextSource source);

/// On as many lines as it takes; words that are too long for a line break anywhere.
Item paragraph(TextStyle style, const QString &text);
Item paragraph(TextStyle style, TextSource source);

/// On one line, shortened in the middle where that is too short; the tooltip has it whole.
Item shortenedText(TextStyle style, TextSource source);

/// An item for each text, below each other, made anew when they change; nothing at all while there
/// are none.
Item forEachText(int spacing, std::function<QStringList()> source,
                 std::function<Item(const QString &text)> makeItem);

/// A drawing of ours, in the colour of texts; with a style, as high as a line of such text.
Item symbol(const QString &name, int side);
Item symbol(const QString &name, TextStyle style);
Item symbol(TextSource name, int side);

Item button(const QString &label, Action action);
Item button(TextSource label, Action action);
Item button(const QString &label, const QString &symbol, Action action);

/// The button that Return presses.
Item defaultButton(const QString &label, Action action);

/// A button that removes something; with a drawing, it has its name as a tooltip instead.
Item destructiveButton(const QString &label, Action action);
Item destructiveButton(const QString &symbol, const QString &name, Action action);

/// An on/off switch without a visible label.
Item toggle(const QString &name, Binding<bool> isOn);

/// One line of text to type. Its name is spoken by screen readers.
Item textField(const QString &name, const QString &placeholder, Binding<QString> content);

/// The text field, which offers texts while the user types. They are asked for each time that it
/// gets the focus.
Item suggesting(std::function<QStringList()> suggestions, Item textField);

/// A check box with its label.
Item checkBox(const QString &label, Binding<bool> isOn);

/// Text to read, select and scroll through, as high as that. Its name is spoken by screen readers.
Item scrolledText(const QString &name, TextStyle style, int height, const QString &text);

/// A label and the choice of one of the titles, by index.
Item picker(const QString &label, const QStringList &titles, Binding<int> choice);

/// A widget that is made elsewhere, and the rule that it follows, if any.
Item widget(QWidget *widget, Rule rule = {});

/// The item, changed:
Item tinted(TextColor textColor, Item item);
/// With its text in that style.
Item styled(TextStyle style, Item item);
/// A text that screen readers say when it appears.
Item announced(Item item);
/// A button whose label screen readers say when it changes, as they do by themselves for the button
/// that has the focus.
Item announcedChanges(Item item);
/// On a rounded rectangle in a pale accent colour.
Item card(Item item);
Item shownWhen(Predicate isShown, Item item);
Item enabledWhen(Predicate isEnabled, Item item);
/// Takes all the room that the others leave.
Item stretched(Item item);
/// Exactly that wide, with what it shows in the middle.
Item fixedWidth(int width, Item item);
/// At the upper edge of its row.
Item alignTop(Item item);
/// As wide as it wants to be, in the middle.
Item centred(Item item);
/// A text whose lines are centred, as wide as its column.
Item centredLines(Item item);

/// A dialog that is on the screen over the owner's window while the condition holds. It is made
/// anew each time, is destroyed when it goes, and must leave it to the condition to close it.
Item sheetWhen(QWidget *owner, Predicate isShown, std::function<QDialog *(QWidget *owner)> make);

/// The same for what a dialog is about, if there is anything; another subject has a dialog of its
/// own.
template <typename Subject>
Item sheetFor(QWidget *owner, std::function<std::optional<Subject>()> subject,
              std::function<QDialog *(const Subject &subject, QWidget *owner)> make)
{
    const auto shown = std::make_shared<std::optional<Subject>>();
    const Item sheet = sheetWhen(
        owner, [shown, subject] { return *shown && *shown == subject(); },
        [shown, make = std::move(make)](QWidget *parent) { return make(**shown, parent); });
    // The former one goes first.
    return {.rules =
                sheet.rules + QList<Rule>{[shown, subject] { *shown = subject(); }} + sheet.rules};
}

} // namespace viewkit
