#include "platform/linux/base/LocalSocket.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <sys/socket.h>
#include <sys/time.h>
#include <sys/un.h>
#include <unistd.h>

LocalSocket::LocalSocket(const QByteArray &name, const QDeadlineTimer &deadline)
    : m_descriptor(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    , m_deadline(deadline)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (name.isEmpty() || size_t(name.size()) >= sizeof address.sun_path) {
        m_state = State::refused;
        return;
    }
    std::memcpy(address.sun_path, name.constData(), size_t(name.size()));
    const auto length = socklen_t(offsetof(sockaddr_un, sun_path) + size_t(name.size()));
    // Limits connect() too: the queue of a stopped server may be full.
    limit(SO_SNDTIMEO);
    if (TEMP_FAILURE_RETRY(connect(m_descriptor, reinterpret_cast<sockaddr *>(&address), length))
        != 0)
        m_state = errno == EAGAIN ? State::timedOut : State::refused;
}

LocalSocket::~LocalSocket()
{
    close(m_descriptor);
}

void LocalSocket::send(const QByteArray &bytes)
{
    limit(SO_SNDTIMEO);
    if (TEMP_FAILURE_RETRY(
            ::send(m_descriptor, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL))
        < 0)
        fail();
}

QByteArray LocalSocket::receive()
{
    limit(SO_RCVTIMEO);
    std::array<char, 512> bytes;
    const ssize_t length = TEMP_FAILURE_RETRY(recv(m_descriptor, bytes.data(), bytes.size(), 0));
    if (length > 0)
        return {bytes.data(), length};
    if (length == 0)
        m_state = State::closed;
    else
        fail();
    return {};
}

void LocalSocket::limit(int option) const
{
    // A zero timeout would mean no limit.
    const auto remaining = std::max<qint64>(1, m_deadline.remainingTime());
    const timeval time{.tv_sec = remaining / 1000, .tv_usec = remaining % 1000 * 1000};
    setsockopt(m_descriptor, SOL_SOCKET, option, &time, sizeof time);
}

void LocalSocket::fail()
{
    m_state = errno == EAGAIN ? State::timedOut : State::closed;
}
