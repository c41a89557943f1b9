#include "support/ProgramOnTheBus.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString name = u"org.corvane.Corvane"_s;

/// Awaits the program, which may only just have been started, and its answer.
QDBusMessage ask(const QString &path, const QString &interface, const QString &method,
                 const QVariantList &arguments)
{
    [] { QTRY_VERIFY(QDBusConnection::sessionBus().interface()->isServiceRegistered(name)); }();
    auto call = QDBusMessage::createMethodCall(name, path, interface, method);
    call.setArguments(arguments);
    QDBusMessage answer = QDBusConnection::sessionBus().call(call);
    [&] {
        QVERIFY2(answer.type() == QDBusMessage::ReplyMessage, qPrintable(answer.errorMessage()));
    }();
    return answer;
}

void askApplication(const QString &method, const QVariantList &arguments)
{
    ask(u"/org/corvane/Corvane"_s, u"org.freedesktop.Application"_s, method, arguments);
}

QDBusMessage askMenu(const QString &method, const QVariantList &arguments)
{
    return ask(u"/MenuBar"_s, u"com.canonical.dbusmenu"_s, method, arguments);
}

/// The number of the item with that label, in what GetLayout answers; 0 if there is none.
int itemLabelled(const QString &label, const QDBusMessage &layout)
{
    int id = 0;
    QVariantMap properties;
    const auto menu = layout.arguments().value(1).value<QDBusArgument>();
    menu.beginStructure();
    menu >> id >> properties;
    menu.beginArray();
    while (!menu.atEnd()) {
        QDBusVariant variant;
        menu >> variant;
        const auto item = variant.variant().value<QDBusArgument>();
        item.beginStructure();
        item >> id >> properties;
        if (properties.value(u"label"_s) == label)
            return id;
    }
    return 0;
}
} // namespace

void askForSettings()
{
    askApplication(u"Activate"_s, {QVariantMap()});
}

void askToFire(const QString &id)
{
    askApplication(u"ActivateAction"_s, {u"fire"_s, QVariant(QVariantList{id}), QVariantMap()});
}

void chooseInTray(const QString &item)
{
    const int id = itemLabelled(item, askMenu(u"GetLayout"_s, {0, 1, QStringList()}));
    QVERIFY(id != 0);
    askMenu(u"Event"_s, {id, u"clicked"_s, QVariant::fromValue(QDBusVariant(0)), 0U});
}
