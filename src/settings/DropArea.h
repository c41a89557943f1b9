// Lets the user drop something on a widget to make an entry of it. A ring around the widget shows
// that it can be dropped.
#pragma once

#include "viewkit/Ring.h"

#include <QUrl>
#include <functional>
#include <optional>

class QDragEnterEvent;
class QDropEvent;

class DropArea : public viewkit::Ring
{
    Q_OBJECT

public:
    /// Nothing can be dropped while the area is not open. The address is one that Drops::entryFor()
    /// takes. The area becomes a child of the widget.
    DropArea(std::function<bool()> isOpen, std::function<void(const QUrl &address)> onDrop,
             QWidget *widget);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void enter(QDragEnterEvent &event);
    void drop(QDropEvent &event);
    void accept(QDropEvent &event);

    const std::function<bool()> m_isOpen;
    const std::function<void(const QUrl &address)> m_onDrop;
    /// What the user last dragged over the widget, if it can be dropped.
    std::optional<QUrl> m_address;
};
