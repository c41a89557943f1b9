// The desktop's status bar (its tray), which shows the program's item and its menu.
#pragma once

#include <QList>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

struct MenuItem {
    /// The displayed text, on one line; empty for a separator.
    QString title;
    /// Called with the chosen item. An item without an action is inert.
    std::function<void(const MenuItem &)> action;
    /// The value that the item represents. When the menu changes while a desktop still shows the
    /// old one, items are identified by this value, or by their titles if it is empty.
    QString representedObject;
    /// Chooses the item, together with Control, while the menu is open.
    QString keyEquivalent;
    bool isEnabled = true;
    /// The check mark's state; nothing if the item is not checkable.
    std::optional<bool> isChecked;

    bool isSeparator() const { return title.isEmpty(); }
    bool canBeChosen() const { return isEnabled && action; }
};

/// The appearance of the item's button in the bar.
struct StatusButton {
    /// The name of one of the program's symbols.
    QString image;
    /// The tooltip, and the text for screen readers.
    QString accessibilityDescription;
    bool isDimmed = false;

    bool operator==(const StatusButton &) const = default;
};

/// Supplies the content of the item. It is asked again whenever that may have changed.
class StatusItemDelegate
{
public:
    virtual ~StatusItemDelegate() = default;

    virtual StatusButton statusButton() const = 0;
    virtual QList<MenuItem> menuNeedsUpdate() = 0;

    /// Called when the user clicks the button and no menu can be opened there.
    virtual void statusButtonClicked() = 0;
};

/// Visible for as long as it exists, wherever and whenever the desktop has a place for it.
class StatusItem
{
public:
    virtual ~StatusItem() = default;

    /// Reads the delegate's content anew. To be called when it has changed.
    virtual void update() = 0;
};

class StatusBar
{
public:
    virtual ~StatusBar() = default;

    /// Needs a QApplication. The delegate must outlive the item.
    virtual std::unique_ptr<StatusItem> makeStatusItem(StatusItemDelegate &delegate) = 0;
};
