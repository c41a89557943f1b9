#include "platform/linux/launch/WindowsOfApp.h"

#include "platform/linux/launch/DesktopApp.h"
#include "platform/linux/launch/ExecLine.h"

#include <QFileInfo>
#include <QStringList>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
bool isSame(const QString &name, const QString &other)
{
    return !name.isEmpty() && name.compare(other, Qt::CaseInsensitive) == 0;
}

/// The name of the program that the command runs, also through env and its settings.
QString programOf(const QStringList &command)
{
    const auto isProgram = [](const QString &word) {
        return QFileInfo(word).fileName() != u"env" && !word.contains(u'=')
            && !word.startsWith(u'-');
    };
    const auto program = std::ranges::find_if(command, isProgram);
    return program == command.cend() ? QString() : QFileInfo(*program).fileName();
}
} // namespace

AppNames AppNames::of(const DesktopApp &app)
{
    const auto command = parseExecLine(app.text("Exec"), {});
    return {
        .windowClass = app.text("StartupWMClass"),
        .id = idOf(app),
        .program = command ? programOf(*command) : QString(),
    };
}

QString AppNames::idOf(const DesktopApp &app)
{
    return app.id().chopped(QLatin1StringView(".desktop").size());
}

bool isWindowOf(const AppNames &app, const OpenWindow &window,
                const std::function<bool(const QString &windowClass)> &isClassOfApp)
{
    // Web apps of a browser have the class of the browser, and an instance of their own.
    if (isSame(app.windowClass, window.instance))
        return true;
    if (isSame(app.windowClass, window.className))
        return !isClassOfApp(window.instance);
    const auto isNamed = [&window](const QString &name) {
        return isSame(name, window.instance) || isSame(name, window.className);
    };
    const bool hasName = isSame(app.id, window.applicationId) || isNamed(app.id)
        || isNamed(app.id.section(u'.', -1)) || isNamed(app.program);
    return hasName && !isClassOfApp(window.instance) && !isClassOfApp(window.className);
}

bool isWindowOfProgram(const QString &path, const OpenWindow &window)
{
    if (window.process <= 0)
        return false;
    const QFileInfo program(u"/proc/%1/exe"_s.arg(window.process));
    return !program.canonicalFilePath().isEmpty()
        && program.canonicalFilePath() == QFileInfo(path).canonicalFilePath();
}
