// Layouts that have to be right at once.
#pragma once

class QWidget;

namespace viewkit
{

/// Brings the layouts of the widget and of all in it up to date; Qt does so on later turns of the
/// event loop, one level at a time.
void settleLayouts(QWidget &widget);

/// The height that the widget wants at that width, with all that it shows now.
int settledHeight(QWidget &widget, int width);

/// Of one with a text, in the desktop's style and font.
int buttonHeight();

} // namespace viewkit
