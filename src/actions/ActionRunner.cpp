#include "actions/ActionRunner.h"

#include "foundation/Text.h"
#include "platform/Wording.h"
#include "platform/Workspace.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace ActionRunner
{

namespace
{
using Completion = std::function<void(RunOutcome)>;

/// Opens the URL; failure is the message for the user if that fails.
void open(const QUrl &url, const QString &failure, Workspace &workspace, Completion completion)
{
    workspace.open(url, [failure, completion = std::move(completion)](bool isOpened) {
        completion(isOpened ? RunOutcome::success() : RunOutcome::failed(failure));
    });
}

void runApp(const LaunchEntry &entry, Workspace &workspace, const OpenConfiguration &configuration,
            Completion completion)
{
    if (missingReason(entry)) {
        completion(RunOutcome::missing(
            u"The app for %1 was not found. It may have been moved or deleted."_s.arg(
                quoted(entry.name))));
        return;
    }
    workspace.openApplication(
        entry.target, configuration,
        [completion = std::move(completion)](const std::optional<Error> &error) {
            completion(error
                           ? RunOutcome::failed(u"Could not open the app: "_s + error->description)
                           : RunOutcome::success());
        });
}

/// The path's last component; "/" for the root folder.
QString lastPathComponent(const QString &path)
{
    const QString name = QFileInfo(QDir::cleanPath(path)).fileName();
    return name.isEmpty() ? u"/"_s : name;
}

void runPath(const LaunchEntry &entry, Workspace &workspace, const Wording &wording,
             Completion completion)
{
    if (missingReason(entry)) {
        completion(RunOutcome::missing(
            u"The file or folder for %1 was not found. It may have been moved or deleted."_s.arg(
                quoted(entry.name))));
        return;
    }
    open(QUrl::fromLocalFile(entry.target),
         wording.couldNotOpen(quoted(lastPathComponent(entry.target))), workspace,
         std::move(completion));
}

std::optional<QUrl> websiteURL(const QString &text)
{
    const QString address = text.trimmed();
    if (!address.startsWith(u"http://"_s) && !address.startsWith(u"https://"_s))
        return std::nullopt;
    const QUrl url(address);
    return url.isValid() && !url.host().isEmpty() ? std::optional(url) : std::nullopt;
}

void runWebsite(const LaunchEntry &entry, Workspace &workspace, const Wording &wording,
                Completion completion)
{
    const auto url = websiteURL(entry.target);
    if (!url) {
        completion(RunOutcome::failed(
            u"%1 is not a valid web address. It must start with http:// or https://."_s.arg(
                quoted(entry.target))));
        return;
    }
    open(*url, wording.couldNotOpen(u"the website"_s), workspace, std::move(completion));
}

void runShortcut(const LaunchEntry &entry, Workspace &workspace, const Wording &wording,
                 Completion completion)
{
    const auto url = shortcutURL(entry.target);
    if (!url) {
        completion(RunOutcome::failed(
            u"The Shortcut name %1 could not be turned into a link."_s.arg(quoted(entry.target))));
        return;
    }
    open(*url, wording.couldNotRunShortcuts(), workspace, std::move(completion));
}
} // namespace

void run(const LaunchEntry &entry, Workspace &workspace, const Wording &wording,
         const OpenConfiguration &configuration, Completion completion)
{
    switch (entry.kind) {
    case ActionKind::app:
        runApp(entry, workspace, configuration, std::move(completion));
        break;
    case ActionKind::path:
        runPath(entry, workspace, wording, std::move(completion));
        break;
    case ActionKind::website:
        runWebsite(entry, workspace, wording, std::move(completion));
        break;
    case ActionKind::shortcut:
        runShortcut(entry, workspace, wording, std::move(completion));
        break;
    }
}

std::optional<QUrl> shortcutURL(const QString &name)
{
    if (!name.isValidUtf16())
        return std::nullopt;
    // Percent-encodes everything except letters, digits and -._~
    const QUrl url(u"shortcuts://run-shortcut?name="_s
                   + QString::fromLatin1(QUrl::toPercentEncoding(name)));
    return url.isValid() ? std::optional(url) : std::nullopt;
}

std::optional<QString> missingReason(const LaunchEntry &entry)
{
    if (entry.kind == ActionKind::website || entry.kind == ActionKind::shortcut)
        return std::nullopt;
    // This also covers an empty path, which never exists.
    return QFileInfo::exists(entry.target) ? std::nullopt : std::optional(u"Not found"_s);
}

bool isValidWebsite(const QString &text)
{
    return websiteURL(text).has_value();
}

} // namespace ActionRunner
