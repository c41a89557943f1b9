// The style for desktops that provide none: Qt's Fusion, with an optional dark palette. It
// strengthens what Fusion leaves too faint: the text of disabled controls, selected text, and the
// frames of controls on dark surfaces.
#pragma once

#include <QPalette>
#include <QProxyStyle>
#include <optional>

namespace viewkit
{

class PlainStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    PlainStyle();

    /// Sets the palette that replaces Qt's, if any. Afterwards the caller has to have the palette
    /// polished again, as after setDark().
    void setDesktopPalette(const std::optional<QPalette> &palette) { m_desktopPalette = palette; }

    /// Sets whether the dark palette is used if the desktop provides no palette either.
    void setDark(bool isDark) { m_isDark = isDark; }

    using QProxyStyle::polish;
    void polish(QPalette &palette) override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;

private:
    bool isStandard(const QPalette &palette) const;

    const QPalette m_firstPalette;
    std::optional<QPalette> m_desktopPalette;
    bool m_isDark = false;
};

} // namespace viewkit
