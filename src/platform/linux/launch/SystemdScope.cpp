#include "platform/linux/launch/SystemdScope.h"

#include "platform/linux/base/DBusStructure.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusVariant>
#include <QList>

using namespace Qt::StringLiterals;

namespace
{
/// D-Bus signature: (sv)
struct UnitProperty {
    QString name;
    QDBusVariant value;
};

/// D-Bus signature: (sa(sv))
struct AuxiliaryUnit {
    QString name;
    QList<UnitProperty> properties;
};

QDBusArgument &operator<<(QDBusArgument &argument, const UnitProperty &property)
{
    return writeStructure(argument, property.name, property.value);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, UnitProperty &property)
{
    return readStructure(argument, property.name, property.value);
}

QDBusArgument &operator<<(QDBusArgument &argument, const AuxiliaryUnit &unit)
{
    return writeStructure(argument, unit.name, unit.properties);
}

const QDBusArgument &operator>>(const QDBusArgument &argument, AuxiliaryUnit &unit)
{
    return readStructure(argument, unit.name, unit.properties);
}

void registerTypes()
{
    static const bool once = [] {
        qDBusRegisterMetaType<UnitProperty>();
        qDBusRegisterMetaType<QList<UnitProperty>>();
        qDBusRegisterMetaType<AuxiliaryUnit>();
        qDBusRegisterMetaType<QList<AuxiliaryUnit>>();
        qDBusRegisterMetaType<QList<uint>>();
        return true;
    }();
    Q_UNUSED(once)
}

/// Escapes a part of a unit's name between hyphens, as systemd does.
QString escaped(const QString &text)
{
    QString safe;
    for (const char byte : text.toUtf8()) {
        const bool isSafe = (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z')
            || (byte >= '0' && byte <= '9') || byte == '_' || byte == '.';
        safe += isSafe ? QString(QLatin1Char(byte))
                       : u"\\x%1"_s.arg(uchar(byte), 2, 16, QLatin1Char('0'));
    }
    return safe.left(180);
}
} // namespace

void moveToScopeOfItsOwn(pid_t process, const QString &app)
{
    registerTypes();
    const QList<UnitProperty> properties{
        {u"PIDs"_s, QDBusVariant(QVariant::fromValue(QList<uint>{uint(process)}))},
        {u"CollectMode"_s, QDBusVariant(u"inactive-or-failed"_s)},
    };
    auto call = QDBusMessage::createMethodCall(
        u"org.freedesktop.systemd1"_s, u"/org/freedesktop/systemd1"_s,
        u"org.freedesktop.systemd1.Manager"_s, u"StartTransientUnit"_s);
    // If systemd does not run, nothing must be started in its place.
    call.setAutoStartService(false);
    call << u"app-corvane-%1-%2.scope"_s.arg(escaped(app)).arg(process) << u"fail"_s
         << QVariant::fromValue(properties) << QVariant::fromValue(QList<AuxiliaryUnit>());
    QDBusConnection::sessionBus().send(call);
}
