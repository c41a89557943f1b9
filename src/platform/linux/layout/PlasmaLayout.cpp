#include "platform/linux/layout/PlasmaLayout.h"

#include "platform/linux/base/DBusCall.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>

using namespace Qt::StringLiterals;

namespace
{
const QString keyboardService = u"org.kde.keyboard"_s;
const QString layoutsPath = u"/Layouts"_s;
const QString layoutsInterface = u"org.kde.KeyboardLayouts"_s;
} // namespace

void PlasmaLayout::start()
{
    auto bus = QDBusConnection::sessionBus();
    auto *const owner = new QDBusServiceWatcher(keyboardService, bus,
                                                QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(owner, &QDBusServiceWatcher::serviceOwnerChanged, this, &PlasmaLayout::ask);
    // Accepts any sender: given a name, Qt would block to ask the bus for its owner.
    bus.connect(QString(), layoutsPath, layoutsInterface, u"layoutChanged"_s, this,
                SLOT(setIndex(uint)));
    bus.connect(QString(), layoutsPath, layoutsInterface, u"layoutListChanged"_s, this,
                SLOT(ask()));
    ask();
}

void PlasmaLayout::ask()
{
    auto question = QDBusMessage::createMethodCall(keyboardService, layoutsPath, layoutsInterface,
                                                   u"getLayout"_s);
    question.setAutoStartService(false);
    callAsynchronously(question, this, [this](const QDBusMessage &answer) {
        // Without the service there is one layout.
        const QDBusPendingReply<uint> index(answer);
        setIndex(index.isError() ? 0 : index.value());
    });
}

void PlasmaLayout::setIndex(uint index)
{
    if (index == m_index)
        return;
    m_index = index;
    Q_EMIT changed();
}
