#include "platform/linux/launch/LinuxWorkspace.h"

#include "platform/linux/launch/DesktopApp.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace
{
/// Makes the path absolute: applications do not start in our working folder.
QString absolute(const QString &path)
{
    return QFileInfo(path).absoluteFilePath();
}

/// Gives an empty error a text, so that none is shown without words.
std::optional<Error> inWords(std::optional<Error> error)
{
    if (error && error->description.isEmpty())
        error->description = u"The app could not be started."_s;
    return error;
}
} // namespace

LinuxWorkspace::LinuxWorkspace(UserActivation &activation)
    : m_activation(activation)
{
}

void LinuxWorkspace::openApplication(const QString &path,
                                     std::function<void(std::optional<Error>)> completion)
{
    if (!path.endsWith(u".desktop"_s)) {
        completion(m_launcher.launchProgram({absolute(path)}, m_activation.issueTokens()));
        return;
    }
    const DesktopApp *const app = m_apps.find(absolute(path));
    if (!app) {
        completion(DesktopApp::reasonForNone(absolute(path)));
        return;
    }
    m_launcher.launch(
        *app, {}, m_activation.issueTokens(),
        [completion = std::move(completion)](const auto &error) { completion(inWords(error)); });
}

void LinuxWorkspace::open(const QUrl &url, std::function<void(bool isOpened)> completion)
{
    const QUrl target = url.isLocalFile() ? QUrl::fromLocalFile(absolute(url.toLocalFile())) : url;
    const auto app = DesktopApp::defaultFor(target);
    if (!app) {
        completion(false);
        return;
    }
    m_launcher.launch(
        *app, target, m_activation.issueTokens(),
        [completion = std::move(completion)](const auto &error) { completion(!error); });
}
