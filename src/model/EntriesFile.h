// The file that stores the user's list.
#pragma once

#include "foundation/PrivateFile.h"
#include "model/LaunchEntry.h"

#include <QList>
#include <QString>
#include <optional>

class EntriesFile
{
public:
    /// The file lies in a folder of its own inside applicationSupport. That path is empty if the
    /// system has no such folder; reading and writing then fail.
    explicit EntriesFile(const QString &applicationSupport);

    /// Reads the list without changing the file; empty if there is no file yet.
    Result<QList<LaunchEntry>> read();

    /// Replaces the list atomically. If the file could not be read before, it is kept first, with
    /// ".unreadable" added to its name.
    std::optional<Error> write(const QList<LaunchEntry> &entries);

private:
    Result<QList<LaunchEntry>> readList() const;

    bool m_hasPlace;
    PrivateFile m_file;
};
