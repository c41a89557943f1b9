// An on/off switch: a check box whose look says that it takes effect at once.
#pragma once

#include <QCheckBox>

namespace viewkit
{

class Switch : public QCheckBox
{
    Q_OBJECT

public:
    Switch();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool hitButton(const QPoint &place) const override { return rect().contains(place); }
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
};

} // namespace viewkit
