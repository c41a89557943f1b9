#include "platform/linux/services/AutostartLoginItem.h"

#include "foundation/Files.h"
#include "foundation/Text.h"
#include "platform/linux/base/ApplicationId.h"
#include "platform/linux/launch/DesktopApp.h"

#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{
/// By the rule of all texts in .desktop files.
QString escaped(QString text)
{
    return text.replace(u'\\', u"\\\\"_s).replace(u'\n', u"\\n"_s);
}

/// By that and the rule of Exec lines.
QString execLine(const QString &program)
{
    QString line;
    for (const QChar character : program) {
        if (u"\"`$\\"_s.contains(character))
            line += u'\\';
        if (character == u'%')
            line += u'%';
        line += character;
    }
    return u'"' + escaped(line) + u'"';
}

/// No keys that delay the start: the key combinations are to be live at once. TryExec, so that
/// desktops pass over the file when the program has been removed.
QString content(const QString &program)
{
    return u"[Desktop Entry]\n"
           "Type=Application\n"
           "Name=Corvane\n"
           "Comment=Opens apps, files, websites and Shortcuts by key combinations\n"
           "Exec=%1\n"
           "TryExec=%2\n"
           "Icon=%3\n"
           "Terminal=false\n"
           "StartupNotify=false\n"_s.arg(execLine(program), escaped(program), applicationId);
}

/// By the key that all desktops know, or one of their own.
bool isSwitchedOff(const DesktopApp &app)
{
    return app.isTrue("Hidden") || app.isFalse("X-GNOME-Autostart-enabled")
        || app.isFalse("X-MATE-Autostart-enabled");
}
} // namespace

AutostartLoginItem::AutostartLoginItem(const QString &folder, const QString &program)
    : m_folder(folder)
    , m_file(folder + u'/' + applicationId + u".desktop"_s)
    , m_program(program)
{
}

LoginItemStatus AutostartLoginItem::status() const
{
    if (!QFileInfo::exists(m_file))
        return LoginItemStatus::notRegistered;
    const auto app = DesktopApp::fromFile(m_file);
    // GIO does not mind a file that names no program.
    if (!app || app->text("Exec").isEmpty())
        return LoginItemStatus::notFound;
    return isSwitchedOff(*app) ? LoginItemStatus::requiresApproval : LoginItemStatus::enabled;
}

std::optional<Error> AutostartLoginItem::registerItem()
{
    if (auto error = write())
        return error;
    if (status() == LoginItemStatus::enabled)
        return std::nullopt;
    // Nothing is to be left that some desktops may start and others not: GIO, for one, finds no
    // program whose path contains a percent sign.
    unregisterItem();
    return Error{u"The desktop finds no program at %1."_s.arg(quoted(m_program))};
}

std::optional<Error> AutostartLoginItem::write()
{
    if (auto error = makePrivateFolder(m_folder))
        return error;
    // What a link leads to is not ours, such as the file that the menus show.
    if (QFileInfo(m_file).isSymLink()) {
        if (auto failure = unregisterItem())
            return failure;
    }
    return replaceContent(m_file, content(m_program).toUtf8(), FileAccess::userOnly);
}

std::optional<Error> AutostartLoginItem::unregisterItem()
{
    const bool isGone =
        unlink(QFile::encodeName(m_file).constData()) == 0 || errno == ENOENT || errno == ENOTDIR;
    return isGone ? std::nullopt : std::optional(systemError());
}

QString runningProgram()
{
    return QFile::symLinkTarget(u"/proc/self/exe"_s);
}
