// A text on one line that is shortened in the middle where there is too little room for it.
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
