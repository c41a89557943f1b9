// Sets the role that a widget reports to screen readers.
#pragma once

#include <QAccessible>

namespace viewkit
{

/// Call this before anything asks for the widget's accessible interface, because Qt caches that.
void setAccessibleRole(QWidget &widget, QAccessible::Role role);

} // namespace viewkit
