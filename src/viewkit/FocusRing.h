// A line around the focused control, for controls that some styles paint the same with and without
// the focus.
#pragma once

#include <QWidget>

namespace viewkit
{

class FocusRing : public QWidget
{
    Q_OBJECT

public:
    /// The ring becomes a child of the control and is drawn over it, inset by this many
    /// device-independent pixels.
    FocusRing(QWidget *control, int inset);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    const int m_inset;
};

} // namespace viewkit
