// A sheet that informs the user or asks a question.
#pragma once

#include "viewkit/Item.h"

namespace viewkit
{

class Sheet;

struct AlertContent {
    QString title;
    QString message;
    /// A row of buttons.
    Item buttons;
    /// Called by the close button and Escape. The sheet closes only when this action or a button's
    /// closes it.
    Action cancel;
};

/// Show it with sheetWhen() or sheetFor().
Sheet *alert(const AlertContent &content, QWidget *owner);

} // namespace viewkit
