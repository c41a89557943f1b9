// A text wrapped over as many lines as needed; it breaks within words that are too long for a line.
#pragma once

#include <QLabel>

class QTextLayout;

namespace viewkit
{

class Paragraph : public QLabel
{
    Q_OBJECT

public:
    Paragraph();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    int layOut(QTextLayout &layout, int width) const;
};

} // namespace viewkit
