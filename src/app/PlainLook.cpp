#include "app/PlainLook.h"

#include "platform/Appearance.h"
#include "viewkit/PlainStyle.h"

#include <QApplication>
#include <QFile>
#include <QFont>
#include <QIcon>
#include <QPalette>
#include <QStyle>
#include <algorithm>

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
bool isInstalled(const QString &iconTheme)
{
    const QStringList folders = QIcon::themeSearchPaths();
    return std::ranges::any_of(folders, [&iconTheme](const QString &folder) {
        return QFile::exists(folder + u'/' + iconTheme + u"/index.theme"_s);
    });
}

/// Without the desktop's icon theme Qt would use the fallback theme, and none if that is missing
/// too.
void provideFallbackIcons()
{
    const QStringList themes{u"Adwaita"_s, u"breeze"_s, u"hicolor"_s};
    const auto found = std::ranges::find_if(themes, isInstalled);
    if (found != themes.end())
        QIcon::setFallbackThemeName(*found);
}
} // namespace

PlainLook::PlainLook(Appearance &appearance)
    : m_appearance(appearance)
{
    provideFallbackIcons();
    connect(&appearance, &Appearance::changed, this, &PlainLook::update);
    if (QApplication::style()->name() == u"fusion") {
        m_style = new PlainStyle;
        QApplication::setStyle(m_style);
    }
    update();
}

void PlainLook::update()
{
    if (const QString icons = m_appearance.iconTheme(); !icons.isEmpty())
        QIcon::setThemeName(icons);
    if (const auto font = m_appearance.font())
        QApplication::setFont(*font);
    if (!m_style)
        return;
    m_style->setDesktopPalette(m_appearance.palette());
    m_style->setDark(m_appearance.prefersDark());
    // An empty palette selects the desktop's palette, or else the style's.
    QApplication::setPalette(QPalette());
}
