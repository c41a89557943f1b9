#include "viewkit/Alert.h"

#include "viewkit/AccessibleRole.h"
#include "viewkit/Sheet.h"
#include "viewkit/View.h"

#include <QPushButton>

namespace viewkit
{

namespace
{
constexpr int alertWidth = 400;

/// The space bar is to do what Return does, and not what the first button happens to be.
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
    // What screen readers say when it opens, besides its title.
    sheet->setAccessibleDescription(content.message);
    focusDefaultButton(*view);
    return sheet;
}

} // namespace viewkit
