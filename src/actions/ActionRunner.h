// Runs entries: opens their targets.
#pragma once

#include "model/LaunchEntry.h"
#include "model/RunOutcome.h"

#include <QUrl>
#include <functional>
#include <optional>

class Wording;
class Workspace;
struct OpenConfiguration;

namespace ActionRunner
{

/// Opens the entry's target; the configuration is for applications. The completion is called once,
/// on the main thread, possibly before the call returns.
void run(const LaunchEntry &entry, Workspace &workspace, const Wording &wording,
         const OpenConfiguration &configuration, std::function<void(RunOutcome)> completion);

/// The link that runs the Shortcut with this name; nothing if the name is not valid UTF-16.
std::optional<QUrl> shortcutURL(const QString &name);

/// "Not found" if the target of an app or path entry does not exist, else nothing.
std::optional<QString> missingReason(const LaunchEntry &entry);

/// Whether the trimmed text is a URL with a host that begins with lower-case http:// or https://.
bool isValidWebsite(const QString &text);

} // namespace ActionRunner
