#include "actions/ActionRunner.h"

#include "foundation/Text.h"
#include "platform/Workspace.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace ActionRunner
{

namespace
{
using Completion = std::function<void(RunOutcome)>;

void runApp(const LaunchEntry &entry, Workspace &workspace, Completion completion)
{
    if (missingReason(entry)) {
        completion(RunOutcome::missing(
            u"The app for %1 was not found. It may have been moved or deleted."_s.arg(
                quoted(entry.name))));
        return;
    }
    workspace.openApplication(
        entry.target, [completion = std::move(completion)](const std::optional<Error> &error) {
            completion(error
                           ? RunOutcome::failed(u"Could not open the app: "_s + error->description)
                           : RunOutcome::success());
        });
}
} // namespace

void run(const LaunchEntry &entry, Workspace &workspace, Completion completion)
{
    if (entry.kind == ActionKind::app)
        runApp(entry, workspace, std::move(completion));
    else
        completion(RunOutcome::failed(
            u"%1 cannot be run yet: this version opens apps only."_s.arg(quoted(entry.name))));
}

std::optional<QString> missingReason(const LaunchEntry &entry)
{
    if (entry.kind == ActionKind::website || entry.kind == ActionKind::shortcut)
        return std::nullopt;
    // An empty path exists nowhere either.
    return QFileInfo::exists(entry.target) ? std::nullopt : std::optional(u"Not found"_s);
}

} // namespace ActionRunner
