// Files, read and written whole.
#pragma once

#include "foundation/Result.h"

#include <QByteArray>
#include <QString>
#include <optional>

/// The file's content. What is no regular file, or larger than that many bytes, is an error.
Result<QByteArray> readWhole(const QString &path, qint64 mostBytes);

/// Replaces the file's content, whole or not at all; makes the file if it is not there.
std::optional<Error> replaceContent(const QString &path, const QByteArray &content);

/// Makes the folder and those above it, as far as they are not there, for nobody but the user
/// (mode 0700), whatever the umask is. Folders that are there stay as they are.
std::optional<Error> makePrivateFolder(const QString &path);
