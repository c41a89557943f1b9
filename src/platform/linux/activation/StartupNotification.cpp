#include "platform/linux/activation/StartupNotification.h"

#include "platform/linux/x11/Atom.h"

#include <QGuiApplication>
#include <QRegularExpression>
#include <algorithm>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
QByteArray member(const QByteArray &key, const QString &value)
{
    if (value.isEmpty())
        return {};
    QString text = value;
    text.replace(u'\\', u"\\\\"_s).replace(u'"', u"\\\""_s);
    return ' ' + key + "=\"" + text.toUtf8() + '"';
}

/// Broadcasts a message in pieces of 20 bytes, which their common window id ties together.
void broadcast(QByteArray message)
{
    // Uses Qt's connection, not that of the hot keys: a press that arrives before the replies would
    // go unnoticed.
    const auto *const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11)
        return;
    auto *const connection = x11->connection();
    const auto begin = atom(connection, "_NET_STARTUP_INFO_BEGIN");
    const auto next = atom(connection, "_NET_STARTUP_INFO");
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const auto window = xcb_generate_id(connection);
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, window, root, -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);

    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 8;
    event.window = window;
    event.type = begin;
    constexpr qsizetype pieceSize = sizeof event.data.data8;
    // A zero byte ends the message.
    message.append('\0');
    message.append((pieceSize - message.size() % pieceSize) % pieceSize, '\0');
    for (qsizetype i = 0; i < message.size(); i += pieceSize) {
        std::copy_n(message.constData() + i, pieceSize, event.data.data8);
        xcb_send_event(connection, false, root, XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char *>(&event));
        event.type = next;
    }
    xcb_destroy_window(connection, window);
    xcb_flush(connection);
}
} // namespace

namespace StartupNotification
{

QByteArray newId(quint32 userTime)
{
    static int count = 0;
    return "corvane-" + QByteArray::number(getpid()) + '-' + QByteArray::number(++count) + "_TIME"
        + QByteArray::number(userTime);
}

std::optional<quint32> userTime(const QByteArray &id)
{
    static const QRegularExpression suffix(u"_TIME([0-9]+)\\z"_s);
    const auto match = suffix.match(QString::fromLatin1(id));
    bool fits = false;
    const quint32 time = match.captured(1).toUInt(&fits);
    // Some programs write 0 if the time is unknown.
    return fits && time != 0 ? std::optional(time) : std::nullopt;
}

void announce(const QByteArray &id, const StartingApp &app)
{
    broadcast("new:" + member("ID", QString::fromLatin1(id)) + member("NAME", app.name)
              + member("SCREEN", u"0"_s) + member("BIN", app.program) + member("ICON", app.icon)
              + member("WMCLASS", app.windowClass));
}

void finish(const QByteArray &id)
{
    if (!id.isEmpty())
        broadcast("remove:" + member("ID", QString::fromUtf8(id)));
}

} // namespace StartupNotification
