// A connection to a local server that may be slow or not answer at all.
#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QtGlobal>

class LocalSocket
{
public:
    enum class State {
        connected,
        /// Nothing listens on the socket.
        refused,
        /// The deadline has passed.
        timedOut,
        /// The server has closed the connection.
        closed,
    };

    /// Connects to the socket with that name: a path, or a zero byte and an abstract name. No
    /// operation waits longer than until the deadline.
    LocalSocket(const QByteArray &name, const QDeadlineTimer &deadline);
    ~LocalSocket();
    Q_DISABLE_COPY_MOVE(LocalSocket)

    State state() const { return m_state; }

    void send(const QByteArray &bytes);

    /// Returns at least one byte, or none if the connection has failed.
    QByteArray receive();

private:
    void limit(int option) const;
    void fail();

    int m_descriptor;
    QDeadlineTimer m_deadline;
    State m_state = State::connected;
};
