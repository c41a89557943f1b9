#include "foundation/PrivateFile.h"

#include "foundation/Files.h"
#include "foundation/Text.h"

#include <QFile>
#include <QFileInfo>
#include <QLocale>
#include <cstdio>
#include <filesystem>

using namespace Qt::StringLiterals;

namespace
{
/// The type of what is at the path, without following links; "none" if the path cannot be reached.
std::filesystem::file_type typeOf(const QString &path)
{
    std::error_code error;
    return std::filesystem::symlink_status(QFile::encodeName(path).constData(), error).type();
}

/// Whether anything is at the path. An unreachable path counts as existing, so that it is never
/// mistaken for a missing file.
bool isThere(const QString &path)
{
    return typeOf(path) != std::filesystem::file_type::not_found;
}

/// Whether something other than a regular file, such as a folder or a link, is at the path.
bool isTakenByOther(const QString &path)
{
    using Type = std::filesystem::file_type;
    const Type type = typeOf(path);
    return type != Type::not_found && type != Type::none && type != Type::regular;
}

bool rename(const QString &from, const QString &to)
{
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}
} // namespace

PrivateFile::PrivateFile(QString path, qint64 maxBytes)
    : m_path(std::move(path))
    , m_maxBytes(maxBytes)
{
}

std::optional<Error> PrivateFile::makeFolder() const
{
    return makePrivateFolder(QFileInfo(m_path).path());
}

Result<std::optional<QByteArray>> PrivateFile::read() const
{
    if (!isThere(m_path))
        return std::optional<QByteArray>();
    auto content = readWhole(m_path, m_maxBytes);
    if (!content)
        return content.error();
    return std::optional(std::move(content).value());
}

std::optional<Error> PrivateFile::write(const QByteArray &content)
{
    if (content.size() > m_maxBytes)
        return Error{
            u"The file would be larger than %1."_s.arg(QLocale::c().formattedDataSize(m_maxBytes))};
    if (auto error = makeFolder())
        return error;
    // Another program may have put something there after the file was read.
    const bool isInTheWay = isThere(m_path) && (m_isUnread || !QFileInfo(m_path).isFile());
    const QString kept = isInTheWay ? pathToKeep() : QString();
    if (isInTheWay) {
        if (auto error = keepAt(kept))
            return error;
    }
    auto error = replaceContent(m_path, content, FileAccess::userOnly);
    if (!error)
        m_isUnread = false;
    else if (isInTheWay && !isThere(m_path))
        rename(kept, m_path);
    return error;
}

/// An unused path, or that of a file kept earlier, which may be replaced.
QString PrivateFile::pathToKeep() const
{
    const QString path = m_path + u".unreadable"_s;
    QString free = path;
    for (int number = 1; isTakenByOther(free); ++number)
        free = path + u'.' + QString::number(number);
    return free;
}

std::optional<Error> PrivateFile::keepAt(const QString &path) const
{
    // A readable file is copied, so that the original remains until the new file replaces it.
    if (const auto content = readWhole(m_path, m_maxBytes))
        return replaceContent(path, *content, FileAccess::userOnly);
    if (rename(m_path, path))
        return std::nullopt;
    return Error{u"The unreadable file %1 could not be kept: %2"_s.arg(quoted(m_path),
                                                                       systemError().description)};
}
