#include "platform/linux/appearance/ConfiguredLooks.h"

#include "platform/linux/base/IniFile.h"

#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{
/// The possible files in order of precedence.
QStringList lxqtFiles()
{
    QStringList files = QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation)
        + QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation);
    for (QString &file : files)
        file += u"/lxqt/lxqt.conf"_s;
    return files;
}

QString text(const IniSettings &settings, const QByteArray &name)
{
    return QString::fromUtf8(settings[name]).remove(u'"');
}

std::optional<QFont> font(const QString &description)
{
    QFont font;
    return !description.isEmpty() && font.fromString(description) ? std::optional(font)
                                                                  : std::nullopt;
}
} // namespace

ConfiguredLooks readLxqtLooks()
{
    const IniSettings settings = readIniFiles(lxqtFiles());
    return {
        .font = font(text(settings, "Qt/font")),
        .iconTheme = text(settings, "General/icon_theme"),
    };
}
