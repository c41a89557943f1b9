// A line around what has the focus, for what some styles paint the same with the focus as without.
#pragma once

#include <QWidget>

namespace viewkit
{

class FocusRing : public QWidget
{
    Q_OBJECT

public:
    /// Becomes a part of the control, and lies upon it, that far from its edges in
    /// device-independent pixels.
    FocusRing(QWidget *control, int inset);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    const int m_inset;
};

} // namespace viewkit
