// Files, read and written whole.
#pragma once

#include "foundation/Result.h"

#include <QByteArray>
#include <QString>
#include <cerrno>
#include <optional>

/// The system's own words for an error number.
Error systemError(int number = errno);

/// The file's content. What is no regular file, or larger than that many bytes, is an error.
Result<QByteArray> readWhole(const QString &path, qint64 maxBytes);

/// Who may use a file that is written.
enum class FileAccess {
    /// The user alone (mode 0600), whatever the umask is and whoever could use the file before.
    userOnly,
    /// Whoever could use the file before; of a new file, whom the umask allows.
    asUsual,
};

/// Replaces the file's content, whole or not at all; makes the file if it is not there. When this
/// returns without an error, the content is on disk. A link stays, and the file that it names is
/// replaced. What is no regular file, and a link to nothing, is an error and stays.
std::optional<Error> replaceContent(const QString &path, const QByteArray &content,
                                    FileAccess access);

/// Makes the folder and those above it, as far as they are not there, for nobody but the user
/// (mode 0700), whatever the umask is. Folders that are there stay as they are.
std::optional<Error> makePrivateFolder(const QString &path);
