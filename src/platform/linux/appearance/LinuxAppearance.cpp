#include "platform/linux/appearance/LinuxAppearance.h"

#include "platform/linux/appearance/GtkTheme.h"
#include "platform/linux/base/Session.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace
{
/// Where Qt is to take its looks from; nothing if that is no file of a desktop, or if the user has
/// chosen another source.
std::optional<LooksSource> looksSource(const QProcessEnvironment &environment)
{
    const auto desktop = currentDesktop(environment);
    const QString chosen = environment.value(u"QT_QPA_PLATFORMTHEME"_s);
    if (desktop == Desktop::lxqt && (chosen.isEmpty() || chosen == u"lxqt"))
        return LooksSource::lxqt;
    if (desktop == Desktop::plasma && (chosen.isEmpty() || chosen == u"kde"))
        return LooksSource::plasma;
    return {};
}
} // namespace

LinuxAppearance::LinuxAppearance(const QProcessEnvironment &environment)
    : m_source(looksSource(environment))
{
    connect(&m_portal, &PortalColorScheme::changed, this, &LinuxAppearance::changed);
    connect(&m_settings, &XSettings::changed, this, &LinuxAppearance::readTheme);
}

void LinuxAppearance::start()
{
    if (m_source)
        followLooks(*m_source);
    m_settings.start();
    readTheme();
    m_portal.start();
    m_gtkPanels.start();
}

void LinuxAppearance::followLooks(LooksSource source)
{
    const auto read = [this, source] {
        const ConfiguredLooks looks = readLooks(source);
        if (std::exchange(m_looks, looks) != looks)
            Q_EMIT changed();
    };
    m_files.emplace(looksFiles(source));
    connect(&*m_files, &FileWatch::changed, this, read);
    read();
}

void LinuxAppearance::readTheme()
{
    GtkTheme theme = readGtkTheme();
    if (!m_settings.themeName().isEmpty())
        theme.name = m_settings.themeName();
    const bool isThemeDark = isDark(theme);
    if (std::exchange(m_isThemeDark, isThemeDark) != isThemeDark)
        Q_EMIT changed();
}
