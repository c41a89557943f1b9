#include "platform/linux/tray/DBusMenu.h"

#include "platform/linux/tray/DBusMenuTypes.h"

#include <QDBusMessage>
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

QDBusMessage noSuchItem(const QDBusMessage &call)
{
    return call.createErrorReply(QDBusError::InvalidArgs, u"There is no such item"_s);
}

const QString menuIntrospection = uR"xml(
<interface name="com.canonical.dbusmenu">
 <property name="Version" type="u" access="read"/>
 <property name="Status" type="s" access="read"/>
 <property name="TextDirection" type="s" access="read"/>
 <property name="IconThemePath" type="as" access="read"/>
 <method name="GetLayout">
  <arg type="i" name="parentId" direction="in"/>
  <arg type="i" name="recursionDepth" direction="in"/>
  <arg type="as" name="propertyNames" direction="in"/>
  <arg type="u" name="revision" direction="out"/>
  <arg type="(ia{sv}av)" name="layout" direction="out"/>
 </method>
 <method name="GetGroupProperties">
  <arg type="ai" name="ids" direction="in"/>
  <arg type="as" name="propertyNames" direction="in"/>
  <arg type="a(ia{sv})" name="properties" direction="out"/>
 </method>
 <method name="GetProperty">
  <arg type="i" name="id" direction="in"/>
  <arg type="s" name="name" direction="in"/>
  <arg type="v" name="value" direction="out"/>
 </method>
 <method name="Event">
  <arg type="i" name="id" direction="in"/>
  <arg type="s" name="eventId" direction="in"/>
  <arg type="v" name="data" direction="in"/>
  <arg type="u" name="timestamp" direction="in"/>
 </method>
 <method name="EventGroup">
  <arg type="a(isvu)" name="events" direction="in"/>
  <arg type="ai" name="idErrors" direction="out"/>
 </method>
 <method name="AboutToShow">
  <arg type="i" name="id" direction="in"/>
  <arg type="b" name="needUpdate" direction="out"/>
 </method>
 <method name="AboutToShowGroup">
  <arg type="ai" name="ids" direction="in"/>
  <arg type="ai" name="updatesNeeded" direction="out"/>
  <arg type="ai" name="idErrors" direction="out"/>
 </method>
 <signal name="LayoutUpdated">
  <arg type="u" name="revision"/>
  <arg type="i" name="parent"/>
 </signal>
 <signal name="ItemsPropertiesUpdated">
  <arg type="a(ia{sv})" name="updatedProps"/>
  <arg type="a(ias)" name="removedProps"/>
 </signal>
</interface>
)xml"_s;
} // namespace

DBusMenu::DBusMenu(std::function<QList<MenuItem>()> content,
                   std::function<void(const MenuItem &)> choose)
    : DBusObject(menuPath, u"com.canonical.dbusmenu"_s, menuIntrospection)
    , m_content(std::move(content))
    , m_choose(std::move(choose))
{
    registerDBusMenuTypes();
}

const QHash<QString, DBusMenu::Method> &DBusMenu::methods()
{
    static const QHash<QString, Method> methods{
        {u"GetLayout"_s, {u"iias"_s, &DBusMenu::layout}},
        {u"GetGroupProperties"_s, {u"aias"_s, &DBusMenu::groupProperties}},
        {u"GetProperty"_s, {u"is"_s, &DBusMenu::property}},
        {u"Event"_s, {u"isvu"_s, &DBusMenu::event}},
        {u"EventGroup"_s, {u"a(isvu)"_s, &DBusMenu::eventGroup}},
        {u"AboutToShow"_s, {u"i"_s, &DBusMenu::aboutToShow}},
        {u"AboutToShowGroup"_s, {u"ai"_s, &DBusMenu::aboutToShowGroup}},
    };
    return methods;
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
        emitSignal(u"ItemsPropertiesUpdated"_s,
                   {QVariant::fromValue(changed), QVariant::fromValue(QList<ItemPropertyNames>())});
    const bool isSameLayout = std::ranges::equal(former, m_nodes, {}, &Node::id, &Node::id);
    if (!isSameLayout)
        emitSignal(u"LayoutUpdated"_s, {++m_revision, rootId});
    return !isSameLayout || !changed.isEmpty();
}

QVariantMap DBusMenu::properties() const
{
    return {
        {u"Version"_s, 3U},
        {u"Status"_s, u"normal"_s},
        {u"TextDirection"_s, QGuiApplication::isRightToLeft() ? u"rtl"_s : u"ltr"_s},
        {u"IconThemePath"_s, QStringList()},
    };
}

QDBusMessage DBusMenu::answer(const QDBusMessage &call)
{
    const auto method = methods().constFind(call.member());
    if (method == methods().cend() || method->signature != call.signature())
        return unknownMethod(call);
    return (this->*method->answer)(call);
}

QDBusMessage DBusMenu::layout(const QDBusMessage &call)
{
    const int parent = call.arguments().value(0).toInt();
    const bool isDeep = call.arguments().value(1).toInt() != 0;
    const auto names = call.arguments().value(2).toStringList();
    const auto properties = propertiesOf(parent);
    if (!properties)
        return noSuchItem(call);
    LayoutNode layout{parent, chosen(*properties, names), {}};
    if (parent == rootId && isDeep) {
        for (const Node &node : m_nodes)
            layout.children << QVariant::fromValue(
                LayoutNode{node.id, chosen(node.properties, names), {}});
    }
    return call.createReply({m_revision, QVariant::fromValue(layout)});
}

QDBusMessage DBusMenu::groupProperties(const QDBusMessage &call)
{
    auto ids = qdbus_cast<QList<int>>(call.arguments().value(0));
    const auto names = call.arguments().value(1).toStringList();
    if (ids.isEmpty()) {
        ids << rootId;
        std::ranges::transform(m_nodes, std::back_inserter(ids), &Node::id);
    }
    QList<ItemProperties> items;
    for (const int id : ids) {
        if (const auto properties = propertiesOf(id))
            items << ItemProperties{id, chosen(*properties, names)};
    }
    return call.createReply(QVariant::fromValue(items));
}

QDBusMessage DBusMenu::property(const QDBusMessage &call)
{
    const auto properties = propertiesOf(call.arguments().value(0).toInt());
    const QString name = call.arguments().value(1).toString();
    if (!properties || !properties->contains(name))
        return noSuchItem(call);
    return call.createReply(QVariant::fromValue(QDBusVariant(properties->value(name))));
}

QDBusMessage DBusMenu::event(const QDBusMessage &call)
{
    handleEvent(call.arguments().value(0).toInt(), call.arguments().value(1).toString());
    return call.createReply();
}

QDBusMessage DBusMenu::eventGroup(const QDBusMessage &call)
{
    QList<int> unknown;
    for (const ItemEvent &event : qdbus_cast<QList<ItemEvent>>(call.arguments().value(0))) {
        if (event.id != rootId && !find(event.id))
            unknown << event.id;
        handleEvent(event.id, event.name);
    }
    return call.createReply(QVariant::fromValue(unknown));
}

QDBusMessage DBusMenu::aboutToShow(const QDBusMessage &call)
{
    return call.createReply(update());
}

QDBusMessage DBusMenu::aboutToShowGroup(const QDBusMessage &call)
{
    const auto ids = qdbus_cast<QList<int>>(call.arguments().value(0));
    const bool needUpdate = update();
    const QList<int> updated = needUpdate && ids.contains(rootId) ? QList{rootId} : QList<int>();
    return call.createReply({QVariant::fromValue(updated), QVariant::fromValue(QList<int>())});
}

void DBusMenu::handleEvent(int id, const QString &event)
{
    const Node *const node = find(id);
    if (!node || event != u"clicked" || !node->item.canBeChosen())
        return;
    // Choose later, with a copy of the item: the answer must be sent first, and the action may
    // change the menu.
    const auto choose = [this, item = node->item] { m_choose(item); };
    QMetaObject::invokeMethod(this, choose, Qt::QueuedConnection);
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
