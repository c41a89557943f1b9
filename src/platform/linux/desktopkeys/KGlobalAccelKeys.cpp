#include "platform/linux/desktopkeys/KGlobalAccelKeys.h"

#include "platform/linux/base/ApplicationId.h"
#include "platform/linux/desktopkeys/ActionName.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusPendingReply>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
const QString globalAccelPath = u"/kglobalaccel"_s;
const QString globalAccelInterface = u"org.kde.KGlobalAccel"_s;

/// Such as "KWin: Close Window". Some components name no actions, and many programs have one action
/// with their own name.
std::optional<QString> nameOf(const QString &component, const QString &id, const QString &title)
{
    QStringList parts{component, title.isEmpty() ? wordsOf(id) : title};
    parts.removeAll(QString());
    parts.removeDuplicates();
    return actionName(parts.join(u": "_s));
}

/// The active keys of all shortcuts.
QList<DesktopKey> activeKeys(const QDBusMessage &shortcuts)
{
    QList<DesktopKey> found;
    if (shortcuts.signature() != u"a(ssssssaiai)")
        return found;
    const auto list = shortcuts.arguments().constFirst().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString id;
        QString title;
        QString componentId;
        QString component;
        QString other;
        QList<int> codes;
        list.beginStructure();
        // The ids and titles of the shortcut, its component and its context.
        list >> id >> title >> componentId >> component >> other >> other >> codes;
        list.endStructure();
        // Our own combinations are not used by others.
        if (componentId == applicationId)
            continue;
        const auto action = nameOf(component, id, title);
        for (const int code : codes) {
            if (const auto accelerator = qtAccelerator(code))
                found << DesktopKey{*accelerator, action};
        }
    }
    return found;
}
} // namespace

KGlobalAccelKeys::KGlobalAccelKeys()
    : DBusDesktopKeys(u"org.kde.kglobalaccel"_s)
{
}

void KGlobalAccelKeys::start()
{
    refreshOn(globalAccelPath, globalAccelInterface, u"yourShortcutsChanged"_s);
    DBusDesktopKeys::start();
}

void KGlobalAccelKeys::read()
{
    ask(globalAccelPath, globalAccelInterface, u"allComponents"_s, {},
        [this](const QDBusMessage &answer) { readComponents(answer); });
}

void KGlobalAccelKeys::readComponents(const QDBusMessage &paths)
{
    const QDBusPendingReply<QList<QDBusObjectPath>> components(paths);
    if (components.isError())
        return setKeys(std::nullopt);
    m_found.clear();
    m_unanswered = components.value().size();
    if (m_unanswered == 0)
        return setKeys(m_found);
    for (const QDBusObjectPath &component : components.value())
        ask(component.path(), u"org.kde.kglobalaccel.Component"_s, u"allShortcutInfos"_s, {},
            [this](const QDBusMessage &answer) { add(answer); });
}

void KGlobalAccelKeys::add(const QDBusMessage &shortcuts)
{
    m_found << activeKeys(shortcuts);
    if (--m_unanswered == 0)
        setKeys(std::exchange(m_found, {}));
}
