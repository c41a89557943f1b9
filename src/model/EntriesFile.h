// The file that holds the user's list between two runs of the program.
#pragma once

#include "model/LaunchEntry.h"

#include <QList>
#include <QString>
#include <optional>

class EntriesFile
{
public:
    /// Lies in a folder of its own inside that one, which may be empty where there is none.
    explicit EntriesFile(QString applicationSupport);

    /// The list; empty if there is no file yet. The file stays as it is.
    Result<QList<LaunchEntry>> read();

    /// Replaces the list, whole or not at all. A file that could not be read before is kept first,
    /// with ".unreadable" added to its name.
    std::optional<Error> write(const QList<LaunchEntry> &entries);

private:
    /// The path of the file; makes its folder if it is not there.
    Result<QString> storageURL() const;
    Result<QList<LaunchEntry>> readFrom(const QString &path) const;
    static bool keepUnreadFile(const QString &path);

    QString m_applicationSupport;
    /// What may be there was never in a list of ours.
    bool m_isUnread = false;
};
