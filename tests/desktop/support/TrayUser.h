// A user who looks at the program's icon in the panel, and uses its menu with the mouse.
#pragma once

#include "support/Keyboard.h"
#include "support/Mouse.h"
#include "support/Screen.h"

#include <QImage>
#include <QRect>
#include <optional>

class TrayUser
{
public:
    TrayUser();

    /// Where the panel has its only icon; nothing if it has none or several.
    std::optional<QRect> icon() const;

    /// Where the open menu is, once it is drawn. No other window must be open.
    std::optional<QRect> menu() const;

    /// Awaits the icon.
    QRect awaitIcon() const;

    /// Awaits the icon, clicks it and awaits the menu. Where that is.
    QRect openMenu(Qt::MouseButton button = Qt::LeftButton);

    /// Click an item of the menu, which must be open.
    void clickFirstItem();
    void clickSecondItem();
    void clickLastItem();

    Keyboard keyboard;
    Mouse mouse;
    Screen screen;

private:
    /// So many pixels below its upper edge, or above its lower one if negative.
    void clickMenu(int distance);
};
