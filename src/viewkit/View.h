// A part of the screen that is described once, and brought in line with what it shows after each
// change of that.
#pragma once

#include "viewkit/Item.h"

#include <QWidget>

namespace viewkit
{

class View : public QWidget
{
    Q_OBJECT

public:
    explicit View(QWidget *parent = nullptr);

    /// To be called once, as a rule by the constructor.
    void setBody(const Item &body);

    /// What the view shows has changed or is about to: refreshes it on the next turn of the event
    /// loop, once for all changes until then; if it is not on the screen, when it gets there.
    void invalidate();

    /// Runs all rules, now.
    void refresh();

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    QList<Rule> m_rules;
    bool m_isStale = false;
};

} // namespace viewkit
