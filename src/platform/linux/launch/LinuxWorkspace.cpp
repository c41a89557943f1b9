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

constexpr WindowQuestions questionsAboutProgram{.process = true};

WindowQuestions questionsAbout(const DesktopApp &app)
{
    // The id of a GTK application always has a dot.
    return {.classes = true, .applicationId = AppNames::idOf(app).contains(u'.')};
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

void LinuxWorkspace::start()
{
    if (m_windows)
        m_windows->start();
}

void LinuxWorkspace::prepareToActivate(const QString &path)
{
    if (!canActivate())
        return;
    if (!isDesktopFile(path))
        m_windows->request(questionsAboutProgram);
    else if (const DesktopApp *const app = m_apps.find(absolute(path)); app && hasToBeFound(*app))
        m_windows->request(questionsAbout(*app));
}

bool LinuxWorkspace::bringProgramToFront(const QString &path) const
{
    const auto isItsWindow = [&path](const OpenWindow &window) {
        return isWindowOfProgram(path, window);
    };
    return canActivate() && m_windows->bringToFront(questionsAboutProgram, isItsWindow);
}

bool LinuxWorkspace::bringToFront(const DesktopApp &app) const
{
    if (!canActivate() || !hasToBeFound(app))
        return false;
    const auto isItsWindow = [names = AppNames::of(app)](const OpenWindow &window) {
        return isWindowOf(names, window, DesktopApp::isWindowClassOfAny);
    };
    return m_windows->bringToFront(questionsAbout(app), isItsWindow);
}

void LinuxWorkspace::openApplication(const QString &path, const OpenConfiguration &configuration,
                                     std::function<void(std::optional<Error>)> completion)
{
    if (!isDesktopFile(path)) {
        if (configuration.activates && bringProgramToFront(absolute(path)))
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
    if (configuration.activates && bringToFront(*app)) {
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
    openBy(DesktopApp::defaultFor(target), target, std::move(completion));
}

void LinuxWorkspace::openToEdit(const QString &path, std::function<void(bool isOpened)> completion)
{
    // Notes the click in our window, so that the editor may come to the front.
    m_activation.happenedNow();
    const QUrl target = QUrl::fromLocalFile(absolute(path));
    openBy(QFileInfo(path).isDir() ? DesktopApp::defaultFor(target) : DesktopApp::textEditor(),
           target, std::move(completion));
}

void LinuxWorkspace::openBy(const std::optional<DesktopApp> &app, const QUrl &target,
                            std::function<void(bool isOpened)> completion)
{
    if (!app) {
        completion(false);
        return;
    }
    m_launcher.launch(
        *app, target, m_activation.issueTokens(),
        [completion = std::move(completion)](const auto &error) { completion(!error); });
}
