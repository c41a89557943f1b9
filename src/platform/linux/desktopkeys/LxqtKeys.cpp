#include "platform/linux/desktopkeys/LxqtKeys.h"

#include "platform/linux/desktopkeys/ActionName.h"

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
    QString command;
    /// The object, and perhaps the method, of a D-Bus action.
    QString path;
    QString method;
    QString comment;
};

/// The character that the backslash at an index escapes; moves the index to the end of the escape.
/// Control characters become spaces.
QChar escapedCharacter(const QString &value, qsizetype &index)
{
    const QChar sign = index + 1 < value.size() ? value.at(++index) : u' ';
    if (sign != u'x')
        return "abfnrtv0"_L1.contains(sign) ? QChar(u' ') : sign;
    uint code = 0;
    for (bool isDigit = true; index + 1 < value.size(); ++index) {
        const uint digit = QStringView(value).sliced(index + 1, 1).toUInt(&isDigit, 16);
        if (!isDigit)
            break;
        code = code * 16 + digit;
    }
    return QChar(char16_t(code));
}

/// The text of a value as QSettings writes it; of a list, such as a command with arguments, the
/// texts without the commas between them.
QString plainText(const QString &value)
{
    QString text;
    bool isQuoted = false;
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar sign = value.at(i);
        if (sign == u'"')
            isQuoted = !isQuoted;
        else if (sign == u'\\')
            text += escapedCharacter(value, i);
        else if (isQuoted || sign != u',')
            text += sign;
    }
    return text;
}

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
        group.command = value;
    if (name == "path")
        group.path = value;
    if (name == "method")
        group.method = value;
    if (name == "Comment")
        group.comment = value;
}

std::optional<QString> nameOf(const Group &group)
{
    if (const auto command = actionName(plainText(group.command)))
        return command;
    if (const auto comment = actionName(plainText(group.comment)))
        return comment;
    const QString method = group.method.isEmpty() ? QString() : u'/' + group.method;
    return actionName(plainText(group.path + method));
}

std::optional<DesktopKey> keyOf(const Group &group)
{
    if (!group.isEnabled || !group.hasAction || callsUs(group.command))
        return {};
    const auto name = QString::fromLatin1(QByteArray::fromPercentEncoding(group.header));
    const auto accelerator = lxqtAccelerator(name.left(name.lastIndexOf(u'.')));
    if (!accelerator)
        return {};
    return DesktopKey{*accelerator, nameOf(group)};
}

// Does not use QSettings, which would deserialise whatever objects the file contains.
std::optional<QList<DesktopKey>> readKeys(const QString &path)
{
    QFile file(path);
    if (file.size() > maxFileSize || !file.open(QIODevice::ReadOnly))
        return {};
    QList<DesktopKey> found;
    Group group;
    const auto startGroup = [&](const QByteArray &header) {
        if (const auto key = keyOf(group))
            found << *key;
        group = {.header = header};
    };
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        if (line.startsWith('[') && line.endsWith(']'))
            startGroup(line.sliced(1).chopped(1));
        else
            addSetting(group, line);
    }
    startGroup({});
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
    setKeys(inForce == files.end() ? std::nullopt : readKeys(*inForce));
}
