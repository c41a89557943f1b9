#include "viewkit/PlainStyle.h"

#include "viewkit/Colors.h"
#include "viewkit/DarkPalette.h"

#include <QPainter>
#include <QStyleOptionButton>

using namespace Qt::StringLiterals;

namespace viewkit
{

namespace
{
/// The corner radius of Fusion's buttons and fields.
constexpr qreal frameRadius = 2;

/// Whether Fusion frames the element in the accent colour.
bool isMarked(QStyle::PrimitiveElement element, const QStyleOption &option)
{
    const bool hasFocus = option.state & QStyle::State_HasFocus;
    if (element == QStyle::PE_FrameLineEdit)
        return hasFocus;
    const auto *const button = qstyleoption_cast<const QStyleOptionButton *>(&option);
    return button
        && (button->features & QStyleOptionButton::DefaultButton
            || (hasFocus && option.state & QStyle::State_KeyboardFocusChange));
}

/// The corner radius of the element's frame; nothing if it has no visible frame.
std::optional<qreal> radiusOfFrame(QStyle::PrimitiveElement element)
{
    switch (element) {
    case QStyle::PE_PanelButtonCommand:
    case QStyle::PE_FrameLineEdit:
        return frameRadius;
    case QStyle::PE_Frame:
    case QStyle::PE_PanelMenu:
    case QStyle::PE_IndicatorCheckBox:
        return 0;
    default:
        return std::nullopt;
    }
}

/// Gives disabled text a pale but legible colour.
void disable(QPalette &palette, QPalette::ColorRole role, Surface surface)
{
    palette.setColor(QPalette::Disabled, role, color(TextColor::disabled, palette, surface));
}

QColor darkened(QColor back, const QColor &text)
{
    for (int step = 0; step < 20 && !isLegible(text, back); ++step)
        back = back.darker(105);
    return back;
}

/// Adjusts the text on a dark palette and the background on a light one: on dark surfaces the
/// accent colour, which also marks the focus, has to stay light.
void makeSelectionLegible(QPalette &palette, QPalette::ColorGroup group)
{
    const QColor text = palette.color(group, QPalette::HighlightedText);
    const QColor back = palette.color(group, QPalette::Highlight);
    if (isLegible(text, back))
        return;
    if (isDark(palette))
        palette.setColor(group, QPalette::HighlightedText, palette.color(group, QPalette::Base));
    else
        palette.setColor(group, QPalette::Highlight, darkened(back, text));
}
} // namespace

PlainStyle::PlainStyle()
    : QProxyStyle(u"fusion"_s)
    , m_firstPalette(standardPalette())
{
}

void PlainStyle::polish(QPalette &palette)
{
    if (m_desktopPalette)
        palette = *m_desktopPalette;
    else if (isStandard(palette))
        palette = m_isDark ? darkPalette() : standardPalette();
    disable(palette, QPalette::WindowText, Surface::window);
    disable(palette, QPalette::Text, Surface::window);
    disable(palette, QPalette::ButtonText, Surface::button);
    for (const auto group : {QPalette::Active, QPalette::Inactive})
        makeSelectionLegible(palette, group);
}

/// Whether the desktop provides no palette. Where Qt knows GTK's theme, the standard palette
/// changes with it, but Qt keeps the first one, except for the colour of links.
bool PlainStyle::isStandard(const QPalette &palette) const
{
    QPalette first = m_firstPalette;
    first.setColor(QPalette::Link, palette.color(QPalette::Link));
    return palette == first || palette == standardPalette();
}

void PlainStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                               QPainter *painter, const QWidget *widget) const
{
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    const auto radius = radiusOfFrame(element);
    if (!radius || !isDark(option->palette) || isMarked(element, *option))
        return;
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(color(TextColor::frame, option->palette));
    painter->setBrush(Qt::NoBrush);
    painter->drawRoundedRect(QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5), *radius, *radius);
    painter->restore();
}

} // namespace viewkit
