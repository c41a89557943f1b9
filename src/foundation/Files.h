// Reads and writes whole files.
#pragma once

#include "foundation/Result.h"

#include <QByteArray>
#include <QString>
#include <cerrno>
#include <optional>

/// The system's message for an error number.
Error systemError(int number = errno);

/// The file's content. It is an error if the file is not a regular one or is larger than maxBytes.
Result<QByteArray> readWhole(const QString &path, qint64 maxBytes);

/// Who may access a file after it is written.
enum class FileAccess {
    /// Only the user (mode 0600), whatever the umask and the former mode are.
    userOnly,
    /// An existing file keeps its mode; a new file gets the mode that the umask allows.
    asUsual,
};

/// Replaces the file's content atomically; creates the file if it does not exist. When this returns
/// without an error, the content is on disk. A symbolic link is kept, and the file that it points
/// to is replaced. Anything but a regular file, and a dangling link, is an error and is left alone.
std::optional<Error> replaceContent(const QString &path, const QByteArray &content,
                                    FileAccess access);

/// Creates a file that only the user may read, change and execute (mode 0700), whatever the umask
/// is. Anything that is at the path already, a dangling link too, is an error and is left alone.
/// After an error there is no new file.
std::optional<Error> writeNewProgram(const QString &path, const QByteArray &content);

/// Creates the folder and its missing parents with access for the user only (mode 0700), whatever
/// the umask is. Existing folders are left as they are.
std::optional<Error> makePrivateFolder(const QString &path);
