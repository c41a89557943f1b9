// A sheet that tells the user something, or asks.
#pragma once

#include "viewkit/Item.h"

namespace viewkit
{

class Sheet;

struct AlertContent {
    QString title;
    QString message;
    /// A row.
    Item buttons;
    /// What its close button and Escape do. Nothing closes it but what calls that or a button.
    Action cancel;
};

/// To be shown by sheetWhen() or sheetFor().
Sheet *alert(const AlertContent &content, QWidget *owner);

} // namespace viewkit
