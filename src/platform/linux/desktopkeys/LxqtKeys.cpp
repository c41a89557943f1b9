#include "platform/linux/desktopkeys/LxqtKeys.h"

#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <QVariant>
#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
/// Far more than any real list of shortcuts; a longer file is something else.
constexpr qint64 maxFileSize = 1'000'000;

/// The possible configuration files in order of precedence.
QStringList configFiles()
{
    QStringList files = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    for (QString &file : files)
        file += u"/lxqt/globalkeyshortcuts.conf"_s;
    return files;
}

bool isFile(const QString &path)
{
    return QFileInfo(path).isFile();
}

/// The path itself if it exists, else its nearest existing parent folder.
QString watchable(QString path)
{
    while (!QFileInfo::exists(path))
        path = QFileInfo(path).path();
    return path;
}

struct Group {
    /// The shortcut and a number, such as "Control%2BAlt%2BT.1".
    QByteArray header;
    bool isEnabled = true;
    /// True for a command or a D-Bus action.
    bool hasAction = false;
    bool callsUs = false;
};

void addSetting(Group &group, const QByteArray &line)
{
    const qsizetype sign = line.indexOf('=');
    if (sign < 0)
        return;
    const QByteArray name = line.first(sign).trimmed();
    const auto value = QString::fromUtf8(line.sliced(sign + 1).trimmed());
    if (name == "Enabled")
        group.isEnabled = QVariant(value).toBool();
    if (name == "Exec" || name == "path")
        group.hasAction = true;
    if (name == "Exec")
        group.callsUs = callsUs(value);
}

std::optional<Accelerator> acceleratorOf(const Group &group)
{
    if (!group.isEnabled || !group.hasAction || group.callsUs)
        return {};
    const auto name = QString::fromLatin1(QByteArray::fromPercentEncoding(group.header));
    return lxqtAccelerator(name.left(name.lastIndexOf(u'.')));
}

// Does not use QSettings, which would deserialise whatever objects the file contains.
std::optional<DesktopKeys::Accelerators> readAccelerators(const QString &path)
{
    QFile file(path);
    if (file.size() > maxFileSize || !file.open(QIODevice::ReadOnly))
        return {};
    QList<Group> groups;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        if (line.startsWith('[') && line.endsWith(']'))
            groups << Group{.header = line.sliced(1).chopped(1)};
        else if (!groups.isEmpty())
            addSetting(groups.last(), line);
    }
    DesktopKeys::Accelerators found;
    for (const Group &group : groups) {
        if (const auto accelerator = acceleratorOf(group))
            found << *accelerator;
    }
    return found;
}
} // namespace

LxqtKeys::LxqtKeys()
{
    // Watchers report one change of the file several times.
    m_pause.setInterval(50ms);
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, &LxqtKeys::read);
}

void LxqtKeys::start()
{
    m_watcher.emplace();
    connect(&*m_watcher, &QFileSystemWatcher::fileChanged, &m_pause, qOverload<>(&QTimer::start));
    connect(&*m_watcher, &QFileSystemWatcher::directoryChanged, &m_pause,
            qOverload<>(&QTimer::start));
    QMetaObject::invokeMethod(this, &LxqtKeys::read, Qt::QueuedConnection);
}

void LxqtKeys::read()
{
    const QStringList files = configFiles();
    // Renews all watches, because a file of the same name may have been replaced; does so first, so
    // that no change is missed.
    if (const QStringList watched = m_watcher->files() + m_watcher->directories();
        !watched.isEmpty())
        m_watcher->removePaths(watched);
    for (const QString &file : files)
        m_watcher->addPath(watchable(file));
    const auto inForce = std::ranges::find_if(files, isFile);
    setAccelerators(inForce == files.end() ? std::nullopt : readAccelerators(*inForce));
}
