#include "viewkit/Alert.h"

#include "viewkit/AccessibleRole.h"
#include "viewkit/Sheet.h"
#include "viewkit/View.h"

#include <QPushButton>
#include <algorithm>

namespace viewkit
{

namespace
{
/// Chosen by eye: wide enough for the longest title of an alert on one line.
constexpr int alertWidth = 400;

/// Makes the default button the first one for the keyboard and for screen readers, wherever it is
/// on the screen: the space bar presses it, as Return does.
void putDefaultButtonFirst(const QWidget &view)
{
    const auto buttons = view.findChildren<QPushButton *>();
    auto *const first = *std::ranges::find_if(buttons, &QPushButton::isDefault);
    // Screen readers follow the order of the children, which is that of their stacking.
    first->lower();
    for (auto *const button : buttons) {
        if (button != first)
            QWidget::setTabOrder(first, button);
    }
    first->setFocus();
}
} // namespace

Sheet *alert(const AlertContent &content, QWidget *owner)
{
    auto *const view = new View;
    view->setMinimumWidth(alertWidth);
    view->setBody(Column{
        padding(20),
        spacing(12),
        paragraph(TextStyle::headline, content.title),
        paragraph(TextStyle::body, content.message),
        content.buttons,
    });
    auto *const sheet = new Sheet(content.title, view, content.cancel, owner);
    setAccessibleRole(*sheet, QAccessible::AlertMessage);
    // Screen readers speak this after the title when the alert opens.
    sheet->setAccessibleDescription(content.message);
    putDefaultButtonFirst(*view);
    return sheet;
}

} // namespace viewkit
