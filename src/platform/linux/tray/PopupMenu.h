// The menu where it is ours to show.
#pragma once

#include "platform/StatusBar.h"

#include <QMenu>

class PopupMenu : public QMenu
{
public:
    explicit PopupMenu(std::function<void(const MenuItem &)> choose);

    /// Opens it with these items, in place of any former ones.
    void open(const QPoint &place, const QList<MenuItem> &items);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void add(const MenuItem &item);

    std::function<void(const MenuItem &)> m_choose;
};
