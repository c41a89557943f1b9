#include "platform/linux/tray/PopupMenu.h"

#include <QKeyEvent>
#include <QScreen>

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
    for (const MenuItem &item : items)
        add(item);
    popup(place);
}

void PopupMenu::add(const MenuItem &item)
{
    if (item.isSeparator()) {
        addSeparator();
        return;
    }
    // Elide long names, so that what follows them stays visible.
    QString text =
        fontMetrics().elidedText(item.title, Qt::ElideMiddle, screen()->size().width() / 3);
    // A single ampersand marks the following letter as the mnemonic.
    QAction *const action = addAction(text.replace(u'&', u"&&"_s));
    action->setEnabled(item.canBeChosen());
    action->setCheckable(item.isChecked.has_value());
    action->setChecked(item.isChecked.value_or(false));
    if (!item.keyEquivalent.isEmpty())
        action->setShortcut(u"Ctrl+"_s + item.keyEquivalent);
    connect(action, &QAction::triggered, this, [this, item] { m_choose(item); });
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
