#include "platform/linux/desktopkeys/GSettingsKeys.h"

#include "foundation/Files.h"
#include "foundation/Json.h"
#include "platform/linux/desktopkeys/ActionName.h"

#include <QByteArrayList>
#include <QDir>
#include <QStandardPaths>
#include <algorithm>
#include <gio/gio.h>
#include <memory>
#include <nlohmann/json.hpp>
#include <system_error>
#include <utility>
#include <vector>
#include <xkbcommon/xkbcommon-keysyms.h>

using namespace Qt::StringLiterals;

const GSettingsFamily GSettingsFamily::gnome{
    .keys{
        {"org.gnome.desktop.wm.keybindings"},
        {"org.gnome.shell.keybindings"},
        {"org.gnome.mutter.keybindings"},
        {"org.gnome.mutter.wayland.keybindings"},
        {"org.gnome.mutter", "overlay-key"},
        {"org.gnome.settings-daemon.plugins.media-keys"},
    },
    .customSchema = "org.gnome.settings-daemon.plugins.media-keys.custom-keybinding",
    .customCommand = "command",
    .customPath = u"%1"_s,
    .customList = "custom-keybindings",
    .hasOverlayKey = true,
};

const GSettingsFamily GSettingsFamily::cinnamon{
    .keys{
        {"org.cinnamon.desktop.keybindings"},
        {"org.cinnamon.desktop.keybindings.wm"},
        {"org.cinnamon.desktop.keybindings.media-keys"},
        {"org.cinnamon.muffin.keybindings"},
        {"org.cinnamon.muffin.wayland.keybindings"},
    },
    .customSchema = "org.cinnamon.desktop.keybindings.custom-keybinding",
    .customCommand = "command",
    .customPath = u"/org/cinnamon/desktop/keybindings/custom-keybindings/%1/"_s,
    .customList = "custom-list",
    .hasOverlayKey = true,
    .menuSettings = u"cinnamon/spices/menu@cinnamon.org"_s,
};

const GSettingsFamily GSettingsFamily::mate{
    .keys{
        {"org.mate.Marco.global-keybindings"},
        {"org.mate.Marco.window-keybindings"},
        {"org.mate.SettingsDaemon.plugins.media-keys"},
    },
    .customSchema = "org.mate.control-center.keybinding",
    .customCommand = "action",
    .customPath = u"/org/mate/desktop/keybindings/custom%1/"_s,
};

namespace
{
constexpr const char *customKey = "binding";
constexpr const char *customName = "name";

/// The number of unused numbers in a row that ends the search. Freed numbers are reused, so larger
/// gaps are very unlikely.
constexpr int maxGap = 16;

void noteChange(GSettings *, const char *, gpointer isStale)
{
    *static_cast<bool *>(isStale) = true;
}

void noteFile(GFileMonitor *, GFile *, GFile *, GFileMonitorEvent, gpointer isStale)
{
    *static_cast<bool *>(isStale) = true;
}

/// Disconnects first: another reference may briefly outlive ours, but the flag that noteChange()
/// sets may not.
struct SettingsClose {
    void operator()(GSettings *settings) const
    {
        g_signal_handlers_disconnect_matched(settings, G_SIGNAL_MATCH_FUNC, 0, 0, nullptr,
                                             reinterpret_cast<gpointer>(noteChange), nullptr);
        g_object_unref(settings);
    }
};

struct MonitorEnd {
    void operator()(GFileMonitor *monitor) const
    {
        g_file_monitor_cancel(monitor);
        g_object_unref(monitor);
    }
};
using Monitor = std::unique_ptr<GFileMonitor, MonitorEnd>;

struct ContextEnd {
    void operator()(GMainContext *context) const
    {
        g_main_context_pop_thread_default(context);
        g_main_context_unref(context);
    }
};

struct OpenSettings {
    std::unique_ptr<GSettings, SettingsClose> settings;
    QByteArrayList keys;
};

/// GLib aborts or prints warnings for any other path.
bool isPath(const QByteArray &path)
{
    return path.startsWith('/') && path.endsWith('/') && !path.contains("//");
}

QByteArrayList keysOf(GSettingsSchema *schema, const char *key)
{
    if (key)
        return g_settings_schema_has_key(schema, key) ? QByteArrayList{key} : QByteArrayList();
    const std::unique_ptr<gchar *, decltype(&g_strfreev)> all(g_settings_schema_list_keys(schema),
                                                              g_strfreev);
    QByteArrayList keys;
    for (auto *const *name = all.get(); *name; ++name)
        keys << *name;
    return keys;
}

/// The texts of a string or string list; empty for values of other types.
QStringList texts(const OpenSettings &open, const QByteArray &key)
{
    const std::unique_ptr<GVariant, decltype(&g_variant_unref)> value(
        g_settings_get_value(open.settings.get(), key.constData()), g_variant_unref);
    if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING))
        return {QString::fromUtf8(g_variant_get_string(value.get(), nullptr))};
    if (!g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING_ARRAY))
        return {};
    QStringList texts;
    for (gsize i = 0; i < g_variant_n_children(value.get()); ++i) {
        const char *text = nullptr;
        g_variant_get_child(value.get(), i, "&s", &text);
        texts << QString::fromUtf8(text);
    }
    return texts;
}

bool isSet(const OpenSettings &open, const char *key)
{
    GVariant *const value = g_settings_get_user_value(open.settings.get(), key);
    if (!value)
        return false;
    g_variant_unref(value);
    return true;
}

/// The text of a key that the schema of an installed version may lack.
QString customText(const OpenSettings &custom, const QByteArray &key)
{
    return custom.keys.contains(key) ? texts(custom, key).value(0) : QString();
}

void add(QList<DesktopKey> &found, const QStringList &texts, const std::optional<QString> &action)
{
    for (const QString &text : texts) {
        if (const auto accelerator = gtkAccelerator(text))
            found << DesktopKey{*accelerator, action};
    }
}

/// The accelerators that open the menu, in the settings of its applet.
QStringList overlayKeys(const QString &file)
{
    /// Far more than the settings of an applet take.
    constexpr qint64 maxFileSize = 1'000'000;
    const auto content = readWhole(file, maxFileSize);
    const auto settings = content ? JsonCoding::parse(*content) : content.error();
    if (!settings || !settings->is_object() || !settings->contains("overlay-key"))
        return {};
    const auto keys = JsonCoding::textMember(settings->at("overlay-key"), "value");
    return keys ? keys->split(u"::"_s, Qt::SkipEmptyParts) : QStringList();
}

/// The settings of a family. Change signals arrive in the thread that opened them.
class FamilySettings
{
public:
    explicit FamilySettings(const GSettingsFamily &family);

    bool isInstalled() const { return !m_open.empty(); }
    bool isStale() const { return m_isStale; }
    QList<DesktopKey> read();

private:
    std::optional<OpenSettings> open(const GSettingsFamily::Keys &keys,
                                     const QByteArray &path = {});
    QList<DesktopKey> readMenus() const;
    QList<DesktopKey> readCustoms(const QStringList &list);
    void addCustom(QList<DesktopKey> &found, const OpenSettings &custom) const;

    const GSettingsFamily &m_family;
    bool m_isStale = true;
    std::vector<OpenSettings> m_open;
    std::vector<OpenSettings> m_customs;
    /// The folder of the menus' settings.
    QString m_menus;
    Monitor m_menuMonitor;
};

FamilySettings::FamilySettings(const GSettingsFamily &family)
    : m_family(family)
{
    for (const auto &keys : m_family.keys) {
        if (auto opened = open(keys))
            m_open.push_back(std::move(*opened));
    }
    if (m_family.menuSettings.isEmpty())
        return;
    m_menus = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u'/'
        + m_family.menuSettings;
    GFile *const folder = g_file_new_for_path(QFile::encodeName(m_menus).constData());
    m_menuMonitor.reset(g_file_monitor_directory(folder, G_FILE_MONITOR_NONE, nullptr, nullptr));
    g_object_unref(folder);
    if (m_menuMonitor)
        g_signal_connect(m_menuMonitor.get(), "changed", G_CALLBACK(noteFile), &m_isStale);
}

std::optional<OpenSettings> FamilySettings::open(const GSettingsFamily::Keys &keys,
                                                 const QByteArray &path)
{
    GSettingsSchemaSource *const installed = g_settings_schema_source_get_default();
    if (!installed)
        return std::nullopt;
    const std::unique_ptr<GSettingsSchema, decltype(&g_settings_schema_unref)> schema(
        g_settings_schema_source_lookup(installed, keys.schema, TRUE), g_settings_schema_unref);
    // GIO aborts if a schema with a fixed path gets another path, or one without a path gets none.
    if (!schema || (g_settings_schema_get_path(schema.get()) == nullptr) != isPath(path))
        return std::nullopt;
    GSettings *const settings =
        g_settings_new_full(schema.get(), nullptr, path.isEmpty() ? nullptr : path.constData());
    g_signal_connect(settings, "changed", G_CALLBACK(noteChange), &m_isStale);
    return OpenSettings{decltype(OpenSettings::settings)(settings), keysOf(schema.get(), keys.key)};
}

QList<DesktopKey> FamilySettings::read()
{
    m_isStale = false;
    QList<DesktopKey> found;
    QStringList list;
    for (const OpenSettings &open : m_open) {
        for (const QByteArray &key : open.keys) {
            if (key == m_family.customList)
                list = texts(open, key);
            else
                add(found, texts(open, key), actionName(wordsOf(QString::fromUtf8(key))));
        }
    }
    return found + readMenus() + readCustoms(list);
}

QList<DesktopKey> FamilySettings::readMenus() const
{
    QList<DesktopKey> found;
    for (const QFileInfo &file : QDir(m_menus).entryInfoList({u"*.json"_s}, QDir::Files))
        add(found, overlayKeys(file.filePath()), u"Menu"_s);
    return found;
}

void FamilySettings::addCustom(QList<DesktopKey> &found, const OpenSettings &custom) const
{
    const QString command = customText(custom, m_family.customCommand);
    if (callsUs(command))
        return;
    const auto name = actionName(customText(custom, customName));
    add(found, texts(custom, customKey), name ? name : actionName(command));
}

QList<DesktopKey> FamilySettings::readCustoms(const QStringList &list)
{
    // Closed only after the new ones are open, so that subscriptions to common paths persist.
    const auto former = std::exchange(m_customs, {});
    QList<DesktopKey> found;
    const auto openCustom = [&](const QString &name) {
        auto custom = open({m_family.customSchema}, m_family.customPath.arg(name).toUtf8());
        if (!custom || !custom->keys.contains(customKey))
            return false;
        addCustom(found, *custom);
        const bool isUsed = isSet(*custom, customKey);
        m_customs.push_back(std::move(*custom));
        return isUsed;
    };
    if (m_family.customList) {
        for (const QString &name : list)
            openCustom(name);
        return found;
    }
    for (int number = 0, gap = 0; gap < maxGap; ++number)
        gap = openCustom(QString::number(number)) ? 0 : gap + 1;
    return found;
}
} // namespace

GSettingsKeys::GSettingsKeys(GSettingsFamily family)
    : m_family(std::move(family))
{
}

void GSettingsKeys::start()
{
    try {
        m_thread = std::jthread([this](const std::stop_token &end) { follow(end); });
    } catch (const std::system_error &) {
        // Without a thread nothing can be read.
    }
}

bool GSettingsKeys::keepsSuperKey() const
{
    const auto isSuperAlone = [](const DesktopKey &key) {
        const quint32 keysym = key.accelerator.keysym;
        return key.accelerator.modifiers == 0
            && (keysym == XKB_KEY_Super_L || keysym == XKB_KEY_Super_R);
    };
    return m_family.hasOverlayKey && keys() && std::ranges::any_of(*keys(), isSuperAlone);
}

void GSettingsKeys::follow(const std::stop_token &end)
{
    const std::unique_ptr<GMainContext, ContextEnd> context(g_main_context_new());
    g_main_context_push_thread_default(context.get());
    const std::stop_callback wake(end, [&context] { g_main_context_wakeup(context.get()); });
    FamilySettings settings(m_family);
    if (!settings.isInstalled())
        return;
    for (;;) {
        // Handles all pending changes first, to read only once.
        while (g_main_context_iteration(context.get(), FALSE)) { }
        // Checked only now, because the loop above may have consumed the wake-up.
        if (end.stop_requested())
            return;
        if (settings.isStale())
            QMetaObject::invokeMethod(
                this, [this, found = settings.read()] { setKeys(found); }, Qt::QueuedConnection);
        else
            g_main_context_iteration(context.get(), TRUE);
    }
}
