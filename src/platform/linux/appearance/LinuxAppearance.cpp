#include "platform/linux/appearance/LinuxAppearance.h"

#include "platform/linux/base/Session.h"

using namespace Qt::StringLiterals;

namespace
{
/// Whether Qt is to take its looks from that desktop. Users can choose another source.
bool takesLooksFrom(Desktop desktop, const QString &themeName,
                    const QProcessEnvironment &environment)
{
    const QString chosen = environment.value(u"QT_QPA_PLATFORMTHEME"_s);
    return currentDesktop(environment) == desktop && (chosen.isEmpty() || chosen == themeName);
}
} // namespace

LinuxAppearance::LinuxAppearance(const QProcessEnvironment &environment)
    : m_isLxqt(takesLooksFrom(Desktop::lxqt, u"lxqt"_s, environment))
{
    connect(&m_portal, &PortalColorScheme::changed, this, &LinuxAppearance::changed);
}

void LinuxAppearance::start()
{
    if (m_isLxqt) {
        m_configured = readLxqtLooks();
        Q_EMIT changed();
    }
    m_portal.start();
}
