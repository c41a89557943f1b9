#include "settings/Targets.h"

#include "platform/InstalledApplications.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace
{
/// The path's last component without its extension.
QString nameOfFile(const QString &path)
{
    const QFileInfo file(QDir::cleanPath(path));
    if (file.isRoot())
        return u"/"_s;
    // A leading dot starts no extension.
    return file.completeBaseName().isEmpty() ? file.fileName() : file.completeBaseName();
}
} // namespace

bool isApplication(const QString &path, InstalledApplications &applications)
{
    if (path.endsWith(u".desktop"_s))
        return applications.at(path).has_value();
    const QFileInfo file(path);
    return file.isFile() && file.isExecutable();
}

QString nameOfTarget(ActionKind kind, const QString &path, InstalledApplications &applications)
{
    if (kind == ActionKind::app) {
        if (const auto app = applications.at(path))
            return app->name;
    }
    return nameOfFile(path);
}
