#include "viewkit/Layouts.h"

#include <QApplication>
#include <QLayout>
#include <QStyle>
#include <QStyleOptionButton>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace viewkit
{

namespace
{
/// Updates the layouts of the widget and all its descendants now; Qt would do so on later turns of
/// the event loop, one level at a time.
void settleLayouts(QWidget &widget)
{
    for (QObject *const child : widget.children()) {
        if (auto *const part = qobject_cast<QWidget *>(child); part && !part->isWindow())
            settleLayouts(*part);
    }
    if (widget.layout())
        widget.layout()->activate();
}
} // namespace

int settledHeight(QWidget &widget, int width)
{
    settleLayouts(widget);
    return widget.hasHeightForWidth() ? widget.heightForWidth(width) : widget.sizeHint().height();
}

int buttonHeight()
{
    QStyleOptionButton option;
    option.fontMetrics = QFontMetrics(QApplication::font("QPushButton"));
    option.text = u"A"_s;
    const QSize text = option.fontMetrics.size(Qt::TextShowMnemonic, option.text);
    return QApplication::style()->sizeFromContents(QStyle::CT_PushButton, &option, text).height();
}

} // namespace viewkit
