// The file that holds the user's list between two runs of the program.
#pragma once

#include "foundation/PrivateFile.h"
#include "model/LaunchEntry.h"

#include <QList>
#include <QString>
#include <optional>

class EntriesFile
{
public:
    /// Lies in a folder of its own inside that one, which may be empty where there is none.
    explicit EntriesFile(const QString &applicationSupport);

    /// The list; empty if there is no file yet. The file stays as it is.
    Result<QList<LaunchEntry>> read();

    /// Replaces the list, whole or not at all. A file that could not be read before is kept first,
    /// with ".unreadable" added to its name.
    std::optional<Error> write(const QList<LaunchEntry> &entries);

private:
    Result<QList<LaunchEntry>> readList() const;

    bool m_hasPlace;
    PrivateFile m_file;
};
