#include "platform/linux/launch/LinuxWorkspace.h"

#include "platform/linux/launch/DesktopApp.h"
#include "platform/linux/launch/WindowsOfApp.h"

#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace
{
/// Makes the path absolute: applications do not start in our working folder.
QString absolute(const QString &path)
{
    return QFileInfo(path).absoluteFilePath();
}

bool isDesktopFile(const QString &path)
{
    return path.endsWith(u".desktop"_s);
}

/// An application that the bus activates brings itself to the front.
bool hasToBeFound(const DesktopApp &app)
{
    return !app.isTrue("DBusActivatable");
}

/// Gives an empty error a text, so that none is shown without words.
std::optional<Error> inWords(std::optional<Error> error)
{
    if (error && error->description.isEmpty())
        error->description = u"The app could not be started."_s;
    return error;
}
} // namespace

LinuxWorkspace::LinuxWorkspace(UserActivation &activation, std::unique_ptr<OpenWindows> windows)
    : m_activation(activation)
    , m_windows(std::move(windows))
{
}

void LinuxWorkspace::prepareToActivate(const QString &path)
{
    if (!canActivate())
        return;
    if (!isDesktopFile(path))
        m_windows->request({.process = true});
    else if (const DesktopApp *const app = m_apps.find(absolute(path)); app && hasToBeFound(*app))
        m_windows->request(
            // The id of a GTK application always has a dot.
            {.classes = true, .applicationId = AppNames::idOf(*app).contains(u'.')});
}

bool LinuxWorkspace::bringToFront(const std::function<bool(const OpenWindow &)> &isWanted) const
{
    return canActivate() && m_windows->bringToFront(isWanted);
}

void LinuxWorkspace::openApplication(const QString &path, const OpenConfiguration &configuration,
                                     std::function<void(std::optional<Error>)> completion)
{
    if (!isDesktopFile(path)) {
        const auto isItsWindow = [&path](const OpenWindow &window) {
            return isWindowOfProgram(absolute(path), window);
        };
        if (configuration.activates && bringToFront(isItsWindow))
            completion(std::nullopt);
        else
            completion(m_launcher.launchProgram({absolute(path)}, m_activation.issueTokens()));
        return;
    }
    const DesktopApp *const app = m_apps.find(absolute(path));
    if (!app) {
        completion(DesktopApp::reasonForNone(absolute(path)));
        return;
    }
    const auto isItsWindow = [names = AppNames::of(*app)](const OpenWindow &window) {
        return isWindowOf(names, window, DesktopApp::isWindowClassOfAny);
    };
    if (configuration.activates && hasToBeFound(*app) && bringToFront(isItsWindow)) {
        completion(std::nullopt);
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
