// Performs what an entry stands for.
#pragma once

#include "model/LaunchEntry.h"
#include "model/RunOutcome.h"

#include <functional>

class Workspace;

namespace ActionRunner
{

/// Opens the entry's target. The completion is called once, on the main thread, perhaps before
/// the call returns. So far only apps can be opened; other kinds fail and say so.
void run(const LaunchEntry &entry, Workspace &workspace,
         std::function<void(RunOutcome)> completion);

/// "Not found" if the target of an app or path entry does not exist, else nothing.
std::optional<QString> missingReason(const LaunchEntry &entry);

} // namespace ActionRunner
