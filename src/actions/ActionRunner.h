// Performs what an entry stands for.
#pragma once

#include "model/LaunchEntry.h"
#include "model/RunOutcome.h"

#include <QUrl>
#include <functional>
#include <optional>

class Workspace;

namespace ActionRunner
{

/// Opens the entry's target. The completion is called once, on the main thread, perhaps before
/// the call returns.
void run(const LaunchEntry &entry, Workspace &workspace,
         std::function<void(RunOutcome)> completion);

/// The link that runs the Shortcut of that name; nothing if the name is no valid text.
std::optional<QUrl> shortcutURL(const QString &name);

/// "Not found" if the target of an app or path entry does not exist, else nothing.
std::optional<QString> missingReason(const LaunchEntry &entry);

/// Whether the text, blanks around it aside, is an address with a host that begins with http://
/// or https:// in small letters.
bool isValidWebsite(const QString &text);

} // namespace ActionRunner
