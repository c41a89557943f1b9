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

/// Asynchronous, for only then GIO waits for the answer of the bus, and without stopping us.
void launchThroughGio(const AppInfo &info, std::function<void(std::optional<Error>)> completion)
{
    using Completion = decltype(completion);
    const auto finish = [](GObject *source, GAsyncResult *result, gpointer data) {
        const std::unique_ptr<Completion> ended(static_cast<Completion *>(data));
        GError *error = nullptr;
        if (g_app_info_launch_uris_finish(G_APP_INFO(source), result, &error)) {
            (*ended)(std::nullopt);
            return;
        }
        (*ended)(Error{QString::fromUtf8(error->message)});
        g_error_free(error);
    };
    g_app_info_launch_uris_async(G_APP_INFO(info.get()), nullptr, nullptr, nullptr, finish,
                                 new Completion(std::move(completion)));
}
} // namespace

void LinuxWorkspace::openApplication(const QString &path,
                                     std::function<void(std::optional<Error>)> completion)
{
    if (path.endsWith(u".desktop"_s))
        openDesktopFile(path, std::move(completion));
    else
        completion(start({path}, QDir::homePath()));
}

void LinuxWorkspace::openDesktopFile(const QString &path, Completion completion)
{
    const AppInfo info(g_desktop_app_info_new_from_filename(QFile::encodeName(path).constData()));
    // GIO gives no reason: the file is malformed, or its program is not there.
    if (!info) {
        completion(Error{u"The app could not be started."_s});
        return;
    }
    if (isMoreThanAnExecLine(info)) {
        launchThroughGio(info, std::move(completion));
        return;
    }

    const ExecFields fields{
        .name = QString::fromUtf8(g_app_info_get_name(G_APP_INFO(info.get()))),
        .icon = stringValue(info, "Icon"),
        .desktopFile = path,
    };
    const auto arguments = parseExecLine(stringValue(info, "Exec"), fields);
    if (!arguments) {
        completion(arguments.error());
        return;
    }
    const QString folder = stringValue(info, "Path");
    completion(start(*arguments, folder.isEmpty() ? QDir::homePath() : folder));
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
