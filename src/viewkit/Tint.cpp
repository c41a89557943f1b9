#include "viewkit/Tint.h"

#include <QWidget>
#include <memory>

namespace viewkit
{

Rule tint(QWidget *widget, QPalette::ColorRole role, TextColor textColor)
{
    const auto surface = role == QPalette::ButtonText ? Surface::button : Surface::window;
    // Computing a legible colour is expensive, so do it only when the palette changes.
    const auto known = std::make_shared<qint64>(0);
    return [widget, role, textColor, surface, known] {
        if (widget->palette().cacheKey() == *known)
            return;
        QPalette palette = widget->palette();
        for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
            const auto shown = group == QPalette::Disabled ? QPalette::Active : group;
            palette.setColor(group, role, color(textColor, palette, surface, shown));
        }
        widget->setPalette(palette);
        *known = widget->palette().cacheKey();
    };
}

} // namespace viewkit
