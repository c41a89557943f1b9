#include "viewkit/TextStyle.h"

#include <QFontDatabase>
#include <QGuiApplication>

namespace viewkit
{

namespace
{
struct Look {
    /// As a factor of the desktop's font size.
    qreal size;
    QFont::Weight weight;
};

/// The sizes are relative to a body text of size 13.
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
        return {11. / 13, QFont::Normal};
    case TextStyle::captionBold:
        return {11. / 13, QFont::Bold};
    case TextStyle::title2:
        return {17. / 13, QFont::Bold};
    case TextStyle::title3:
        return {15. / 13, QFont::Normal};
    }
    Q_UNREACHABLE();
}
} // namespace

QFont font(TextStyle style)
{
    const auto [size, weight] = look(style);
    QFont font = QGuiApplication::font();
    if (style == TextStyle::captionMonospaced)
        font.setFamilies(QFontDatabase::systemFont(QFontDatabase::FixedFont).families());
    // Desktops set either a point size or a pixel size.
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() * size);
    else
        font.setPixelSize(qRound(font.pixelSize() * size));
    if (weight != QFont::Normal)
        font.setWeight(weight);
    return font;
}

} // namespace viewkit
