#include "platform/linux/LinuxWorkspace.h"

#include "platform/linux/launch/ExecLine.h"
#include "platform/linux/launch/Spawn.h"

#include <QDir>
#include <QFile>
#include <gio/gdesktopappinfo.h>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{
struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
using AppInfo = std::unique_ptr<GDesktopAppInfo, Unref>;

QString stringValue(const AppInfo &info, const char *key)
{
    char *const text = g_desktop_app_info_get_string(info.get(), key);
    const QString value = QString::fromUtf8(text);
    g_free(text);
    return value;
}

/// A terminal around the program, or a start by a D-Bus message, is GIO's own business.
bool isMoreThanAnExecLine(const AppInfo &info)
{
    return g_desktop_app_info_get_boolean(info.get(), "Terminal")
        || g_desktop_app_info_get_boolean(info.get(), "DBusActivatable");
}

std::optional<Error> launchThroughGio(const AppInfo &info)
{
    GError *error = nullptr;
    if (g_app_info_launch(G_APP_INFO(info.get()), nullptr, nullptr, &error))
        return std::nullopt;
    const Error failure{QString::fromUtf8(error->message)};
    g_error_free(error);
    return failure;
}
} // namespace

void LinuxWorkspace::openApplication(const QString &path,
                                     std::function<void(std::optional<Error>)> completion)
{
    completion(path.endsWith(u".desktop"_s) ? openDesktopFile(path)
                                            : start({path}, QDir::homePath()));
}

std::optional<Error> LinuxWorkspace::openDesktopFile(const QString &path)
{
    const AppInfo info(g_desktop_app_info_new_from_filename(QFile::encodeName(path).constData()));
    // GIO gives no reason: the file is malformed, or its program is not there.
    if (!info)
        return Error{u"The app could not be started."_s};
    if (isMoreThanAnExecLine(info))
        return launchThroughGio(info);

    const ExecFields fields{
        .name = QString::fromUtf8(g_app_info_get_name(G_APP_INFO(info.get()))),
        .icon = stringValue(info, "Icon"),
        .desktopFile = path,
    };
    const auto arguments = parseExecLine(stringValue(info, "Exec"), fields);
    if (!arguments)
        return arguments.error();
    const QString folder = stringValue(info, "Path");
    return start(*arguments, folder.isEmpty() ? QDir::homePath() : folder);
}

std::optional<Error> LinuxWorkspace::start(const QStringList &arguments,
                                           const QString &workingFolder)
{
    const auto child = spawn(arguments, workingFolder);
    if (!child)
        return child.error();
    m_reaper.reapWhenEnded(*child);
    return std::nullopt;
}
