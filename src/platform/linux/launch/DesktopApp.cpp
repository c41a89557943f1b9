#include "platform/linux/launch/DesktopApp.h"

#include "platform/linux/launch/ExecError.h"
#include "platform/linux/launch/ExecLine.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>

using namespace Qt::StringLiterals;

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

/// A raw value from the file's main group; empty if there is none.
QString rawValue(GKeyFile *file, const char *key)
{
    return takeText(g_key_file_get_string(file, G_KEY_FILE_DESKTOP_GROUP, key, nullptr));
}

bool isInstalled(const QString &program)
{
    return !takeText(g_find_program_in_path(QFile::encodeName(program).constData())).isEmpty();
}

/// The program that GIO does not find; empty if it is there or the lines name none.
QString missingProgram(GKeyFile *file)
{
    const auto command = parseExecLine(rawValue(file, G_KEY_FILE_DESKTOP_KEY_EXEC), {});
    for (const QString &program : {rawValue(file, G_KEY_FILE_DESKTOP_KEY_TRY_EXEC),
                                   command ? command->constFirst() : QString()}) {
        if (!program.isEmpty() && !isInstalled(program))
            return program;
    }
    return {};
}
} // namespace

std::optional<DesktopApp> DesktopApp::fromFile(const QString &path)
{
    // Skip pipes: GIO would block until somebody writes to them.
    if (!QFileInfo(path).isFile())
        return std::nullopt;
    auto *const info = g_desktop_app_info_new_from_filename(QFile::encodeName(path).constData());
    return info ? std::optional(DesktopApp(info)) : std::nullopt;
}

Error DesktopApp::reasonForNone(const QString &path)
{
    const std::unique_ptr<GKeyFile, decltype(&g_key_file_unref)> file(g_key_file_new(),
                                                                      &g_key_file_unref);
    QString program;
    // Open regular files only: opening a pipe would wait for its writer.
    if (QFileInfo(path).isFile()
        && g_key_file_load_from_file(file.get(), QFile::encodeName(path).constData(),
                                     G_KEY_FILE_NONE, nullptr))
        program = missingProgram(file.get());
    return program.isEmpty() ? Error{u"The app could not be started."_s} : notInstalled(program);
}

std::vector<DesktopApp> DesktopApp::all()
{
    std::vector<DesktopApp> apps;
    GList *const infos = g_app_info_get_all();
    for (const GList *item = infos; item; item = item->next)
        apps.push_back(DesktopApp(G_DESKTOP_APP_INFO(item->data)));
    g_list_free(infos);
    return apps;
}

std::vector<DesktopApp> DesktopApp::allShown()
{
    auto apps = all();
    std::erase_if(
        apps, [](const DesktopApp &app) { return !g_app_info_should_show(G_APP_INFO(app.get())); });
    return apps;
}

bool DesktopApp::isWindowClassOfAny(const QString &windowClass)
{
    return !windowClass.isEmpty() && std::ranges::any_of(all(), [&](const DesktopApp &app) {
        return app.text("StartupWMClass").compare(windowClass, Qt::CaseInsensitive) == 0;
    });
}

std::optional<DesktopApp> DesktopApp::defaultFor(const QUrl &url)
{
    GAppInfo *const handler = url.isLocalFile()
        ? handlerOfFile(url.toLocalFile())
        : g_app_info_get_default_for_uri_scheme(url.scheme().toUtf8().constData());
    return owning(handler);
}

std::optional<DesktopApp> DesktopApp::textEditor()
{
    return owning(g_app_info_get_default_for_type("text/plain", FALSE));
}

/// Takes ownership of the info, which may be null.
std::optional<DesktopApp> DesktopApp::owning(GAppInfo *info)
{
    return info ? std::optional(DesktopApp(G_DESKTOP_APP_INFO(info))) : std::nullopt;
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

QString DesktopApp::displayName() const
{
    return QString::fromUtf8(g_app_info_get_display_name(G_APP_INFO(get())));
}

QString DesktopApp::icon() const
{
    GIcon *const icon = g_app_info_get_icon(G_APP_INFO(get()));
    if (G_IS_FILE_ICON(icon))
        return QFile::decodeName(g_file_peek_path(g_file_icon_get_file(G_FILE_ICON(icon))));
    if (G_IS_THEMED_ICON(icon))
        return QString::fromUtf8(g_themed_icon_get_names(G_THEMED_ICON(icon))[0]);
    return {};
}

QString DesktopApp::genericName() const
{
    return QString::fromUtf8(g_desktop_app_info_get_generic_name(get()));
}

QStringList DesktopApp::keywords() const
{
    QStringList words;
    const char *const *const list = g_desktop_app_info_get_keywords(get());
    for (auto word = list; word && *word; ++word)
        words << QString::fromUtf8(*word);
    return words;
}

QString DesktopApp::text(const char *key) const
{
    return takeText(g_desktop_app_info_get_string(get(), key));
}

bool DesktopApp::isTrue(const char *key) const
{
    return g_desktop_app_info_get_boolean(get(), key);
}

bool DesktopApp::isFalse(const char *key) const
{
    return g_desktop_app_info_has_key(get(), key) && !isTrue(key);
}
