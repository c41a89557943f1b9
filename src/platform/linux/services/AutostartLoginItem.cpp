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
/// Escapes a string value of a .desktop file.
QString escaped(QString text)
{
    return text.replace(u'\\', u"\\\\"_s).replace(u'\n', u"\\n"_s);
}

/// Quotes the program for an Exec line, and escapes that as a string value.
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

/// The content of the autostart file. It has no keys that delay the start, because the key
/// combinations must be live at once. TryExec makes desktops skip the file when the program has
/// been removed.
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

/// Whether the item is switched off, by the standard key or by a desktop's own.
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
    // GIO accepts a file that names no program.
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
    // Leave nothing that some desktops may start and others not: GIO, for one, finds no program
    // whose path contains a percent sign.
    unregisterItem();
    return Error{u"The desktop finds no program at %1."_s.arg(quoted(m_program))};
}

std::optional<Error> AutostartLoginItem::write()
{
    if (auto error = makePrivateFolder(m_folder))
        return error;
    // The target of a link is not ours, such as the file that the menus show.
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
