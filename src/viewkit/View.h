// A widget that is described once, and updated after each change of the state that it shows.
#pragma once

#include "viewkit/Item.h"

#include <QWidget>
#include <optional>

namespace viewkit
{

class View : public QWidget
{
    Q_OBJECT

public:
    explicit View(QWidget *parent = nullptr);

    /// Call this once, usually in the constructor.
    void setBody(const Item &body);

    /// Call this when the state that the view shows has changed or is about to. The view refreshes
    /// once for all such calls, on the next turn of the event loop, or when it is next shown if it
    /// is not visible.
    void invalidate();

    /// Runs all rules immediately.
    void refresh();

protected:
    /// Shows a message that the body announces, and refreshes. Screen readers announce it even if
    /// the same message is shown already.
    void say(std::optional<QString> &shown, const QString &message);

    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    QList<Rule> m_rules;
    bool m_isStale = false;
};

} // namespace viewkit
