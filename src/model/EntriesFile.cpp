#include "model/EntriesFile.h"

#include "foundation/Files.h"
#include "foundation/Text.h"

#include <QDir>
#include <QFile>
#include <cstdio>
#include <filesystem>

using namespace Qt::StringLiterals;

namespace
{
/// Only what is certainly not there is no list yet; what just cannot be reached is an error later.
bool isThere(const QString &path)
{
    std::error_code error;
    const auto status = std::filesystem::symlink_status(QFile::encodeName(path).constData(), error);
    return status.type() != std::filesystem::file_type::not_found;
}

/// Where a file goes that could not be read.
QString keptPath(const QString &path)
{
    return path + u".unreadable"_s;
}

/// Puts a file or folder in the place of another.
bool replace(const QString &path, const QString &by)
{
    if (QFileInfo(path).isDir())
        QDir(path).removeRecursively();
    return std::rename(QFile::encodeName(by).constData(), QFile::encodeName(path).constData()) == 0;
}
} // namespace

EntriesFile::EntriesFile(QString applicationSupport)
    : m_applicationSupport(std::move(applicationSupport))
{
}

Result<QString> EntriesFile::storageURL() const
{
    if (m_applicationSupport.isEmpty())
        return Error{u"There is no folder for the data of programs."_s};
    const QString folder = m_applicationSupport + u"/Corvane"_s;
    if (!QDir().mkpath(folder))
        return Error{u"The folder %1 could not be made."_s.arg(quoted(folder))};
    return folder + u"/entries.json"_s;
}

Result<QList<LaunchEntry>> EntriesFile::read()
{
    const auto path = storageURL();
    auto entries = path ? readFrom(*path) : path.error();
    m_isUnread = !entries;
    return entries;
}

Result<QList<LaunchEntry>> EntriesFile::readFrom(const QString &path) const
{
    if (!isThere(path))
        return QList<LaunchEntry>();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return Error{file.errorString()};
    const QByteArray text = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return Error{file.errorString()};
    const auto json = JsonCoding::parse(text);
    if (!json)
        return json.error();
    return LaunchEntry::listFromJson(*json);
}

std::optional<Error> EntriesFile::write(const QList<LaunchEntry> &entries)
{
    OrderedJson list = OrderedJson::array();
    for (const LaunchEntry &entry : entries)
        list.push_back(entry.toJson());

    const auto path = storageURL();
    if (!path)
        return path.error();
    if (m_isUnread && !keepUnreadFile(*path))
        return Error{u"The unreadable list %1 could not be kept."_s.arg(quoted(*path))};
    const auto error = replaceContent(*path, JsonCoding::write(list));
    if (!error)
        m_isUnread = false;
    else if (m_isUnread && !isThere(*path))
        replace(*path, keptPath(*path));
    return error;
}

bool EntriesFile::keepUnreadFile(const QString &path)
{
    if (!isThere(path))
        return true;
    // What may not even be read can still be moved.
    if (!QFile(path).open(QIODevice::ReadOnly))
        return replace(keptPath(path), path);
    const QString copy = keptPath(path) + u".new"_s;
    QFile::remove(copy);
    return QFile::copy(path, copy) && replace(keptPath(path), copy);
}
