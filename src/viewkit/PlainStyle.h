// The style of desktops that have none of their own: Fusion, which Qt brings along, with a dark
// palette as well, and without what it leaves too faint: the texts of disabled controls and of what
// is selected, and the frames of controls on dark surfaces.
#pragma once

#include <QProxyStyle>

namespace viewkit
{

class PlainStyle final : public QProxyStyle
{
    Q_OBJECT

public:
    PlainStyle();

    /// Whether desktops that have no palette either get the dark one. Who changes that has the
    /// palette polished anew.
    void setDark(bool isDark) { m_isDark = isDark; }

    using QProxyStyle::polish;
    void polish(QPalette &palette) override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;

private:
    bool m_isDark = false;
};

} // namespace viewkit
