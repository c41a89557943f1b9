// What a full disk does to those who write files.
#pragma once

#include <QScopeGuard>
#include <csignal>
#include <sys/resource.h>

/// Acts while no file may grow beyond a hundred bytes, as if the disk were full.
template <typename Action>
auto withLittleSpace(Action action)
{
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit little{100, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &little);
    const auto restored = qScopeGuard([&before] { setrlimit(RLIMIT_FSIZE, &before); });
    return action();
}
