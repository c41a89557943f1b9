#include "platform/linux/tray/PopupMenu.h"

#include <QKeyEvent>
#include <QScreen>
#include <algorithm>

using namespace Qt::StringLiterals;

PopupMenu::PopupMenu(std::function<void(const MenuItem &)> choose)
    : m_choose(std::move(choose))
{
    // Makes a long menu scroll; some styles would lay it out in columns beyond the screen.
    setStyleSheet(u"QMenu { menu-scrollable: 1; }"_s);
}

void PopupMenu::open(const QPoint &place, const QList<MenuItem> &items)
{
    // Handles a second click while the menu is open.
    close();
    clear();
    m_items = items;
    for (const MenuItem &item : items)
        add(item);
    popup(place);
}

void PopupMenu::refresh(const QList<MenuItem> &items)
{
    // The user may be about to choose the item under the pointer, so an open menu keeps its items.
    if (!std::ranges::equal(m_items, items, {}, &MenuItem::representedObject,
                            &MenuItem::representedObject))
        return;
    for (qsizetype i = 0; i < items.size(); ++i)
        setAction(*actions().at(i), items.at(i));
}

void PopupMenu::add(const MenuItem &item)
{
    if (item.isSeparator()) {
        addSeparator();
        return;
    }
    QAction *const action = addAction(QString());
    setAction(*action, item);
    if (!item.keyEquivalent.isEmpty())
        action->setShortcut(u"Ctrl+"_s + item.keyEquivalent);
    connect(action, &QAction::triggered, this, [this, item] { m_choose(item); });
}

void PopupMenu::setAction(QAction &action, const MenuItem &item)
{
    if (item.isSeparator())
        return;
    // Elide long names, so that what follows them stays visible.
    QString text =
        fontMetrics().elidedText(item.title, Qt::ElideMiddle, screen()->size().width() / 3);
    // A single ampersand marks the following letter as the mnemonic.
    action.setText(text.replace(u'&', u"&&"_s));
    action.setEnabled(item.canBeChosen());
    action.setCheckable(item.isChecked.has_value());
    action.setChecked(item.isChecked.value_or(false));
}

void PopupMenu::keyPressEvent(QKeyEvent *event)
{
    // Qt does not handle shortcuts while a menu is open.
    const QKeySequence keys(event->keyCombination());
    for (QAction *const action : actions()) {
        if (!action->shortcut().isEmpty() && action->shortcut() == keys) {
            close();
            action->trigger();
            return;
        }
    }
    QMenu::keyPressEvent(event);
}
