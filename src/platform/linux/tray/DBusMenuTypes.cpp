#include "platform/linux/tray/DBusMenuTypes.h"

#include "platform/linux/base/DBusStructure.h"

#include <QDBusMetaType>

QDBusArgument &operator<<(QDBusArgument &argument, const LayoutNode &node)
{
    return writeStructure(argument, node.id, node.properties, node.children);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, LayoutNode &node)
{
    return readStructure(argument, node.id, node.properties, node.children);
}

QDBusArgument &operator<<(QDBusArgument &argument, const ItemProperties &item)
{
    return writeStructure(argument, item.id, item.properties);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, ItemProperties &item)
{
    return readStructure(argument, item.id, item.properties);
}

QDBusArgument &operator<<(QDBusArgument &argument, const ItemPropertyNames &item)
{
    return writeStructure(argument, item.id, item.names);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, ItemPropertyNames &item)
{
    return readStructure(argument, item.id, item.names);
}

QDBusArgument &operator<<(QDBusArgument &argument, const ItemEvent &event)
{
    return writeStructure(argument, event.id, event.name, event.data, event.time);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, ItemEvent &event)
{
    return readStructure(argument, event.id, event.name, event.data, event.time);
}

void registerDBusMenuTypes()
{
    qDBusRegisterMetaType<LayoutNode>();
    qDBusRegisterMetaType<ItemProperties>();
    qDBusRegisterMetaType<QList<ItemProperties>>();
    qDBusRegisterMetaType<ItemPropertyNames>();
    qDBusRegisterMetaType<QList<ItemPropertyNames>>();
    qDBusRegisterMetaType<ItemEvent>();
    qDBusRegisterMetaType<QList<ItemEvent>>();
    // Key equivalents: a list of key presses, each a list of keys.
    qDBusRegisterMetaType<QList<QStringList>>();
}
