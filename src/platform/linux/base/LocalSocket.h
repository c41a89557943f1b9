// A connection to a server on this machine that may be slow, or not answer at all.
#pragma once

#include <QByteArray>
#include <QDeadlineTimer>
#include <QtGlobal>

class LocalSocket
{
public:
    enum class State {
        connected,
        /// Nobody listens there.
        refused,
        /// What was waited for did not come in time.
        timedOut,
        /// The server has closed the connection.
        closed,
    };

    /// Connects to the socket with that name: a path, or a zero byte and an abstract name. Nothing
    /// is waited for longer than until the deadline.
    LocalSocket(const QByteArray &name, const QDeadlineTimer &deadline);
    ~LocalSocket();
    Q_DISABLE_COPY_MOVE(LocalSocket)

    State state() const { return m_state; }

    void send(const QByteArray &bytes);

    /// At least one byte; none if the connection is not in order any more.
    QByteArray receive();

private:
    void limit(int option) const;
    void fail();

    int m_descriptor;
    QDeadlineTimer m_deadline;
    State m_state = State::connected;
};
