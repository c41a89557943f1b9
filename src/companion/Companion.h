// The program that runs a Shortcut for its link, and tells the user where that is not possible.
#pragma once

#include <QString>

/// Starts what the one argument, a link, names, and hands on the startup id and the activation
/// token. What it writes goes to the journal that listens at that path. The exit status: 0 if it
/// was started.
int companionMain(int argc, char *argv[], const QString &journalSocket);
