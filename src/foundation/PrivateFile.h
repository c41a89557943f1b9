// A file that the program keeps for itself: read once, then replaced whole.
#pragma once

#include "foundation/Result.h"

#include <QByteArray>
#include <QString>
#include <optional>

class PrivateFile
{
public:
    /// A larger file is neither read nor written.
    PrivateFile(QString path, qint64 maxBytes);

    const QString &path() const { return m_path; }

    /// Makes the folder that the file lies in, if it is not there.
    std::optional<Error> makeFolder() const;

    /// The content; nothing if there is no file. What is no regular file is an error, and so is a
    /// link that does not lead to one.
    Result<std::optional<QByteArray>> read() const;

    /// To be called when the content could not be used: what is there is then kept beside the
    /// file before the next write, with ".unreadable" added to its name.
    void keepBeforeWriting() { m_isUnread = true; }

    /// Replaces the content, whole or not at all; only the user may use the file then. Makes the
    /// folder too. What is no regular file is kept as well. Where something cannot be kept, nothing
    /// is written.
    std::optional<Error> write(const QByteArray &content);

private:
    QString pathToKeep() const;
    std::optional<Error> keepAt(const QString &path) const;

    QString m_path;
    qint64 m_maxBytes;
    bool m_isUnread = false;
};
