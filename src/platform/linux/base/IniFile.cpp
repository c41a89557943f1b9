#include "platform/linux/base/IniFile.h"

#include <QFile>
#include <QFileInfo>
#include <algorithm>
#include <utility>

namespace
{
/// Far more than any real configuration; a longer file is something else.
constexpr qint64 maxFileSize = 1'000'000;

// Does not use QSettings, which would deserialise whatever objects the file contains.
void addSettings(IniSettings &settings, const QString &path)
{
    QFile file(path);
    // Opening a pipe could block.
    if (!QFileInfo(file).isFile() || file.size() > maxFileSize || !file.open(QIODevice::ReadOnly))
        return;
    QByteArray group;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        const qsizetype sign = line.indexOf('=');
        if (line.startsWith('[') && line.endsWith(']'))
            group = line.sliced(1).chopped(1);
        else if (sign >= 0)
            settings[group + '/' + line.first(sign).trimmed()] = line.sliced(sign + 1).trimmed();
    }
}
} // namespace

IniSettings readIniFiles(const QStringList &paths)
{
    IniSettings settings;
    QStringList leastImportantFirst = paths;
    std::ranges::reverse(leastImportantFirst);
    for (const QString &path : std::as_const(leastImportantFirst))
        addSettings(settings, path);
    return settings;
}
