#include "platform/linux/launch/DesktopApp.h"

#include <QFile>
#include <QFileInfo>

namespace
{
QString takeText(char *text)
{
    const QString taken = QString::fromUtf8(text);
    g_free(text);
    return taken;
}

GAppInfo *handlerOfFile(const QString &path)
{
    GFile *const file = g_file_new_for_path(QFile::encodeName(path).constData());
    GAppInfo *const handler = g_file_query_default_handler(file, nullptr, nullptr);
    g_object_unref(file);
    return handler;
}
} // namespace

std::optional<DesktopApp> DesktopApp::fromFile(const QString &path)
{
    auto *const info = g_desktop_app_info_new_from_filename(QFile::encodeName(path).constData());
    return info ? std::optional(DesktopApp(info)) : std::nullopt;
}

std::optional<DesktopApp> DesktopApp::defaultFor(const QUrl &url)
{
    GAppInfo *const handler = url.isLocalFile()
        ? handlerOfFile(url.toLocalFile())
        : g_app_info_get_default_for_uri_scheme(url.scheme().toUtf8().constData());
    return handler ? std::optional(DesktopApp(G_DESKTOP_APP_INFO(handler))) : std::nullopt;
}

QString DesktopApp::id() const
{
    return QFileInfo(file()).fileName();
}

QString DesktopApp::file() const
{
    return QFile::decodeName(g_desktop_app_info_get_filename(get()));
}

QString DesktopApp::name() const
{
    return QString::fromUtf8(g_app_info_get_name(G_APP_INFO(get())));
}

QString DesktopApp::text(const char *key) const
{
    return takeText(g_desktop_app_info_get_string(get(), key));
}

bool DesktopApp::isTrue(const char *key) const
{
    return g_desktop_app_info_get_boolean(get(), key);
}
