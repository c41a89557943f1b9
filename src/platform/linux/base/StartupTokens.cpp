#include "platform/linux/base/StartupTokens.h"

using namespace Qt::StringLiterals;

namespace
{
const QString startupIdKey = u"desktop-startup-id"_s;
const QString activationTokenKey = u"activation-token"_s;
} // namespace

StartupTokens StartupTokens::takeFromEnvironment()
{
    const StartupTokens tokens{
        .startupId = qgetenv("DESKTOP_STARTUP_ID"),
        .activationToken = qgetenv("XDG_ACTIVATION_TOKEN"),
    };
    qunsetenv("DESKTOP_STARTUP_ID");
    qunsetenv("XDG_ACTIVATION_TOKEN");
    return tokens;
}

QVariantMap StartupTokens::toPlatformData() const
{
    QVariantMap data;
    if (!startupId.isEmpty())
        data.insert(startupIdKey, QString::fromUtf8(startupId));
    if (!activationToken.isEmpty())
        data.insert(activationTokenKey, QString::fromUtf8(activationToken));
    return data;
}

StartupTokens StartupTokens::fromPlatformData(const QVariantMap &data)
{
    return {
        .startupId = data.value(startupIdKey).toString().toUtf8(),
        .activationToken = data.value(activationTokenKey).toString().toUtf8(),
    };
}
