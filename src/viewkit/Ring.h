// A line around a widget, in the colour of selections, drawn over its content.
#pragma once

#include <QWidget>

namespace viewkit
{

class Ring : public QWidget
{
    Q_OBJECT

public:
    /// The ring becomes a child of the widget and is drawn over it, inset by this many
    /// device-independent pixels.
    Ring(QWidget *widget, int inset);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    const int m_inset;
};

} // namespace viewkit
