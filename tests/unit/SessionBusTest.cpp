#include "platform/linux/base/SessionBus.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <chrono>
#include <cstring>
#include <functional>
#include <sys/socket.h>
#include <sys/un.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
constexpr const char *variable = "DBUS_SESSION_BUS_ADDRESS";
/// Each bus that hangs is waited for that long.
constexpr std::chrono::milliseconds shortPatience(100);

sockaddr_un socketAddress(const QString &path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray name = QFile::encodeName(path);
    std::memcpy(address.sun_path, name.constData(), size_t(name.size()));
    return address;
}

/// Listens where a session bus would, and does with the first connection what it is told to.
class Server
{
public:
    using Conduct = std::function<void(int connection)>;

    explicit Server(const Conduct &conduct)
        : m_socket(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        const auto address = socketAddress(path());
        [&] {
            QCOMPARE(bind(m_socket, reinterpret_cast<const sockaddr *>(&address), sizeof address),
                     0);
            QCOMPARE(listen(m_socket, 0), 0);
        }();
        if (conduct)
            m_thread = std::thread([this, conduct] {
                m_connection = accept(m_socket, nullptr, nullptr);
                conduct(m_connection);
            });
    }
    ~Server()
    {
        // Ends also what waits in the thread.
        shutdown(m_socket, SHUT_RDWR);
        if (m_thread.joinable())
            m_thread.join();
        close(m_connection);
        close(m_socket);
        for (const int connection : m_waiting)
            close(connection);
    }
    Q_DISABLE_COPY_MOVE(Server)

    QString folder() const { return m_folder.path(); }
    QString path() const { return m_folder.filePath(u"bus"_s); }

    void fillQueue()
    {
        const auto address = socketAddress(path());
        int status = 0;
        while (status == 0) {
            m_waiting.push_back(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
            status = connect(m_waiting.back(), reinterpret_cast<const sockaddr *>(&address),
                             sizeof address);
        }
    }

private:
    QTemporaryDir m_folder;
    int m_socket;
    int m_connection = -1;
    std::vector<int> m_waiting;
    std::thread m_thread;
};

/// Takes what it is sent, and answers so.
Server::Conduct answering(const QByteArray &answer)
{
    return [answer](int connection) {
        char request[512];
        if (read(connection, request, sizeof request) > 0)
            QCOMPARE(write(connection, answer.constData(), size_t(answer.size())), answer.size());
    };
}
} // namespace

class SessionBusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isUsedIfItDoesNotHang_data()
    {
        QTest::addColumn<Server::Conduct>("conduct");
        QTest::addColumn<QString>("address");
        const auto row = [](const char *title, const Server::Conduct &conduct,
                            const QString &address = u"unix:path=%1"_s) {
            QTest::newRow(title) << conduct << address;
        };
        row("a bus that answers", answering("OK 1234\r\nl"));
        row("a bus that refuses us", answering("REJECTED EXTERNAL\r\n"));
        row("a bus that hangs up", [](int connection) { shutdown(connection, SHUT_RDWR); });
        row("nobody", nullptr, u"unix:path=%1.gone"_s);
        row("nobody at a name that is too long", nullptr, u"unix:path=%1"_s + QString(200, u'x'));
        row("one of another kind", nullptr, u"tcp:host=localhost,port=1"_s);
        row("no address", nullptr, u"nonsense"_s);
    }
    void isUsedIfItDoesNotHang()
    {
        QFETCH(const Server::Conduct, conduct);
        QFETCH(const QString, address);
        const Server server(conduct);
        const QByteArray set = QString(address).replace(u"%1"_s, server.path()).toUtf8();
        qputenv(variable, set);
        avoidHangingSessionBus();
        QCOMPARE(qgetenv(variable), set);
        QCOMPARE(sessionBusAddressForPrograms(), set);
    }

    void isAvoidedIfItHangs_data()
    {
        QTest::addColumn<Server::Conduct>("conduct");
        QTest::addColumn<QByteArray>("address");
        const auto row = [](const char *title, const Server::Conduct &conduct,
                            const QByteArray &address = "unix:path=%1") {
            QTest::newRow(title) << conduct << address;
        };
        row("one that takes no connection", nullptr);
        row("one that says nothing", answering(""));
        row("one that stops within a line", answering("OK 12"));
        row("one that only lets us in", answering("OK 1234\r\n"));
        row("behind one that is not there", nullptr, "unix:path=/nowhere;unix:guid=1,path=%1");
        row("by default", nullptr, "");
    }
    void isAvoidedIfItHangs()
    {
        QFETCH(const Server::Conduct, conduct);
        QFETCH(const QByteArray, address);
        const Server server(conduct);
        qputenv("XDG_RUNTIME_DIR", server.folder().toUtf8());
        const QByteArray set = QByteArray(address).replace("%1", server.path().toUtf8());
        if (set.isEmpty())
            qunsetenv(variable);
        else
            qputenv(variable, set);
        QElapsedTimer timer;
        timer.start();
        avoidHangingSessionBus(shortPatience);
        const qint64 waited = timer.elapsed();
        QVERIFY(waited >= shortPatience.count() && waited < 1000);
        QCOMPARE(qgetenv(variable), QByteArray("disabled:"));
        QCOMPARE(sessionBusAddressForPrograms(), set);
    }

    void isAvoidedIfItsQueueIsFull()
    {
        Server server(nullptr);
        server.fillQueue();
        const QByteArray address = "unix:path=" + server.path().toUtf8();
        qputenv(variable, address);
        avoidHangingSessionBus(shortPatience);
        QCOMPARE(qgetenv(variable), QByteArray("disabled:"));
        QCOMPARE(sessionBusAddressForPrograms(), address);
    }
};

QTEST_APPLESS_MAIN(SessionBusTest)
#include "SessionBusTest.moc"
