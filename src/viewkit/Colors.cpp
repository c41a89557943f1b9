#include "viewkit/Colors.h"

#include <QList>
#include <algorithm>
#include <cmath>

namespace viewkit
{

namespace
{
/// The minimum contrast between a text and its background: the 4.5 of WCAG 2 level AA, plus room
/// for rounding.
constexpr double minContrast = 4.6;

QColor mixed(const QColor &front, const QColor &back, float share)
{
    const auto mix = [share](float a, float b) { return a * share + b * (1 - share); };
    const QColor color =
        QColor::fromRgbF(mix(front.redF(), back.redF()), mix(front.greenF(), back.greenF()),
                         mix(front.blueF(), back.blueF()));
    // Rounded to 8 bits per channel, as on the screen.
    return color.rgb();
}

/// The relative luminance of WCAG 2.
double luminance(const QColor &color)
{
    const auto linear = [](double share) {
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF())
        + 0.0722 * linear(color.blueF());
}

double contrastRatio(const QColor &one, const QColor &other)
{
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

/// All colours that can be behind a text on this surface.
QList<QColor> backs(const QPalette &palette, Surface surface, QPalette::ColorGroup group)
{
    const auto color = [&](QPalette::ColorRole role) { return palette.color(group, role); };
    if (surface == Surface::window)
        return {color(QPalette::Window), color(QPalette::Base)};
    // The palette's colour, and the lighter one that styles paint buttons with.
    const QColor button = color(QPalette::Button);
    return {button, button.lighter(150)};
}

/// The wanted colour, with as little of the text colour mixed in as makes it legible on all
/// surfaces.
QColor legible(const QColor &wanted, const QColor &text, const QList<QColor> &surfaces)
{
    QColor color = wanted;
    for (int step = 1; step <= 10; ++step) {
        if (std::ranges::all_of(surfaces,
                                [&](const QColor &surface) { return isLegible(color, surface); }))
            break;
        color = mixed(text, wanted, float(step) / 10);
    }
    return color;
}
} // namespace

bool isDark(const QPalette &palette)
{
    return palette.color(QPalette::Active, QPalette::Window).lightness()
        < palette.color(QPalette::Active, QPalette::Text).lightness();
}

bool isLegible(const QColor &text, const QColor &back)
{
    return contrastRatio(text, back) >= minContrast;
}

QColor color(TextColor textColor, const QPalette &palette, Surface surface,
             QPalette::ColorGroup group)
{
    const QColor text = palette.color(group, QPalette::Text);
    const QColor window = palette.color(group, QPalette::Window);
    const auto paler = [&](float share) { return mixed(text, window, share); };
    const auto written = [&](const QColor &wanted) {
        return legible(wanted, text, backs(palette, surface, group));
    };
    const auto either = [&](const QColor &onLight, const QColor &onDark) {
        return written(isDark(palette) ? onDark : onLight);
    };
    switch (textColor) {
    case TextColor::secondary:
        return written(paler(0.64F));
    case TextColor::disabled:
        return written(paler(0.5F));
    case TextColor::line:
        return paler(0.25F);
    case TextColor::frame:
        return paler(0.35F);
    case TextColor::warning:
        return either(QColor(0xb0, 0x4a, 0x00), QColor(0xff, 0x9f, 0x40));
    case TextColor::error:
        return either(QColor(0xc0, 0x1c, 0x28), QColor(0xff, 0x7b, 0x72));
    }
    Q_UNREACHABLE();
}

} // namespace viewkit
