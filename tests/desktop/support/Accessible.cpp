#include "support/Accessible.h"

#include "support/Keyboard.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>
#include <QMetaEnum>
#include <QTest>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
constexpr int callTimeout = 3000;

const QString accessibleInterface = u"org.a11y.atspi.Accessible"_s;
const QString actionInterface = u"org.a11y.atspi.Action"_s;

/// The first value of the answer, once it is there; invalid if it is an error or never comes.
QVariant answerTo(QDBusPendingCall call)
{
    call.waitForFinished();
    return call.isError() ? QVariant() : call.reply().arguments().value(0);
}

QString propertyFrom(const QDBusPendingCall &call)
{
    return answerTo(call).value<QDBusVariant>().variant().toString();
}

quint64 statesFrom(const QDBusPendingCall &call)
{
    const auto halves = qdbus_cast<QList<uint>>(answerTo(call));
    return halves.value(0) | quint64(halves.value(1)) << 32;
}

/// Those whose answer is wanted. All are asked before the first answer is awaited, which is many
/// times as fast.
template <typename Ask, typename IsWanted>
QList<Accessible> filtered(const QList<Accessible> &all, Ask ask, IsWanted isWanted)
{
    QList<QDBusPendingCall> calls;
    for (const Accessible &one : all)
        calls << ask(one);
    QList<Accessible> found;
    for (qsizetype i = 0; i < all.size(); ++i) {
        if (isWanted(calls[i]))
            found << all[i];
    }
    return found;
}
} // namespace

Accessible::Accessible(QString service, QString path)
    : m_service(std::move(service))
    , m_path(std::move(path))
{
}

Accessible Accessible::program(pid_t process)
{
    const Accessible registry(u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/accessible/root"_s);
    QList<Accessible> found;
    const auto hasJoined = [&] {
        found = registry.children();
        found.removeIf([process](const Accessible &program) {
            return bus().interface()->servicePid(program.m_service) != uint(process);
        });
        return !found.isEmpty();
    };
    if (!QTest::qWaitFor(hasJoined, 10000))
        qWarning("process %d does not join the accessibility bus", process);
    return found.value(0);
}

QString Accessible::busAddress()
{
    const QDBusReply<QString> address =
        QDBusConnection::sessionBus().call(QDBusMessage::createMethodCall(
            u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s));
    if (!address.isValid())
        qFatal("there is no accessibility bus: %s", qPrintable(address.error().message()));
    return address;
}

QDBusConnection Accessible::bus()
{
    static const QDBusConnection bus =
        QDBusConnection::connectToBus(busAddress(), u"accessibility"_s);
    return bus;
}

Accessible Accessible::source(const QDBusMessage &signal)
{
    return {signal.service(), signal.path()};
}

QDBusPendingCall Accessible::ask(const QString &interface, const QString &method,
                                 const QVariantList &arguments) const
{
    if (m_service.isEmpty())
        return QDBusPendingCall::fromError(QDBusError(QDBusError::UnknownObject, {}));
    auto message = QDBusMessage::createMethodCall(m_service, m_path, interface, method);
    message.setArguments(arguments);
    return bus().asyncCall(message, callTimeout);
}

QDBusPendingCall Accessible::askProperty(const QString &property) const
{
    return ask(u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {accessibleInterface, property});
}

bool Accessible::isThere() const
{
    return !role().isEmpty();
}

QString Accessible::role() const
{
    return answerTo(ask(accessibleInterface, u"GetRoleName"_s)).toString();
}

QString Accessible::name() const
{
    return propertyFrom(askProperty(u"Name"_s));
}

QString Accessible::description() const
{
    return propertyFrom(askProperty(u"Description"_s));
}

QString Accessible::text() const
{
    return answerTo(ask(u"org.a11y.atspi.Text"_s, u"GetText"_s, {0, -1})).toString();
}

QStringList Accessible::labels() const
{
    constexpr uint labelledBy = 2;
    const QVariant answer = answerTo(ask(accessibleInterface, u"GetRelationSet"_s));
    if (!answer.isValid())
        return {};
    QStringList names;
    const auto relations = answer.value<QDBusArgument>();
    relations.beginArray();
    while (!relations.atEnd()) {
        uint kind = 0;
        relations.beginStructure();
        relations >> kind;
        const QList<Accessible> targets = all(relations);
        relations.endStructure();
        for (const Accessible &label : targets) {
            if (kind == labelledBy)
                names << label.name();
        }
    }
    return names;
}

QDBusPendingCall Accessible::askStates() const
{
    return ask(accessibleInterface, u"GetState"_s);
}

quint64 Accessible::states() const
{
    return statesFrom(askStates());
}

bool Accessible::is(State state) const
{
    return states() >> int(state) & 1;
}

QStringList Accessible::actions() const
{
    const QVariant answer = answerTo(ask(actionInterface, u"GetActions"_s));
    if (!answer.isValid())
        return {};
    QStringList names;
    const auto list = answer.value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        QString name;
        QString description;
        QString keys;
        list.beginStructure();
        list >> name >> description >> keys;
        list.endStructure();
        names << name;
    }
    return names;
}

QRect Accessible::geometry() const
{
    constexpr uint onTheScreen = 0;
    const QVariant answer =
        answerTo(ask(u"org.a11y.atspi.Component"_s, u"GetExtents"_s, {onTheScreen}));
    return answer.isValid() ? qdbus_cast<QRect>(answer) : QRect();
}

QList<Accessible> Accessible::all(const QVariant &list)
{
    return list.isValid() ? all(list.value<QDBusArgument>()) : QList<Accessible>();
}

QList<Accessible> Accessible::all(const QDBusArgument &list)
{
    QList<Accessible> objects;
    list.beginArray();
    while (!list.atEnd()) {
        QString service;
        QDBusObjectPath path;
        list.beginStructure();
        list >> service >> path;
        list.endStructure();
        objects << Accessible(service, path.path());
    }
    list.endArray();
    return objects;
}

QList<Accessible> Accessible::children() const
{
    return all(answerTo(ask(accessibleInterface, u"GetChildren"_s)));
}

QList<Accessible> Accessible::descendants() const
{
    QList<Accessible> found;
    QList<Accessible> level = {*this};
    while (!level.isEmpty()) {
        QList<QDBusPendingCall> calls;
        for (const Accessible &parent : level)
            calls << parent.ask(accessibleInterface, u"GetChildren"_s);
        level.clear();
        for (const QDBusPendingCall &call : calls)
            level << all(answerTo(call));
        found << level;
    }
    return found;
}

QList<Accessible> Accessible::findAll(const QString &role) const
{
    const auto ask = [](const Accessible &one) {
        return one.ask(accessibleInterface, u"GetRoleName"_s);
    };
    return filtered(descendants(), ask,
                    [&role](const auto &call) { return answerTo(call).toString() == role; });
}

QList<Accessible> Accessible::findAll(const QString &role, const QString &name) const
{
    const auto ask = [](const Accessible &one) { return one.askProperty(u"Name"_s); };
    return filtered(findAll(role), ask,
                    [&name](const auto &call) { return propertyFrom(call) == name; });
}

Accessible Accessible::focused() const
{
    const auto ask = [](const Accessible &one) { return one.askStates(); };
    const auto isFocused = [](const auto &call) {
        return statesFrom(call) >> int(State::focused) & 1;
    };
    return filtered(descendants(), ask, isFocused).value(0);
}

Accessible Accessible::find(const QString &role, const QString &name) const
{
    const QList<Accessible> found = findAll(role, name);
    const auto shows = [](const Accessible &one) { return one.is(State::showing); };
    const auto first = std::ranges::find_if(found, shows);
    return first == found.end() ? found.value(0) : *first;
}

Accessible Accessible::await(const QString &role, const QString &name, int timeout) const
{
    Accessible found;
    const auto shows = [&] {
        found = find(role, name);
        return found.is(State::showing);
    };
    if (QTest::qWaitFor(shows, timeout))
        return found;
    qWarning("there is no %s \"%s\" in\n%s", qPrintable(role), qPrintable(name),
             qPrintable(tree()));
    return {};
}

bool Accessible::canBeUsed() const
{
    return is(State::showing) && is(State::enabled);
}

bool Accessible::act(const QString &action) const
{
    const qsizetype index = actions().indexOf(action);
    if (index >= 0 && canBeUsed()
        && answerTo(ask(actionInterface, u"DoAction"_s, {int(index)})).toBool())
        return true;
    qWarning("cannot do %s on %s", qPrintable(action), qPrintable(line()));
    return false;
}

bool Accessible::setText(const QString &text) const
{
    // The program itself would let us write into any.
    if (canBeUsed() && !is(State::readOnly)
        && answerTo(ask(u"org.a11y.atspi.EditableText"_s, u"SetTextContents"_s, {text})).toBool())
        return true;
    qWarning("cannot write into %s", qPrintable(line()));
    return false;
}

bool Accessible::choose(const QString &item, Keyboard &keyboard) const
{
    // The items have an action as well, but that does not choose.
    const Accessible list = children().value(0);
    const QList<Accessible> items = list.children();
    const Accessible wanted = list.find(u"list item"_s, item);
    const qsizetype index = items.indexOf(wanted);
    if (index < 0 || !act(u"ShowMenu"_s)) {
        qWarning("cannot choose \"%s\" in\n%s", qPrintable(item), qPrintable(tree()));
        return false;
    }
    keyboard.type({KEY_HOME});
    for (qsizetype i = 0; i < index; ++i)
        keyboard.type({KEY_DOWN});
    keyboard.type({KEY_ENTER});
    return QTest::qWaitFor([&] { return name() == item && !list.is(State::showing); });
}

QString Accessible::line() const
{
    QStringList stateNames;
    const quint64 bits = states();
    const auto known = QMetaEnum::fromType<State>();
    for (int i = 0; i < known.keyCount(); ++i) {
        if (bits >> known.value(i) & 1)
            stateNames << QString::fromLatin1(known.key(i));
    }
    return u"%1 \"%2\" [%3] (%4)"_s.arg(role(), name(), stateNames.join(u' '),
                                        actions().join(u", "_s));
}

QString Accessible::tree() const
{
    QString text = line() + u'\n';
    for (const Accessible &child : children())
        text += u"  "_s + child.tree().trimmed().replace(u"\n"_s, u"\n  "_s) + u'\n';
    return text;
}
