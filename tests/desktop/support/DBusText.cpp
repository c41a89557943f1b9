#include "support/DBusText.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace
{
/// What is between the brackets of a compound value.
QString content(const QDBusArgument &argument)
{
    QStringList texts;
    while (!argument.atEnd()) {
        if (argument.currentType() == QDBusArgument::MapEntryType) {
            argument.beginMapEntry();
            const QString key = dbusText(argument.asVariant());
            texts << key + u": "_s + dbusText(argument.asVariant());
            argument.endMapEntry();
        } else {
            texts << dbusText(argument.asVariant());
        }
    }
    return texts.join(u", "_s);
}

QString text(const QDBusArgument &argument)
{
    QString inside;
    switch (argument.currentType()) {
    case QDBusArgument::StructureType:
        argument.beginStructure();
        inside = u'(' + content(argument) + u')';
        argument.endStructure();
        break;
    case QDBusArgument::ArrayType:
        argument.beginArray();
        inside = u'[' + content(argument) + u']';
        argument.endArray();
        break;
    case QDBusArgument::MapType:
        argument.beginMap();
        inside = u'{' + content(argument) + u'}';
        argument.endMap();
        break;
    default:
        inside = dbusText(argument.asVariant());
    }
    return inside;
}
} // namespace

QString dbusText(const QVariant &value)
{
    if (value.metaType() == QMetaType::fromType<QDBusVariant>())
        return dbusText(value.value<QDBusVariant>().variant());
    if (value.metaType() == QMetaType::fromType<QDBusArgument>())
        return text(value.value<QDBusArgument>());
    if (value.metaType() == QMetaType::fromType<QStringList>())
        return u'[' + value.toStringList().join(u", "_s) + u']';
    if (value.metaType() == QMetaType::fromType<QDBusObjectPath>())
        return value.value<QDBusObjectPath>().path();
    return value.toString();
}
