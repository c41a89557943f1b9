#include "foundation/Files.h"

#include "foundation/Text.h"

#include <QDir>
#include <QFileInfo>
#include <QLocale>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
/// The file's path with links resolved, so that replacing the file keeps the link.
Result<QByteArray> pathOfFile(const QString &path)
{
    const QFileInfo info(path);
    if (info.exists() && !info.isFile())
        return Error{u"%1 is not a file."_s.arg(quoted(path))};
    if (!info.exists() && info.isSymLink())
        return Error{u"%1 is a link to nothing."_s.arg(quoted(path))};
    return QFile::encodeName(info.exists() ? info.canonicalFilePath() : path);
}

/// The mode for the new file.
mode_t modeFor(const QByteArray &path, FileAccess access)
{
    if (access == FileAccess::userOnly)
        return S_IRUSR | S_IWUSR;
    struct stat status = {};
    if (stat(path.constData(), &status) == 0)
        return status.st_mode & ACCESSPERMS;
    // The umask can only be read by setting it. The temporary one is strict, so that files which
    // other threads create meanwhile are safe.
    const mode_t usual = umask(S_IRWXG | S_IRWXO);
    umask(usual);
    return DEFFILEMODE & ~usual;
}

/// Makes a rename durable: without this, a power failure could bring the old file back. Errors are
/// ignored, because some file systems do not support it.
void flushFolderOf(const QByteArray &path)
{
    const QByteArray folder = QFile::encodeName(QFileInfo(QFile::decodeName(path)).path());
    const int descriptor = open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    fsync(descriptor);
    close(descriptor);
}
} // namespace

Error systemError(int number)
{
    return {QString::fromLocal8Bit(std::strerror(number))};
}

Result<QByteArray> readWhole(const QString &path, qint64 maxBytes)
{
    QFile file(path);
    // Reading a pipe would block, and a device may be endless.
    if (const QFileInfo info(path); info.exists() && !info.isFile())
        return Error{u"%1 is not a file."_s.arg(quoted(path))};
    if (!file.open(QIODevice::ReadOnly))
        return Error{file.errorString()};
    // Read one byte more than allowed, since the reported size of a file may differ from its
    // content.
    QByteArray content = file.read(maxBytes + 1);
    if (file.error() != QFileDevice::NoError)
        return Error{file.errorString()};
    if (content.size() > maxBytes)
        return Error{
            u"The file is larger than %1."_s.arg(QLocale::c().formattedDataSize(maxBytes))};
    return content;
}

std::optional<Error> replaceContent(const QString &path, const QByteArray &content,
                                    FileAccess access)
{
    const auto place = pathOfFile(path);
    if (!place)
        return place.error();
    QByteArray beside = *place + ".XXXXXX";
    // This creates the file with mode 0600 at most.
    const int descriptor = mkostemp(beside.data(), O_CLOEXEC);
    if (descriptor < 0)
        return systemError();
    // This may fail: some file systems have no modes.
    fchmod(descriptor, modeFor(*place, access));
    QFile file;
    file.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered, QFile::AutoCloseHandle);
    std::optional<Error> error;
    if (file.write(content) != content.size() || fsync(descriptor) != 0
        || rename(beside.constData(), place->constData()) != 0)
        error = systemError();
    if (error)
        unlink(beside.constData());
    else
        flushFolderOf(*place);
    return error;
}

std::optional<Error> writeNewProgram(const QString &path, const QByteArray &content)
{
    const QByteArray place = QFile::encodeName(path);
    const int descriptor =
        open(place.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRWXU);
    if (descriptor < 0)
        return systemError();
    // The umask may have removed some of the user's own permissions.
    fchmod(descriptor, S_IRWXU);
    QFile file;
    file.open(descriptor, QIODevice::WriteOnly | QIODevice::Unbuffered, QFile::AutoCloseHandle);
    if (file.write(content) == content.size() && fsync(descriptor) == 0)
        return std::nullopt;
    const Error error = systemError();
    unlink(place.constData());
    return error;
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
    // The umask may have removed some of the user's own permissions.
    if (mkdir(name.constData(), S_IRWXU) == 0 && chmod(name.constData(), S_IRWXU) == 0)
        return std::nullopt;
    const Error error = systemError();
    // Another program may have created it meanwhile.
    if (QFileInfo(folder).isDir())
        return std::nullopt;
    return Error{u"The folder %1 could not be made: %2"_s.arg(quoted(path), error.description)};
}
