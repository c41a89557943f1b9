#include "platform/linux/desktopkeys/DBusDesktopKeys.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <chrono>
#include <limits>
#include <utility>

using namespace std::chrono_literals;

DBusDesktopKeys::DBusDesktopKeys(QString service)
    : m_service(std::move(service))
{
    // Desktops may change many shortcuts at once, with a signal for each.
    m_pause.setInterval(50ms);
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, &DBusDesktopKeys::beginReading);
}

void DBusDesktopKeys::start()
{
    auto *const owner = new QDBusServiceWatcher(m_service, QDBusConnection::sessionBus(),
                                                QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owner, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &, const QString &newOwner) {
                m_reading.reset();
                setKeys(std::nullopt);
                // A service owns its name before it can answer, so the reading is delayed.
                if (!newOwner.isEmpty())
                    refresh();
            });
    beginReading();
}

void DBusDesktopKeys::refresh()
{
    if (!m_pause.isActive())
        m_pause.start();
}

void DBusDesktopKeys::refreshOn(const QString &path, const QString &interface,
                                const QString &signal, const QStringList &arguments)
{
    // Accepts any sender: given a name, Qt would block to ask the bus for its owner.
    QDBusConnection::sessionBus().connect(QString(), path, interface, signal, arguments, QString(),
                                          this, SLOT(refresh()));
}

void DBusDesktopKeys::beginReading()
{
    m_reading = std::make_unique<QObject>();
    read();
}

void DBusDesktopKeys::ask(const QString &path, const QString &interface, const QString &method,
                          const QVariantList &arguments, const DBusAnswerHandler &handler)
{
    auto question = QDBusMessage::createMethodCall(m_service, path, interface, method);
    question.setAutoStartService(false);
    question.setArguments(arguments);
    // Nothing blocks on the answer, so it may take any time.
    constexpr int unlimited = std::numeric_limits<int>::max();
    callAsynchronously(question, m_reading.get(), handler, unlimited);
}
