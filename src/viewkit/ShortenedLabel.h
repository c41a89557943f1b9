// A text on one line that is elided in the middle if it does not fit.
#pragma once

#include <QLabel>

namespace viewkit
{

class ShortenedLabel : public QLabel
{
    Q_OBJECT

public:
    ShortenedLabel();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString shownText() const;
};

} // namespace viewkit
