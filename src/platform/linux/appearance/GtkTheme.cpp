#include "platform/linux/appearance/GtkTheme.h"

#include "platform/linux/appearance/GtkColors.h"
#include "platform/linux/base/IniFile.h"

#include <QDir>
#include <QRegularExpression>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{
QStringList settingsFiles()
{
    QStringList files = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    files << u"/etc"_s;
    for (QString &file : files)
        file += u"/gtk-3.0/settings.ini"_s;
    return files;
}

QStringList themeFolders()
{
    QStringList folders = QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
    for (QString &folder : folders)
        folder += u"/themes"_s;
    folders.insert(1, QDir::homePath() + u"/.themes"_s);
    return folders;
}

/// The subfolders with a theme's style sheets, those for newer versions of GTK first.
QStringList versionFolders()
{
    QStringList folders;
    for (int version = 24; version >= 14; version -= 2)
        folders << u"gtk-3.%1"_s.arg(version);
    return folders << u"gtk-3.0"_s;
}

struct StyleSheet {
    QDir theme;
    QString path;
};

std::optional<StyleSheet> find(const QString &theme, const QString &name)
{
    for (const QString &themes : themeFolders()) {
        const QDir folder(themes + u'/' + theme);
        for (const QString &version : versionFolders()) {
            const QString path = version + u'/' + name;
            if (folder.exists(path))
                return StyleSheet{folder, path};
        }
    }
    return {};
}

std::optional<StyleSheet> styleSheet(const GtkTheme &theme)
{
    if (theme.variant == GtkVariant::dark) {
        if (const auto dark = find(theme.name, u"gtk-dark.css"_s))
            return dark;
    }
    return find(theme.name, u"gtk.css"_s);
}

/// GTK contains these themes itself, and ignores files of them.
bool isBuiltIn(const QString &theme)
{
    return theme == u"Adwaita" || theme == u"HighContrast";
}

/// The background of windows; nothing if it cannot be read.
std::optional<QRgb> background(const GtkTheme &theme)
{
    if (theme.name.isEmpty() || isBuiltIn(theme.name))
        return {};
    const auto found = styleSheet(theme);
    return found ? gtkWindowColor(found->theme, found->path) : std::nullopt;
}

bool isNamedDark(const QString &theme)
{
    // Not "darker": such themes have a light window with a dark title bar.
    static const QRegularExpression pattern(u"(dark|inverse)(?![a-z])"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    return theme.contains(pattern);
}
} // namespace

GtkTheme readGtkTheme()
{
    const IniSettings settings = readIniFiles(settingsFiles());
    const QByteArray prefersDark = settings["Settings/gtk-application-prefer-dark-theme"];
    return {
        .name = QString::fromUtf8(settings["Settings/gtk-theme-name"]),
        .variant = prefersDark == "1" || prefersDark.toLower() == "true" ? GtkVariant::dark
                                                                         : GtkVariant::standard,
    };
}

bool isDark(const GtkTheme &theme)
{
    // Qt's grey is weighted by how bright each colour appears.
    if (const auto color = background(theme))
        return qGray(*color) < 128;
    return theme.variant == GtkVariant::dark || isNamedDark(theme.name);
}
