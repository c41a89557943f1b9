// The desktop's status bar (its tray), where the program has an item with a menu.
#pragma once

#include <QList>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

struct MenuItem {
    /// On one line, as the user reads it; empty for a separator.
    QString title;
    /// Called with the chosen item. An item without an action is inert.
    std::function<void(const MenuItem &)> action;
    /// What the item stands for. Items that stand for something are known by it, others by their
    /// titles, when the menu has changed while a desktop still shows the former one.
    QString representedObject;
    /// A key that, with Control, chooses the item while the menu is open.
    QString keyEquivalent;
    bool isEnabled = true;
    /// Nothing for an item that is never checked.
    std::optional<bool> isChecked;

    bool isSeparator() const { return title.isEmpty(); }
    bool canBeChosen() const { return isEnabled && action; }
};

/// The item's button in the bar.
struct StatusButton {
    /// The name of a symbol of ours.
    QString image;
    /// The tooltip, and what a screen reader says.
    QString accessibilityDescription;
    bool isDimmed = false;

    bool operator==(const StatusButton &) const = default;
};

/// Says what the item shows. Asked again whenever that may have changed.
class StatusItemDelegate
{
public:
    virtual ~StatusItemDelegate() = default;

    virtual StatusButton statusButton() const = 0;
    virtual QList<MenuItem> menuNeedsUpdate() = 0;

    /// The user has clicked the button where no menu can be opened.
    virtual void statusButtonClicked() = 0;
};

/// Shown while it lives, wherever and whenever the desktop has a place for it.
class StatusItem
{
public:
    virtual ~StatusItem() = default;

    /// What the delegate says has changed.
    virtual void update() = 0;
};

class StatusBar
{
public:
    virtual ~StatusBar() = default;

    /// Needs a QApplication. The delegate must outlive the item.
    virtual std::unique_ptr<StatusItem> makeStatusItem(StatusItemDelegate &delegate) = 0;
};
