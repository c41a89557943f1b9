// The menu that we show ourselves, where the desktop does not.
#pragma once

#include "platform/StatusBar.h"

#include <QMenu>

class PopupMenu : public QMenu
{
public:
    explicit PopupMenu(std::function<void(const MenuItem &)> choose);

    /// Opens the menu with these items, which replace any earlier ones.
    void open(const QPoint &place, const QList<MenuItem> &items);

    /// Shows the current texts and states of the items while the menu is open.
    void refresh(const QList<MenuItem> &items);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void add(const MenuItem &item);
    void setAction(QAction &action, const MenuItem &item);

    std::function<void(const MenuItem &)> m_choose;
    QList<MenuItem> m_items;
};
