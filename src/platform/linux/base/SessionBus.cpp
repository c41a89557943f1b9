#include "platform/linux/base/SessionBus.h"

#include "platform/linux/base/LocalSocket.h"

#include <QByteArrayList>
#include <QDeadlineTimer>
#include <optional>
#include <unistd.h>

namespace
{
constexpr const char *variable = "DBUS_SESSION_BUS_ADDRESS";

/// What the variable was where our libraries find another value now.
std::optional<QByteArray> withheld;

/// The call of org.freedesktop.DBus.Hello, in the bus's wire format. Each field of the header
/// begins at a multiple of 8 bytes, with its code and type, and its text's length.
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
    // How long the fields are.
    message[12] = char(message.size() - 16);
    align();
    return message;
}

QByteArray greeting()
{
    const QByteArray user = QByteArray::number(geteuid()).toHex();
    return QByteArray(1, '\0') + "AUTH EXTERNAL " + user + "\r\nBEGIN\r\n" + callOfHello();
}

/// Only a bus that keeps us waiting hangs. One that refuses us or hangs up tells our libraries so.
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

/// The name of the socket that one of the addresses in a list means; empty if it means none.
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

/// Whether the first of the addresses where somebody listens leads to a bus that hangs.
bool hangs(const QByteArray &addresses, std::chrono::milliseconds patience)
{
    const QDeadlineTimer deadline(patience);
    for (const QByteArray &address : addresses.split(';')) {
        // Of what is behind another kind of address nothing can be said.
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
    // Of no kind that a library knows, so that it gives up at once.
    qputenv(variable, "disabled:");
}

QByteArray sessionBusAddressForPrograms()
{
    return withheld.value_or(qgetenv(variable));
}
