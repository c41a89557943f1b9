// The vocabulary of a view's body: its parts in the order in which they appear on the screen, and
// the rules that keep them in line with the state that they show.
#pragma once

#include "viewkit/Colors.h"
#include "viewkit/TextStyle.h"

#include <QKeySequence>
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

/// Updates one widget to the state that it shows. It runs again after each change, so it writes
/// only what differs.
using Rule = std::function<void()>;
using Predicate = std::function<bool()>;
using Action = std::function<void()>;

/// A fixed text, or a function that returns the current one.
struct TextSource : std::function<QString()> {
    using function::function;
    TextSource(const QString &text)
        : function([text] { return text; })
    {
    }
};

/// A value that a control shows and changes.
template <typename T>
struct Binding {
    std::function<T()> get;
    std::function<void(const T &)> set;
};

/// A part of a body. Its widget belongs to the body that contains it.
struct Item {
    /// Null for a part that only adjusts its row or column.
    QWidget *widget = nullptr;
    std::function<void(QBoxLayout &)> adjust = {};
    QList<Rule> rules = {};
    Qt::Alignment alignment = {};
    int stretch = 0;
};

/// Items arranged vertically or horizontally, without margins or spacing unless set by padding()
/// and spacing().
struct Column : Item {
    Column(std::initializer_list<Item> items);
};
struct Row : Item {
    Row(std::initializer_list<Item> items);
};

/// Takes up the remaining space.
struct Spacer : Item {
    Spacer();
};

/// Space around and between the items of a row or column, in device-independent pixels.
Item padding(int size);
Item padding(int horizontal, int vertical);
Item spacing(int size);

Item divider();

/// Text on one line.
Item text(TextStyle style, TextSource source);

/// Text wrapped over as many lines as needed; words that are too long for a line break anywhere.
Item paragraph(TextStyle style, TextSource source);

/// Text on one line, elided in the middle if it does not fit; the tooltip then shows all of it.
Item shortenedText(TextStyle style, TextSource source);

/// One item for each text, in a column, rebuilt when the texts change; hidden while there are none.
Item forEachText(int spacing, std::function<QStringList()> source,
                 std::function<Item(const QString &text)> makeItem);

/// One of the program's drawings, in the colour of text; with a style, as high as a line of that
/// style.
Item symbol(TextSource name, int side);
Item symbol(const QString &name, TextStyle style);

Item button(TextSource label, Action action);
Item button(const QString &label, const QString &symbol, Action action);

/// A button that appears where another one may have been: it treats a double click as one click.
Item decisiveButton(const QString &label, Action action);

/// The button that Return presses.
Item defaultButton(const QString &label, Action action);

/// A button that removes something; the variant with a drawing shows its name as a tooltip.
Item destructiveButton(const QString &label, Action action);
Item destructiveButton(const QString &symbol, const QString &name, Action action);

/// An on/off switch without a visible label.
Item toggle(const QString &name, Binding<bool> isOn);

/// A one-line text field. Screen readers speak its name.
Item textField(const QString &name, const QString &placeholder, Binding<QString> content);

/// A text field named "Search" with a button that empties it.
Item searchField(Binding<QString> content);

/// Makes the text field offer suggestions while the user types. They are fetched each time the
/// field gets the focus.
Item suggesting(std::function<QStringList()> suggestions, Item textField);

/// A check box with its label.
Item checkBox(const QString &label, Binding<bool> isOn);

/// Read-only text of this height that can be selected and scrolled. Screen readers speak its name.
Item scrolledText(const QString &name, TextStyle style, int height, const QString &text);

/// A label and a choice among the titles, by index.
Item picker(const QString &label, const QStringList &titles, Binding<int> choice);

/// Wraps an existing widget, with an optional rule.
Item widget(QWidget *widget, Rule rule = {});

// The functions below return the given item, modified.

/// Sets the colour of the item's text or drawing.
Item tinted(TextColor textColor, Item item);
/// Sets the style of its text.
Item styled(TextStyle style, Item item);
/// Sets what screen readers say after the item's name.
Item described(TextSource description, Item item);
/// Makes the item, while it has the focus, do this when that key is pressed without modifiers.
Item onKey(Qt::Key key, Action action, Item item);
/// Makes the item, while the predicate holds, leave these keys to the window's shortcuts.
Item leavingKeys(QKeySequence::StandardKey keys, Predicate isLeft, Item item);
/// Makes screen readers announce the text when it appears.
Item announced(Item item);
/// Makes screen readers announce changes of the button's label. While the button has the focus,
/// they do so by themselves.
Item announcedChanges(Item item);
/// Puts the item on a rounded rectangle in a pale accent colour.
Item card(Item item);
Item shownWhen(Predicate isShown, Item item);
Item enabledWhen(Predicate isEnabled, Item item);
/// Lets the item take up the remaining space.
Item stretched(Item item);
/// Gives the item exactly this width.
Item fixedWidth(int width, Item item);
/// Aligns the item with the upper edge of its row.
Item alignTop(Item item);
/// Centres the item horizontally at its preferred width.
Item centred(Item item);
/// Centres the lines of a text that is as wide as its column.
Item centredLines(Item item);

/// Shows a dialog over the owner's window while the condition holds. The dialog is created each
/// time and destroyed when the condition ends. The dialog must not close itself.
Item sheetWhen(QWidget *owner, Predicate isShown, std::function<QDialog *(QWidget *owner)> make);

/// Like sheetWhen(), but shows a dialog for a subject while there is one; another subject gets a
/// new dialog.
template <typename Subject>
Item sheetFor(QWidget *owner, std::function<std::optional<Subject>()> subject,
              std::function<QDialog *(const Subject &subject, QWidget *owner)> make)
{
    const auto shown = std::make_shared<std::optional<Subject>>();
    const Item sheet = sheetWhen(
        owner, [shown, subject] { return *shown && *shown == subject(); },
        [shown, make = std::move(make)](QWidget *parent) { return make(**shown, parent); });
    // The rules run twice: the first run closes the dialog of the former subject.
    return {.rules =
                sheet.rules + QList<Rule>{[shown, subject] { *shown = subject(); }} + sheet.rules};
}

} // namespace viewkit
