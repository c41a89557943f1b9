#include "viewkit/View.h"

#include <QEvent>
#include <QVBoxLayout>

namespace viewkit
{

View::View(QWidget *parent)
    : QWidget(parent)
{
}

void View::setBody(const Item &body)
{
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(body.widget);
    m_rules = body.rules;
    refresh();
}

void View::invalidate()
{
    if (std::exchange(m_isStale, true) || !isVisible())
        return;
    const auto refreshIfStale = [this] {
        if (m_isStale && isVisible())
            refresh();
    };
    QMetaObject::invokeMethod(this, refreshIfStale, Qt::QueuedConnection);
}

void View::refresh()
{
    m_isStale = false;
    for (const Rule &rule : std::as_const(m_rules))
        rule();
}

void View::say(std::optional<QString> &shown, const QString &message)
{
    // Hide it first: screen readers announce a message only when it appears.
    shown.reset();
    refresh();
    shown = message;
    refresh();
}

bool View::event(QEvent *event)
{
    const auto type = event->type();
    if (type == QEvent::FontChange || type == QEvent::PaletteChange || type == QEvent::StyleChange)
        invalidate();
    return QWidget::event(event);
}

void View::showEvent(QShowEvent *event)
{
    if (m_isStale)
        refresh();
    QWidget::showEvent(event);
}

} // namespace viewkit
