#include "viewkit/TextStyle.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QPalette>

namespace
{
struct Look {
    /// Of the desktop's own size.
    qreal size;
    QFont::Weight weight;
};

Look look(TextStyle style)
{
    switch (style) {
    case TextStyle::body:
        return {1, QFont::Normal};
    case TextStyle::headline:
        return {1, QFont::Bold};
    case TextStyle::callout:
        return {12. / 13, QFont::Normal};
    case TextStyle::caption:
    case TextStyle::captionMonospaced:
        return {10. / 13, QFont::Normal};
    case TextStyle::captionBold:
        return {10. / 13, QFont::Bold};
    case TextStyle::title2:
        return {17. / 13, QFont::Bold};
    case TextStyle::title3:
        return {15. / 13, QFont::Normal};
    }
    Q_UNREACHABLE();
}

/// How much of the text's colour the paler one has; the rest is the background's.
constexpr float secondaryShare = 0.64F;

QColor mixed(const QColor &front, const QColor &back, float share)
{
    const auto mix = [share](float a, float b) { return a * share + b * (1 - share); };
    return QColor::fromRgbF(mix(front.redF(), back.redF()), mix(front.greenF(), back.greenF()),
                            mix(front.blueF(), back.blueF()));
}
} // namespace

QFont font(TextStyle style)
{
    const auto [size, weight] = look(style);
    QFont font = QGuiApplication::font();
    if (style == TextStyle::captionMonospaced)
        font.setFamilies(QFontDatabase::systemFont(QFontDatabase::FixedFont).families());
    // Desktops give one or the other.
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * size);
    else
        font.setPixelSize(qRound(font.pixelSize() * size));
    if (weight != QFont::Normal)
        font.setWeight(weight);
    return font;
}

QColor color(Ink ink, const QPalette &palette)
{
    const QColor text = palette.color(QPalette::Active, QPalette::Text);
    const QColor window = palette.color(QPalette::Active, QPalette::Window);
    const bool isDark = window.lightness() < text.lightness();
    switch (ink) {
    case Ink::secondary:
        return mixed(text, window, secondaryShare);
    case Ink::warning:
        return isDark ? QColor(0xff, 0x9f, 0x40) : QColor(0xb0, 0x4a, 0x00);
    case Ink::error:
        return isDark ? QColor(0xff, 0x7b, 0x72) : QColor(0xc0, 0x1c, 0x28);
    }
    Q_UNREACHABLE();
}
