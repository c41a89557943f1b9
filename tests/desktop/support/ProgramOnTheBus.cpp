#include "support/ProgramOnTheBus.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString name = u"org.corvane.Corvane"_s;

QDBusMessage callOf(const QString &path, const QString &interface, const QString &method,
                    const QVariantList &arguments)
{
    auto call = QDBusMessage::createMethodCall(name, path, interface, method);
    call.setArguments(arguments);
    return call;
}

/// Awaits the program, which may only just have been started and have no tray item yet, and its
/// answer.
QDBusMessage ask(const QDBusMessage &call)
{
    [] { QTRY_VERIFY(QDBusConnection::sessionBus().interface()->isServiceRegistered(name)); }();
    QDBusMessage answer;
    const auto isThere = [&] {
        answer = QDBusConnection::sessionBus().call(call);
        return QDBusError(answer).type() != QDBusError::UnknownObject;
    };
    [&] {
        QVERIFY2(QTest::qWaitFor(isThere), qPrintable(call.path()));
        QVERIFY2(answer.type() == QDBusMessage::ReplyMessage, qPrintable(answer.errorMessage()));
    }();
    return answer;
}

void askApplication(const QString &method, const QVariantList &arguments)
{
    ask(callOf(u"/org/corvane/Corvane"_s, u"org.freedesktop.Application"_s, method, arguments));
}

QDBusMessage callOfMenu(const QString &method, const QVariantList &arguments)
{
    return callOf(u"/MenuBar"_s, u"com.canonical.dbusmenu"_s, method, arguments);
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
    const int id = itemLabelled(item, ask(callOfMenu(u"GetLayout"_s, {0, 1, QStringList()})));
    QVERIFY(id != 0);
    // The program may end without an answer.
    QDBusConnection::sessionBus().send(
        callOfMenu(u"Event"_s, {id, u"clicked"_s, QVariant::fromValue(QDBusVariant(0)), 0U}));
}
