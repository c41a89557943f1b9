#include "support/ProgramOnTheBus.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString name = u"org.corvane.Corvane"_s;

/// Awaits the program, which may only just have been started, and its answer.
void ask(const QString &method, const QVariantList &arguments)
{
    QTRY_VERIFY(QDBusConnection::sessionBus().interface()->isServiceRegistered(name));
    auto call = QDBusMessage::createMethodCall(name, u"/org/corvane/Corvane"_s,
                                               u"org.freedesktop.Application"_s, method);
    call.setArguments(arguments);
    const auto answer = QDBusConnection::sessionBus().call(call);
    QVERIFY2(answer.type() == QDBusMessage::ReplyMessage, qPrintable(answer.errorMessage()));
}
} // namespace

void askForSettings()
{
    ask(u"Activate"_s, {QVariantMap()});
}

void askToFire(const QString &id)
{
    ask(u"ActivateAction"_s, {u"fire"_s, QVariant(QVariantList{id}), QVariantMap()});
}
