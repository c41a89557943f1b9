#include "platform/linux/tray/DBusMenu.h"

#include "DBusMenuAdaptor.h"

#include <QDBusConnection>
#include <QGuiApplication>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
const QString menuPath = u"/MenuBar"_s;
/// The id that com.canonical.dbusmenu reserves for the root.
constexpr int rootId = 0;

/// The properties of an item. An item always has the same set, because some desktops keep the old
/// value of a property that a later layout omits.
QVariantMap itemProperties(const MenuItem &item)
{
    if (item.isSeparator())
        return {{u"type"_s, u"separator"_s}};
    QString label = item.title;
    // A single underscore marks the following letter as the mnemonic.
    label.replace(u'_', u"__"_s);
    QVariantMap properties{{u"label"_s, label}, {u"enabled"_s, item.canBeChosen()}};
    if (item.isChecked) {
        properties.insert(u"toggle-type"_s, u"checkmark"_s);
        properties.insert(u"toggle-state"_s, *item.isChecked ? 1 : 0);
    }
    if (!item.keyEquivalent.isEmpty()) {
        // Use the key names of Qt programs; GTK desktops do not show the one for the comma.
        const QStringList press{u"Control"_s, item.keyEquivalent.toUpper()};
        properties.insert(u"shortcut"_s, QVariant::fromValue(QList<QStringList>{press}));
    }
    return properties;
}

/// The properties with these names; all if there are none.
QVariantMap chosen(const QVariantMap &properties, const QStringList &names)
{
    if (names.isEmpty())
        return properties;
    QVariantMap result;
    for (const QString &name : names) {
        if (properties.contains(name))
            result.insert(name, properties.value(name));
    }
    return result;
}
} // namespace

DBusMenu::DBusMenu(std::function<QList<MenuItem>()> content,
                   std::function<void(const MenuItem &)> choose)
    : m_content(std::move(content))
    , m_choose(std::move(choose))
{
    registerDBusMenuTypes();
    // The adaptor reads its properties from ours; one that we do not have is empty on the bus.
    setProperty("Version", 3U);
    setProperty("Status", u"normal"_s);
    new DBusMenuAdaptor(this);
    QDBusConnection::sessionBus().registerObject(menuPath, this);
}

QString DBusMenu::path()
{
    return menuPath;
}

QList<DBusMenu::Node> DBusMenu::nodesFor(const QList<MenuItem> &items)
{
    // An item keeps its id for as long as it exists, and ids are never reused: a desktop that still
    // shows an old menu can never choose another item than the one the user saw.
    QHash<std::pair<QString, int>, int> ids;
    QHash<QString, int> counts;
    QList<Node> nodes;
    for (const MenuItem &item : items) {
        const QString &knownBy =
            item.representedObject.isEmpty() ? item.title : item.representedObject;
        const std::pair key(knownBy, counts[knownBy]++);
        const int id = m_ids.contains(key) ? m_ids.value(key) : ++m_lastId;
        ids.insert(key, id);
        nodes << Node{id, item, itemProperties(item)};
    }
    m_ids = std::move(ids);
    return nodes;
}

bool DBusMenu::update()
{
    const QList<Node> former = std::exchange(m_nodes, nodesFor(m_content()));
    QHash<int, QVariantMap> formerProperties;
    for (const Node &node : former)
        formerProperties.insert(node.id, node.properties);
    QList<ItemProperties> changed;
    for (const Node &node : m_nodes) {
        const auto before = formerProperties.constFind(node.id);
        if (before != formerProperties.cend() && *before != node.properties)
            changed << ItemProperties{node.id, node.properties};
    }
    if (!changed.isEmpty())
        Q_EMIT ItemsPropertiesUpdated(changed, {});
    const bool isSameLayout = std::ranges::equal(former, m_nodes, {}, &Node::id, &Node::id);
    if (!isSameLayout)
        Q_EMIT LayoutUpdated(++m_revision, rootId);
    return !isSameLayout || !changed.isEmpty();
}

QString DBusMenu::textDirection()
{
    return QGuiApplication::isRightToLeft() ? u"rtl"_s : u"ltr"_s;
}

uint DBusMenu::GetLayout(int parent, int depth, const QStringList &names, LayoutNode &layout)
{
    const auto properties = propertiesOf(parent);
    if (!properties) {
        sendNoSuchItem();
        return {};
    }
    layout = {parent, chosen(*properties, names), {}};
    if (parent == rootId && depth != 0) {
        for (const Node &node : m_nodes)
            layout.children << QVariant::fromValue(
                LayoutNode{node.id, chosen(node.properties, names), {}});
    }
    return m_revision;
}

QList<ItemProperties> DBusMenu::GetGroupProperties(QList<int> ids, const QStringList &names)
{
    if (ids.isEmpty()) {
        ids << rootId;
        std::ranges::transform(m_nodes, std::back_inserter(ids), &Node::id);
    }
    QList<ItemProperties> items;
    for (const int id : ids) {
        if (const auto properties = propertiesOf(id))
            items << ItemProperties{id, chosen(*properties, names)};
    }
    return items;
}

QDBusVariant DBusMenu::GetProperty(int id, const QString &name)
{
    const auto properties = propertiesOf(id);
    if (properties && properties->contains(name))
        return QDBusVariant(properties->value(name));
    sendNoSuchItem();
    return {};
}

void DBusMenu::Event(int id, const QString &event, const QDBusVariant &, uint)
{
    const Node *const node = find(id);
    if (!node || event != u"clicked" || !node->item.canBeChosen())
        return;
    // Choose later, with a copy of the item: the answer must be sent first, and the action may
    // change the menu.
    const auto choose = [this, item = node->item] { m_choose(item); };
    QMetaObject::invokeMethod(this, choose, Qt::QueuedConnection);
}

QList<int> DBusMenu::EventGroup(const QList<ItemEvent> &events)
{
    QList<int> unknown;
    for (const ItemEvent &event : events) {
        if (event.id != rootId && !find(event.id))
            unknown << event.id;
        Event(event.id, event.name, event.data, event.time);
    }
    return unknown;
}

QList<int> DBusMenu::AboutToShowGroup(const QList<int> &ids, QList<int> &)
{
    const bool needUpdate = update();
    return needUpdate && ids.contains(rootId) ? QList{rootId} : QList<int>();
}

void DBusMenu::sendNoSuchItem() const
{
    sendErrorReply(QDBusError::InvalidArgs, u"There is no such item"_s);
}

const DBusMenu::Node *DBusMenu::find(int id) const
{
    const auto node = std::ranges::find(m_nodes, id, &Node::id);
    return node == m_nodes.cend() ? nullptr : &*node;
}

std::optional<QVariantMap> DBusMenu::propertiesOf(int id) const
{
    if (id == rootId)
        return QVariantMap{{u"children-display"_s, u"submenu"_s}};
    const Node *const node = find(id);
    return node ? std::optional(node->properties) : std::nullopt;
}
