#include "app/PlainLook.h"

#include "platform/Appearance.h"
#include "viewkit/PlainStyle.h"

#include <QApplication>
#include <QStyle>

using namespace viewkit;

PlainLook::PlainLook(Appearance &appearance)
    : m_appearance(appearance)
{
    connect(&appearance, &Appearance::changed, this, &PlainLook::update);
    if (QApplication::style()->name() == u"fusion") {
        m_style = new PlainStyle;
        QApplication::setStyle(m_style);
    }
    update();
}

void PlainLook::update()
{
    if (!m_style)
        return;
    m_style->setDark(m_appearance.prefersDark());
    // An empty palette selects the desktop's palette, or else the style's.
    QApplication::setPalette(QPalette());
}
