// Layouts that are needed up to date at once.
#pragma once

class QWidget;

namespace viewkit
{

/// The height that the widget needs at this width, with its current content.
int settledHeight(QWidget &widget, int width);

/// The height of a button with a text, in the desktop's style and font.
int buttonHeight();

} // namespace viewkit
