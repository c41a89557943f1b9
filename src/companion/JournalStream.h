// Sends the output of started programs to the user's journal.
#pragma once

#include <QString>

/// Returns a descriptor that started programs inherit. The journal that listens at the path logs
/// each line written to it under the identifier. If none listens, the output is discarded.
int openJournalStream(const QString &socketPath, const QString &identifier);
