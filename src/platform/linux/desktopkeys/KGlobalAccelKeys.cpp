#include "platform/linux/desktopkeys/KGlobalAccelKeys.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusPendingReply>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{
const QString globalAccelPath = u"/kglobalaccel"_s;
const QString globalAccelInterface = u"org.kde.KGlobalAccel"_s;

/// The active keys of all shortcuts, as Qt's key codes.
QList<int> activeKeys(const QDBusMessage &shortcuts)
{
    QList<int> found;
    if (shortcuts.signature() != u"a(ssssssaiai)")
        return found;
    const auto list = shortcuts.arguments().constFirst().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString name;
        QList<int> keys;
        list.beginStructure();
        // The ids and titles of the shortcut, its component and its context.
        list >> name >> name >> name >> name >> name >> name >> keys;
        list.endStructure();
        found << keys;
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
        return setAccelerators(std::nullopt);
    m_found.clear();
    m_unanswered = components.value().size();
    if (m_unanswered == 0)
        return setAccelerators(m_found);
    for (const QDBusObjectPath &component : components.value())
        ask(component.path(), u"org.kde.kglobalaccel.Component"_s, u"allShortcutInfos"_s, {},
            [this](const QDBusMessage &answer) { add(answer); });
}

void KGlobalAccelKeys::add(const QDBusMessage &shortcuts)
{
    for (const int key : activeKeys(shortcuts)) {
        if (const auto accelerator = qtAccelerator(key))
            m_found << *accelerator;
    }
    if (--m_unanswered == 0)
        setAccelerators(std::exchange(m_found, {}));
}
