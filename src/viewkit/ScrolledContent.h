// Content that scrolls while its window is too low for it.
#pragma once

#include <QScrollArea>

namespace viewkit
{

class ScrolledContent : public QScrollArea
{
    Q_OBJECT

public:
    /// Takes ownership of the content. The area can be as low as that, in device-independent
    /// pixels.
    ScrolledContent(QWidget *content, int minHeight);

    /// The height at which nothing scrolls.
    int neededHeight(int width) const;

    QSize sizeHint() const override { return minimumSizeHint(); }
    QSize minimumSizeHint() const override;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    const int m_minHeight;
};

} // namespace viewkit
