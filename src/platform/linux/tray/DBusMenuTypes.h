// The compound values of com.canonical.dbusmenu.
#pragma once

#include <QDBusArgument>
#include <QStringList>
#include <QVariantMap>

/// (ia{sv}av): an item with what is below it, each of them a LayoutNode again.
struct LayoutNode {
    int id;
    QVariantMap properties;
    QVariantList children;
};

/// (ia{sv}): properties of an item.
struct ItemProperties {
    int id;
    QVariantMap properties;
};

/// (ias): properties that an item has no more.
struct ItemPropertyNames {
    int id;
    QStringList names;
};

/// (isvu): what happened to an item.
struct ItemEvent {
    int id;
    QString name;
    QDBusVariant data;
    quint32 time;
};

Q_DECLARE_METATYPE(LayoutNode)
Q_DECLARE_METATYPE(ItemProperties)
Q_DECLARE_METATYPE(ItemPropertyNames)
Q_DECLARE_METATYPE(ItemEvent)

QDBusArgument &operator<<(QDBusArgument &argument, const LayoutNode &node);
const QDBusArgument &operator>>(const QDBusArgument &argument, LayoutNode &node);
QDBusArgument &operator<<(QDBusArgument &argument, const ItemProperties &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, ItemProperties &item);
QDBusArgument &operator<<(QDBusArgument &argument, const ItemPropertyNames &item);
const QDBusArgument &operator>>(const QDBusArgument &argument, ItemPropertyNames &item);
QDBusArgument &operator<<(QDBusArgument &argument, const ItemEvent &event);
const QDBusArgument &operator>>(const QDBusArgument &argument, ItemEvent &event);

/// To be called before any of these is sent or read.
void registerDBusMenuTypes();
