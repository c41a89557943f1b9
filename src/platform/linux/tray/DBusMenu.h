// Exports the menu over the bus, for desktops to show by themselves: com.canonical.dbusmenu.
#pragma once

#include "platform/StatusBar.h"
#include "platform/linux/tray/DBusMenuTypes.h"

#include <QDBusContext>
#include <QHash>
#include <QObject>
#include <functional>

class DBusMenu : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_PROPERTY(QString TextDirection READ textDirection)

public:
    /// Registers the menu on the bus until it is destroyed. Calls content whenever the menu is
    /// about to be shown, and choose with the chosen item.
    DBusMenu(std::function<QList<MenuItem>()> content,
             std::function<void(const MenuItem &)> choose);

    /// The object path of the menu on the bus.
    static QString path();

    /// Announces changes to desktops. Returns whether anything has changed.
    bool update();

    // The generated adaptor calls these methods and passes these signals on, by their names on the
    // bus.
    uint GetLayout(int parent, int depth, const QStringList &names, LayoutNode &layout);
    QList<ItemProperties> GetGroupProperties(QList<int> ids, const QStringList &names);
    QDBusVariant GetProperty(int id, const QString &name);
    void Event(int id, const QString &event, const QDBusVariant &data, uint time);
    QList<int> EventGroup(const QList<ItemEvent> &events);
    bool AboutToShow(int) { return update(); }
    QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &errors);

Q_SIGNALS:
    void ItemsPropertiesUpdated(const QList<ItemProperties> &updated,
                                const QList<ItemPropertyNames> &removed);
    void LayoutUpdated(uint revision, int parent);

private:
    struct Node {
        int id;
        MenuItem item;
        QVariantMap properties;
    };

    static QString textDirection();
    QList<Node> nodesFor(const QList<MenuItem> &items);
    const Node *find(int id) const;
    std::optional<QVariantMap> propertiesOf(int id) const;
    void sendNoSuchItem() const;

    std::function<QList<MenuItem>()> m_content;
    std::function<void(const MenuItem &)> m_choose;
    QList<Node> m_nodes;
    /// Maps an item's identity, and the number of earlier items with the same identity, to its id.
    QHash<std::pair<QString, int>, int> m_ids;
    int m_lastId = 0;
    quint32 m_revision = 0;
};
