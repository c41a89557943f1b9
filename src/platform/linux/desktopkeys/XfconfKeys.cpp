#include "platform/linux/desktopkeys/XfconfKeys.h"

#include "platform/linux/desktopkeys/ActionName.h"

#include <QDBusPendingReply>
#include <QVariantMap>

using namespace Qt::StringLiterals;

namespace
{
const QString xfconfPath = u"/org/xfce/Xfconf"_s;
const QString xfconfInterface = u"org.xfce.Xfconf"_s;
const QString shortcutsChannel = u"xfce4-keyboard-shortcuts"_s;
const QString commandsFolder = u"/commands/"_s;
const QString windowManagerFolder = u"/xfwm4/"_s;

bool counts(const QVariant &action)
{
    return action.metaType() == QMetaType::fromType<QString>() && !action.toString().isEmpty()
        && !callsUs(action.toString());
}

/// The user's shortcuts, if there are any, replace all default ones of the desktop.
QList<DesktopKey> keysIn(const QString &folder, const QVariantMap &settings)
{
    const bool hasOwn = settings.value(folder + u"custom/override"_s) == QVariant(true);
    const QString prefix = folder + (hasOwn ? u"custom/"_s : u"default/"_s);
    QList<DesktopKey> found;
    for (auto it = settings.lowerBound(prefix); it != settings.end(); ++it) {
        if (!it.key().startsWith(prefix))
            break;
        const auto accelerator = gtkAccelerator(it.key().sliced(prefix.size()));
        if (!accelerator || !counts(it.value()))
            continue;
        const QString action = it.value().toString();
        found << DesktopKey{*accelerator,
                            actionName(folder == windowManagerFolder ? wordsOf(action) : action)};
    }
    return found;
}
} // namespace

XfconfKeys::XfconfKeys()
    : DBusDesktopKeys(u"org.xfce.Xfconf"_s)
{
}

void XfconfKeys::start()
{
    refreshOn(xfconfPath, xfconfInterface, u"PropertyChanged"_s, {shortcutsChannel});
    refreshOn(xfconfPath, xfconfInterface, u"PropertyRemoved"_s, {shortcutsChannel});
    DBusDesktopKeys::start();
}

void XfconfKeys::read()
{
    ask(xfconfPath, xfconfInterface, u"GetAllProperties"_s, {shortcutsChannel, u"/"_s},
        [this](const QDBusMessage &answer) {
            const QDBusPendingReply<QVariantMap> settings(answer);
            if (settings.isError())
                return setKeys(std::nullopt);
            setKeys(keysIn(commandsFolder, settings.value())
                    + keysIn(windowManagerFolder, settings.value()));
        });
}
