// Exports the menu over the bus, for desktops to show by themselves: com.canonical.dbusmenu.
#pragma once

#include "platform/StatusBar.h"
#include "platform/linux/base/DBusObject.h"

#include <QHash>
#include <QVariantMap>
#include <functional>

class DBusMenu : public DBusObject
{
    Q_OBJECT

public:
    /// Calls content whenever the menu is about to be shown, and choose with the chosen item.
    DBusMenu(std::function<QList<MenuItem>()> content,
             std::function<void(const MenuItem &)> choose);

    /// The object path of the menu on the bus.
    static QString path();

    /// Announces changes to desktops. Returns whether anything has changed.
    bool update();

private:
    struct Node {
        int id;
        MenuItem item;
        QVariantMap properties;
    };

    struct Method {
        QString signature;
        QDBusMessage (DBusMenu::*answer)(const QDBusMessage &call);
    };
    static const QHash<QString, Method> &methods();

    QVariantMap properties() const override;
    QDBusMessage answer(const QDBusMessage &call) override;
    QDBusMessage layout(const QDBusMessage &call);
    QDBusMessage groupProperties(const QDBusMessage &call);
    QDBusMessage property(const QDBusMessage &call);
    QDBusMessage event(const QDBusMessage &call);
    QDBusMessage eventGroup(const QDBusMessage &call);
    QDBusMessage aboutToShow(const QDBusMessage &call);
    QDBusMessage aboutToShowGroup(const QDBusMessage &call);

    QList<Node> nodesFor(const QList<MenuItem> &items);
    const Node *find(int id) const;
    std::optional<QVariantMap> propertiesOf(int id) const;
    void handleEvent(int id, const QString &event);

    std::function<QList<MenuItem>()> m_content;
    std::function<void(const MenuItem &)> m_choose;
    QList<Node> m_nodes;
    /// Maps an item's identity, and the number of earlier items with the same identity, to its id.
    QHash<std::pair<QString, int>, int> m_ids;
    int m_lastId = 0;
    quint32 m_revision = 0;
};
