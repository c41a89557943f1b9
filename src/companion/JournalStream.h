// The user's journal, for what started programs write.
#pragma once

#include <QString>

/// A descriptor of which each line is written to the journal that listens at that path, under that
/// identifier; or to nowhere, if none listens. Programs that are started inherit it.
int openJournalStream(const QString &socketPath, const QString &identifier);
