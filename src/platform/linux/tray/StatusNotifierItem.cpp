#include "platform/linux/tray/StatusNotifierItem.h"

#include "platform/linux/base/DBusStructure.h"
#include "platform/linux/tray/DBusMenu.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QtEndian>

using namespace Qt::StringLiterals;

namespace
{
/// (iiay): an image with 32-bit ARGB pixels in network byte order.
struct IconPixmap {
    int width;
    int height;
    QByteArray pixels;
};
using IconPixmaps = QList<IconPixmap>;

/// D-Bus signature: (sa(iiay)ss)
struct ToolTip {
    QString iconName;
    IconPixmaps icon;
    QString title;
    QString text;
};

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

const QString itemIntrospection = uR"xml(
<interface name="org.kde.StatusNotifierItem">
 <property name="Category" type="s" access="read"/>
 <property name="Id" type="s" access="read"/>
 <property name="Title" type="s" access="read"/>
 <property name="Status" type="s" access="read"/>
 <property name="WindowId" type="i" access="read"/>
 <property name="IconName" type="s" access="read"/>
 <property name="IconThemePath" type="s" access="read"/>
 <property name="IconPixmap" type="a(iiay)" access="read"/>
 <property name="OverlayIconName" type="s" access="read"/>
 <property name="OverlayIconPixmap" type="a(iiay)" access="read"/>
 <property name="AttentionIconName" type="s" access="read"/>
 <property name="AttentionIconPixmap" type="a(iiay)" access="read"/>
 <property name="AttentionMovieName" type="s" access="read"/>
 <property name="ToolTip" type="(sa(iiay)ss)" access="read"/>
 <property name="ItemIsMenu" type="b" access="read"/>
 <property name="Menu" type="o" access="read"/>
 <method name="Activate">
  <arg type="i" name="x" direction="in"/>
  <arg type="i" name="y" direction="in"/>
 </method>
 <method name="ContextMenu">
  <arg type="i" name="x" direction="in"/>
  <arg type="i" name="y" direction="in"/>
 </method>
 <method name="SecondaryActivate">
  <arg type="i" name="x" direction="in"/>
  <arg type="i" name="y" direction="in"/>
 </method>
 <method name="Scroll">
  <arg type="i" name="delta" direction="in"/>
  <arg type="s" name="orientation" direction="in"/>
 </method>
 <method name="ProvideXdgActivationToken">
  <arg type="s" name="token" direction="in"/>
 </method>
 <signal name="NewIcon"/>
 <signal name="NewToolTip"/>
</interface>
)xml"_s;
} // namespace

StatusNotifierItem::StatusNotifierItem(QString id)
    : DBusObject(u"/StatusNotifierItem"_s, u"org.kde.StatusNotifierItem"_s, itemIntrospection)
    , m_id(std::move(id))
{
    qDBusRegisterMetaType<IconPixmap>();
    qDBusRegisterMetaType<IconPixmaps>();
    qDBusRegisterMetaType<ToolTip>();
}

void StatusNotifierItem::setButton(const QIcon &icon, const QString &description)
{
    m_icon = icon;
    m_description = description;
    m_pixmaps.clear();
    emitSignal(u"NewIcon"_s);
    emitSignal(u"NewToolTip"_s);
}

QVariantMap StatusNotifierItem::properties() const
{
    if (!m_pixmaps.isValid())
        m_pixmaps = QVariant::fromValue(pixmapsOf(m_icon));
    const QVariant noPixmaps = QVariant::fromValue(IconPixmaps());
    const ToolTip toolTip{{}, {}, m_description, {}};
    return {
        {u"Category"_s, u"ApplicationStatus"_s},
        {u"Id"_s, m_id},
        {u"Title"_s, u"Corvane"_s},
        {u"Status"_s, u"Active"_s},
        {u"WindowId"_s, 0},
        {u"IconName"_s, QString()},
        {u"IconThemePath"_s, QString()},
        {u"IconPixmap"_s, m_pixmaps},
        // Some desktops ask for all of these and complain if one is missing.
        {u"OverlayIconName"_s, QString()},
        {u"OverlayIconPixmap"_s, noPixmaps},
        {u"AttentionIconName"_s, QString()},
        {u"AttentionIconPixmap"_s, noPixmaps},
        {u"AttentionMovieName"_s, QString()},
        {u"ToolTip"_s, QVariant::fromValue(toolTip)},
        // Makes a left click open the menu too, on desktops that respect it.
        {u"ItemIsMenu"_s, true},
        {u"Menu"_s, QVariant::fromValue(QDBusObjectPath(DBusMenu::path()))},
    };
}

QDBusMessage StatusNotifierItem::answer(const QDBusMessage &call)
{
    static const QStringList clicks{u"Activate(ii)"_s, u"ContextMenu(ii)"_s,
                                    u"SecondaryActivate(ii)"_s};
    const QVariantList arguments = call.arguments();
    const QString method = call.member() + u'(' + call.signature() + u')';
    if (clicks.contains(method))
        Q_EMIT clicked(QPoint(arguments.at(0).toInt(), arguments.at(1).toInt()));
    else if (method == u"ProvideXdgActivationToken(s)")
        Q_EMIT activationTokenProvided(arguments.at(0).toString().toUtf8());
    else if (method != u"Scroll(is)")
        return unknownMethod(call);
    return call.createReply();
}
