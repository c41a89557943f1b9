#include "platform/linux/tray/DBusMenuTypes.h"

#include <QDBusMetaType>

namespace
{
template <typename... Members>
QDBusArgument &write(QDBusArgument &argument, const Members &...members)
{
    argument.beginStructure();
    (argument << ... << members);
    argument.endStructure();
    return argument;
}

template <typename... Members>
const QDBusArgument &read(const QDBusArgument &argument, Members &...members)
{
    argument.beginStructure();
    (argument >> ... >> members);
    argument.endStructure();
    return argument;
}
} // namespace

QDBusArgument &operator<<(QDBusArgument &argument, const LayoutNode &node)
{
    return write(argument, node.id, node.properties, node.children);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, LayoutNode &node)
{
    return read(argument, node.id, node.properties, node.children);
}

QDBusArgument &operator<<(QDBusArgument &argument, const ItemProperties &item)
{
    return write(argument, item.id, item.properties);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, ItemProperties &item)
{
    return read(argument, item.id, item.properties);
}

QDBusArgument &operator<<(QDBusArgument &argument, const ItemPropertyNames &item)
{
    return write(argument, item.id, item.names);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, ItemPropertyNames &item)
{
    return read(argument, item.id, item.names);
}

QDBusArgument &operator<<(QDBusArgument &argument, const ItemEvent &event)
{
    return write(argument, event.id, event.name, event.data, event.time);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, ItemEvent &event)
{
    return read(argument, event.id, event.name, event.data, event.time);
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
