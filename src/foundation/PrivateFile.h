// A file of the program's own data: read once, then always replaced as a whole.
#pragma once

#include "foundation/Result.h"

#include <QByteArray>
#include <QString>
#include <optional>

class PrivateFile
{
public:
    /// Files larger than maxBytes are neither read nor written.
    PrivateFile(QString path, qint64 maxBytes);

    const QString &path() const { return m_path; }

    /// Creates the folder that contains the file, if it does not exist.
    std::optional<Error> makeFolder() const;

    /// The content; nothing if there is no file. Anything but a regular file is an error, and so is
    /// a link that does not lead to one.
    Result<std::optional<QByteArray>> read() const;

    /// Call this if the content could not be used. The next write then first keeps the existing
    /// file beside the new one, with ".unreadable" added to its name.
    void keepBeforeWriting() { m_isUnread = true; }

    /// Replaces the content atomically, with access for the user only. Creates the folder if
    /// needed. Anything at the path that is not a regular file is kept as well. If something cannot
    /// be kept, nothing is written.
    std::optional<Error> write(const QByteArray &content);

private:
    QString pathToKeep() const;
    std::optional<Error> keepAt(const QString &path) const;

    QString m_path;
    qint64 m_maxBytes;
    bool m_isUnread = false;
};
