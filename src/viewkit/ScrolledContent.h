// Content that scrolls while its window is too low for it.
#pragma once

#include <QScrollArea>

namespace viewkit
{

/// Needs the height of its content as a rule, so that nothing scrolls; a window may give it less.
class ScrolledContent : public QScrollArea
{
    Q_OBJECT

public:
    /// Takes ownership of the content.
    explicit ScrolledContent(QWidget *content);

    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize sizeHint() const override { return minimumSizeHint(); }
    QSize minimumSizeHint() const override;

    bool eventFilter(QObject *watched, QEvent *event) override;
};

} // namespace viewkit
