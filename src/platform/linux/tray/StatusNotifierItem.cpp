#include "platform/linux/tray/StatusNotifierItem.h"

#include "StatusNotifierItemAdaptor.h"
#include "platform/linux/base/DBusStructure.h"
#include "platform/linux/tray/DBusMenu.h"

#include <QDBusConnection>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace
{
IconPixmap pixmapOf(const QIcon &icon, const QSize &size)
{
    const QImage image = icon.pixmap(size, 1).toImage().convertToFormat(QImage::Format_ARGB32);
    IconPixmap pixmap{image.width(), image.height(), {}};
    pixmap.pixels.resize(image.sizeInBytes());
    qToBigEndian<quint32>(image.constBits(), image.sizeInBytes() / 4, pixmap.pixels.data());
    return pixmap;
}

/// Renders the icon in every size that panels ask for, so that none has to scale it.
IconPixmaps pixmapsOf(const QIcon &icon)
{
    IconPixmaps pixmaps;
    for (const QSize &size : icon.availableSizes())
        pixmaps << pixmapOf(icon, size);
    return pixmaps;
}
} // namespace

QDBusArgument &operator<<(QDBusArgument &argument, const IconPixmap &pixmap)
{
    return writeStructure(argument, pixmap.width, pixmap.height, pixmap.pixels);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, IconPixmap &pixmap)
{
    return readStructure(argument, pixmap.width, pixmap.height, pixmap.pixels);
}

QDBusArgument &operator<<(QDBusArgument &argument, const ToolTip &tip)
{
    return writeStructure(argument, tip.iconName, tip.icon, tip.title, tip.text);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, ToolTip &tip)
{
    return readStructure(argument, tip.iconName, tip.icon, tip.title, tip.text);
}

StatusNotifierItem::StatusNotifierItem(const QString &id)
{
    qDBusRegisterMetaType<IconPixmap>();
    qDBusRegisterMetaType<IconPixmaps>();
    qDBusRegisterMetaType<ToolTip>();
    // The adaptor reads its properties from ours; one that we do not have is empty on the bus. Some
    // desktops ask for all properties and complain if one is missing.
    setProperty("Category", u"ApplicationStatus"_s);
    setProperty("Id", id);
    setProperty("Title", u"Corvane"_s);
    setProperty("Status", u"Active"_s);
    // Makes a left click open the menu too, on desktops that respect it.
    setProperty("ItemIsMenu", true);
    setProperty("Menu", QVariant::fromValue(QDBusObjectPath(DBusMenu::path())));
    new StatusNotifierItemAdaptor(this);
    QDBusConnection::sessionBus().registerObject(u"/StatusNotifierItem"_s, this);
}

void StatusNotifierItem::setButton(const QIcon &icon, const QString &iconName,
                                   const QString &description)
{
    setProperty("IconName", iconName);
    m_icon = icon;
    m_pixmaps.clear();
    setProperty("ToolTip", QVariant::fromValue(ToolTip{{}, {}, description, {}}));
    Q_EMIT NewIcon();
    Q_EMIT NewToolTip();
}

IconPixmaps StatusNotifierItem::pixmaps()
{
    if (m_pixmaps.isEmpty())
        m_pixmaps = pixmapsOf(m_icon);
    return m_pixmaps;
}
