// What a widget of our own is to screen readers.
#pragma once

#include <QAccessible>

namespace viewkit
{

/// The widget must not have been asked for its role before.
void setAccessibleRole(QWidget &widget, QAccessible::Role role);

} // namespace viewkit
