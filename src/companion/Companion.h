// The program that runs a Shortcut for its link, and notifies the user if it cannot.
#pragma once

#include <QString>

/// Starts the Shortcut that the only argument, a link, names, and passes on the startup id and the
/// activation token. The Shortcut's output goes to the journal that listens at the path. Returns
/// the exit status: 0 if the Shortcut was started.
int companionMain(int argc, char *argv[], const QString &journalSocket);
