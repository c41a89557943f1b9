#include "settings/DropArea.h"

#include "settings/Drops.h"

#include <QDropEvent>
#include <utility>

namespace
{
/// Keeps the ring clear of the window's edge.
constexpr int ringInset = 1;

/// The action that a drop is accepted with; IgnoreAction if there is none. It is never a move:
/// after that the source would delete what was dropped.
Qt::DropAction harmlessAction(const QDropEvent &event)
{
    for (const auto action : {Qt::LinkAction, Qt::CopyAction}) {
        if (event.possibleActions().testFlag(action))
            return action;
    }
    return Qt::IgnoreAction;
}
} // namespace

DropArea::DropArea(std::function<bool()> isOpen, std::function<void(const QUrl &address)> onDrop,
                   QWidget *widget)
    : Ring(widget, ringInset)
    , m_isOpen(std::move(isOpen))
    , m_onDrop(std::move(onDrop))
{
    hide();
    widget->setAcceptDrops(true);
}

bool DropArea::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::DragEnter:
        enter(*static_cast<QDragEnterEvent *>(event));
        return true;
    case QEvent::DragMove:
        accept(*static_cast<QDropEvent *>(event));
        return true;
    case QEvent::DragLeave:
        hide();
        return true;
    case QEvent::Drop:
        drop(*static_cast<QDropEvent *>(event));
        return true;
    case QEvent::Enter:
        // The pointer itself enters only when no drag goes on. A source that has died does not say
        // that its drag has ended.
        hide();
        break;
    default:
        break;
    }
    return Ring::eventFilter(watched, event);
}

void DropArea::enter(QDragEnterEvent &event)
{
    m_address = Drops::usableAddress(*event.mimeData());
    accept(event);
}

void DropArea::drop(QDropEvent &event)
{
    accept(event);
    hide();
    if (event.isAccepted())
        m_onDrop(*m_address);
}

/// Accepts the event if something can be dropped now.
void DropArea::accept(QDropEvent &event)
{
    event.setDropAction(m_address && m_isOpen() ? harmlessAction(event) : Qt::IgnoreAction);
    event.setAccepted(event.dropAction() != Qt::IgnoreAction);
    setVisible(event.isAccepted());
}
