#include "foundation/Files.h"

#include "foundation/Text.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <QSaveFile>
#include <cerrno>
#include <cstring>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{
/// Goes on after what just fits on the disk, because only the rest makes the error.
bool writeAll(QSaveFile &file, const QByteArray &content)
{
    qsizetype written = 0;
    while (written < content.size()) {
        const qint64 more = file.write(content.constData() + written, content.size() - written);
        if (more <= 0)
            return false;
        written += more;
    }
    return true;
}
} // namespace

Result<QByteArray> readWhole(const QString &path, qint64 mostBytes)
{
    QFile file(path);
    // A pipe would be waited for, and a device may have no end.
    if (const QFileInfo info(path); info.exists() && !info.isFile())
        return Error{u"%1 is not a file."_s.arg(quoted(path))};
    if (!file.open(QIODevice::ReadOnly))
        return Error{file.errorString()};
    // One more, since the size that a file tells is not always that of its content.
    QByteArray content = file.read(mostBytes + 1);
    if (file.error() != QFileDevice::NoError)
        return Error{file.errorString()};
    if (content.size() > mostBytes)
        return Error{
            u"The file is larger than %1."_s.arg(QLocale::c().formattedDataSize(mostBytes))};
    return content;
}

std::optional<Error> replaceContent(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    // Flushed first, because commit() takes no notice of a disk that is too full for the rest; and
    // twice, because what fits of it is no error yet.
    const bool isWritten = file.open(QIODevice::WriteOnly) && writeAll(file, content)
        && (file.flush() || file.flush()) && file.commit();
    return isWritten ? std::nullopt : std::optional(Error{file.errorString()});
}

std::optional<Error> makePrivateFolder(const QString &path)
{
    const QString folder = QDir::cleanPath(path);
    if (QFileInfo(folder).isDir())
        return std::nullopt;
    if (const QString parent = QFileInfo(folder).path(); parent != folder) {
        if (auto error = makePrivateFolder(parent))
            return error;
    }
    const QByteArray name = QFile::encodeName(folder);
    // The umask may take some of the user's own permissions away.
    if (mkdir(name.constData(), S_IRWXU) == 0 && chmod(name.constData(), S_IRWXU) == 0)
        return std::nullopt;
    const int error = errno;
    // Another program may have made it meanwhile.
    if (QFileInfo(folder).isDir())
        return std::nullopt;
    return Error{u"The folder %1 could not be made: %2"_s.arg(
        quoted(path), QString::fromLocal8Bit(std::strerror(error)))};
}
