// How much work something is.
#pragma once

#include <ctime>

/// The seconds of processor time that the action takes: not more while the machine is busy.
template <typename Action>
double cpuSeconds(Action action)
{
    const std::clock_t start = std::clock();
    action();
    return double(std::clock() - start) / CLOCKS_PER_SEC;
}
