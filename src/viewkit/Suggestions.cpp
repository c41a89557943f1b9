#include "viewkit/Suggestions.h"

#include <QAbstractItemView>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStringListModel>

namespace viewkit
{

Suggestions::Suggestions(QLineEdit *field, std::function<QStringList()> source)
    : QCompleter(field)
    , m_field(field)
    , m_model(new QStringListModel(this))
    , m_source(std::move(source))
{
    setModel(m_model);
    setCaseSensitivity(Qt::CaseInsensitive);
    setFilterMode(Qt::MatchContains);
    // popup() creates the popup and sends events meanwhile; calling it again from the event filter
    // would create another.
    m_popup = popup();
    m_popup->setAccessibleName(field->accessibleName());
    field->setCompleter(this);
}

bool Suggestions::eventFilter(QObject *object, QEvent *event)
{
    const bool isDealtWith = object == m_field ? filterOfField(event)
        : object == m_popup                    ? filterOfPopup(event)
                                               : false;
    return isDealtWith || QCompleter::eventFilter(object, event);
}

bool Suggestions::filterOfField(QEvent *event)
{
    if (event->type() == QEvent::FocusIn) {
        if (static_cast<QFocusEvent *>(event)->reason() != Qt::PopupFocusReason)
            m_model->setStringList(m_source());
        return false;
    }
    const bool asksForAll = event->type() == QEvent::KeyPress
        && static_cast<QKeyEvent *>(event)->key() == Qt::Key_Down && m_field->text().isEmpty();
    if (!asksForAll || m_popup->isVisible())
        return false;
    setCompletionPrefix({});
    complete();
    return true;
}

bool Suggestions::filterOfPopup(QEvent *event)
{
    if (event->type() != QEvent::KeyPress || m_popup->currentIndex().isValid())
        return false;
    const int key = static_cast<QKeyEvent *>(event)->key();
    if (key != Qt::Key_Return && key != Qt::Key_Enter)
        return false;
    // Nothing is selected: let the key do its usual work in the field, instead of only closing the
    // popup.
    m_popup->hide();
    QCoreApplication::sendEvent(m_field, event);
    return true;
}

} // namespace viewkit
