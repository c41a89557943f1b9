#include "viewkit/Alert.h"

#include "viewkit/AccessibleRole.h"
#include "viewkit/Sheet.h"
#include "viewkit/View.h"

#include <QPushButton>

namespace viewkit
{

namespace
{
/// Chosen by eye: wide enough for the longest title of an alert on one line.
constexpr int alertWidth = 400;

/// Makes the space bar press the default button, as Return does, and not whichever button comes
/// first.
void focusDefaultButton(const QWidget &view)
{
    for (auto *const button : view.findChildren<QPushButton *>()) {
        if (button->isDefault())
            button->setFocus();
    }
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
    focusDefaultButton(*view);
    return sheet;
}

} // namespace viewkit
