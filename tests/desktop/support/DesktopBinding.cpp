#include "support/DesktopBinding.h"

#include "support/PlasmaKeys.h"
#include "support/Sway.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
constexpr int boundCode = int(Qt::ControlModifier) | int(Qt::AltModifier) | Qt::Key_J;
const QStringList actionId{u"binding"_s, u"act"_s, u"Binding"_s, u"Act"_s};

bool isKWin()
{
    return qEnvironmentVariable("XDG_CURRENT_DESKTOP") == u"KDE";
}

void tellKWin(const QString &method, const QVariantList &arguments)
{
    QCOMPARE(askKGlobalAccel(method, arguments).type(), QDBusMessage::ReplyMessage);
}
} // namespace

DesktopBinding::DesktopBinding(const QString &command)
{
    if (isKWin()) {
        constexpr uint presentAndNotAutoloaded = 6;
        QDBusConnection::sessionBus().connect(QString(), u"/component/binding"_s,
                                              u"org.kde.kglobalaccel.Component"_s,
                                              u"globalShortcutPressed"_s, this, SLOT(act()));
        tellKWin(u"doRegister"_s, {actionId});
        tellKWin(u"setShortcut"_s,
                 {actionId, QVariant::fromValue(QList<int>{boundCode}), presentAndNotAutoloaded});
    } else {
        m_file = swayFolder().filePath(u"acts"_s);
        QFile::remove(m_file);
        askSway({u"bindsym Ctrl+Mod1+j exec echo >> %1 && %2"_s.arg(m_file, command)});
    }
}

DesktopBinding::~DesktopBinding()
{
    if (isKWin())
        tellKWin(u"unregister"_s, {actionId.at(0), actionId.at(1)});
    else
        askSway({u"unbindsym Ctrl+Mod1+j"_s});
}

int DesktopBinding::acts() const
{
    if (m_file.isEmpty())
        return m_signals;
    QFile file(m_file);
    return file.open(QIODevice::ReadOnly) ? int(file.readAll().size()) : 0;
}
