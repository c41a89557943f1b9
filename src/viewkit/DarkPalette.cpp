#include "viewkit/DarkPalette.h"

#include <array>

namespace viewkit
{

namespace
{
struct Shade {
    QPalette::ColorRole role;
    QRgb color;
    QRgb whenDisabled;
};

constexpr QRgb darkWindow = 0x353535;
constexpr QRgb darkText = 0xeeeeee;
constexpr QRgb darkDisabledText = 0x999999;
/// Light, so that the focus is visible.
constexpr QRgb darkAccent = 0x5ba3ea;

constexpr std::array darkShades{
    Shade{QPalette::Window, darkWindow, darkWindow},
    Shade{QPalette::WindowText, darkText, darkDisabledText},
    Shade{QPalette::Base, 0x1e1e1e, 0x2b2b2b},
    Shade{QPalette::AlternateBase, 0x262626, 0x303030},
    Shade{QPalette::Text, darkText, darkDisabledText},
    Shade{QPalette::PlaceholderText, 0xa6a6a6, darkDisabledText},
    Shade{QPalette::Button, 0x383838, darkWindow},
    Shade{QPalette::ButtonText, darkText, darkDisabledText},
    Shade{QPalette::BrightText, 0xffffff, 0xffffff},
    Shade{QPalette::Light, 0x565656, 0x565656},
    Shade{QPalette::Midlight, 0x464646, 0x464646},
    Shade{QPalette::Mid, 0x2a2a2a, 0x2a2a2a},
    Shade{QPalette::Dark, 0x1c1c1c, 0x1c1c1c},
    Shade{QPalette::Shadow, 0x000000, 0x000000},
    Shade{QPalette::Highlight, darkAccent, 0x484848},
    Shade{QPalette::HighlightedText, 0x14191e, darkDisabledText},
    Shade{QPalette::Link, 0x7fb5f5, darkDisabledText},
    Shade{QPalette::LinkVisited, 0xc0a5f0, darkDisabledText},
    Shade{QPalette::ToolTipBase, 0x454545, 0x454545},
    Shade{QPalette::ToolTipText, darkText, darkText},
};
} // namespace

QPalette darkPalette()
{
    QPalette palette;
    for (const auto &[role, color, whenDisabled] : darkShades) {
        palette.setColor(QPalette::Active, role, color);
        palette.setColor(QPalette::Inactive, role, color);
        palette.setColor(QPalette::Disabled, role, whenDisabled);
    }
    return palette;
}

} // namespace viewkit
