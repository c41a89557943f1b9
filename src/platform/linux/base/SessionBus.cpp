#include "platform/linux/base/SessionBus.h"

#include "platform/linux/base/LocalSocket.h"

#include <QByteArrayList>
#include <QDeadlineTimer>
#include <optional>
#include <unistd.h>

namespace
{
constexpr const char *variable = "DBUS_SESSION_BUS_ADDRESS";

/// The original value of the variable, if it has been replaced for our libraries.
std::optional<QByteArray> withheld;

/// A call of org.freedesktop.DBus.Hello in the bus's wire format. Each header field starts at a
/// multiple of 8 bytes and consists of its code, its type, the length of its text and the text.
QByteArray callOfHello()
{
    QByteArray message("l\1\0\1\0\0\0\0\1\0\0\0\0\0\0\0", 16);
    const auto align = [&message] { message.append((8 - message.size() % 8) % 8, '\0'); };
    const auto addField = [&](char code, char type, const char *text) {
        align();
        message.append(code).append('\1').append(type).append('\0');
        message.append(char(qstrlen(text))).append(3, '\0').append(text).append('\0');
    };
    addField(1, 'o', "/org/freedesktop/DBus");
    addField(2, 's', "org.freedesktop.DBus");
    addField(3, 's', "Hello");
    addField(6, 's', "org.freedesktop.DBus");
    // The length of the header fields.
    message[12] = char(message.size() - 16);
    align();
    return message;
}

QByteArray greeting()
{
    const QByteArray user = QByteArray::number(geteuid()).toHex();
    return QByteArray(1, '\0') + "AUTH EXTERNAL " + user + "\r\nBEGIN\r\n" + callOfHello();
}

/// Whether the bus leaves us waiting. A bus that refuses us or disconnects does not hang: our
/// libraries notice that at once.
bool hangs(LocalSocket &bus)
{
    bus.send(greeting());
    QByteArray answer;
    while (bus.state() == LocalSocket::State::connected) {
        answer += bus.receive();
        const qsizetype end = answer.indexOf("\r\n");
        const bool isRefusal = end >= 0 && !answer.startsWith("OK");
        if (isRefusal || (end >= 0 && answer.size() > end + 2))
            return false;
    }
    return bus.state() == LocalSocket::State::timedOut;
}

/// The socket name of a single address from the list; empty if it names no socket.
QByteArray socketName(const QByteArray &address)
{
    for (const QByteArray &pair : address.mid(address.indexOf(':') + 1).split(',')) {
        const QByteArray value = QByteArray::fromPercentEncoding(pair.mid(pair.indexOf('=') + 1));
        if (pair.startsWith("path="))
            return value;
        if (pair.startsWith("abstract="))
            return '\0' + value;
    }
    return {};
}

/// Whether the first address with a listener leads to a bus that hangs.
bool hangs(const QByteArray &addresses, std::chrono::milliseconds patience)
{
    const QDeadlineTimer deadline(patience);
    for (const QByteArray &address : addresses.split(';')) {
        // Other kinds of address cannot be checked.
        if (!address.startsWith("unix:"))
            return false;
        LocalSocket bus(socketName(address), deadline);
        if (bus.state() == LocalSocket::State::timedOut)
            return true;
        if (bus.state() == LocalSocket::State::connected)
            return hangs(bus);
    }
    return false;
}
} // namespace

void avoidHangingSessionBus(std::chrono::milliseconds patience)
{
    const QByteArray address = qgetenv(variable);
    const QByteArray usual = "unix:path=" + qgetenv("XDG_RUNTIME_DIR") + "/bus";
    if (!hangs(address.isEmpty() ? usual : address, patience))
        return;
    withheld = address;
    // An unknown kind of address, so that libraries give up at once.
    qputenv(variable, "disabled:");
}

QByteArray sessionBusAddressForPrograms()
{
    return withheld.value_or(qgetenv(variable));
}
