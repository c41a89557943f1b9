#include "viewkit/SymbolView.h"

#include "symbols/SystemSymbol.h"

#include <QPainter>

namespace viewkit
{

SymbolView::SymbolView()
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void SymbolView::setSide(int side)
{
    if (m_side == side)
        return;
    m_side = side;
    m_image = {};
    updateGeometry();
}

void SymbolView::setSymbol(const QString &name)
{
    if (m_name == name)
        return;
    m_name = name;
    m_image = {};
    update();
}

void SymbolView::paintEvent(QPaintEvent *)
{
    const QColor color = palette().color(foregroundRole());
    if (m_image.isNull() || m_color != color || m_image.devicePixelRatio() != devicePixelRatioF()) {
        m_color = color;
        m_image = systemSymbol(m_name, color).pixmap({m_side, m_side}, devicePixelRatioF());
    }
    QPainter(this).drawPixmap((width() - m_side) / 2, (height() - m_side) / 2, m_image);
}

} // namespace viewkit
