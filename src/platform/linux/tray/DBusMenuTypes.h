// The compound types of com.canonical.dbusmenu.
#pragma once

#include <QDBusArgument>
#include <QStringList>
#include <QVariantMap>

/// (ia{sv}av): an item with its children, each of them a LayoutNode too.
struct LayoutNode {
    int id;
    QVariantMap properties;
    QVariantList children;
};

/// (ia{sv}): the properties of an item.
struct ItemProperties {
    int id;
    QVariantMap properties;
};

/// (ias): the properties that an item no longer has.
struct ItemPropertyNames {
    int id;
    QStringList names;
};

/// (isvu): an event of an item.
struct ItemEvent {
    int id;
    QString name;
    QDBusVariant data;
    quint32 time;
};

QDBusArgument &operator<<(QDBusArgument &argument, const LayoutNode &node);
const QDBusArgument &operator>>(const QDBusArgument &argument, LayoutNode &node);
QDBusArgument &operator<<(QDBusArgument &argument, const ItemProperties &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, ItemProperties &item);
QDBusArgument &operator<<(QDBusArgument &argument, const ItemPropertyNames &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, ItemPropertyNames &item);
QDBusArgument &operator<<(QDBusArgument &argument, const ItemEvent &event);
const QDBusArgument &operator>>(const QDBusArgument &argument, ItemEvent &event);

/// Must be called before any of these types is sent or received.
void registerDBusMenuTypes();
