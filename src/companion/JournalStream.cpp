#include "companion/JournalStream.h"

#include "foundation/Text.h"

#include <QFile>
#include <cstring>
#include <fcntl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace
{
/// A stream socket connected to the path; -1 if that fails.
int connectTo(const QByteArray &path)
{
    sockaddr_un address = {.sun_family = AF_UNIX};
    if (path.size() >= qsizetype(sizeof address.sun_path))
        return -1;
    std::memcpy(address.sun_path, path.constData(), size_t(path.size()));
    const int stream = socket(AF_UNIX, SOCK_STREAM, 0);
    if (stream >= 0
        && connect(stream, reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0)
        return stream;
    close(stream);
    return -1;
}

/// The header that the journal expects before the first line.
QByteArray header(const QString &identifier)
{
    // No unit, priority 6 (information) for all lines, and no forwarding to other logs.
    return onOneLine(identifier).toUtf8() + "\n\n6\n0\n0\n0\n0\n";
}
} // namespace

int openJournalStream(const QString &socketPath, const QString &identifier)
{
    const int stream = connectTo(QFile::encodeName(socketPath));
    if (stream >= 0) {
        const QByteArray text = header(identifier);
        if (send(stream, text.constData(), size_t(text.size()), MSG_NOSIGNAL) == text.size()) {
            // The journal never sends anything.
            shutdown(stream, SHUT_RD);
            return stream;
        }
        close(stream);
    }
    return open("/dev/null", O_WRONLY);
}
