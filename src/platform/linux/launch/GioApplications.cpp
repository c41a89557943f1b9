#include "platform/linux/launch/GioApplications.h"

#include "platform/linux/launch/DesktopApp.h"

#include <QCollator>
#include <QFileInfo>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
InstalledApplication described(const DesktopApp &app)
{
    QStringList keywords = QStringList(app.genericName()) + app.keywords();
    keywords.removeAll(QString());
    return {app.file(), app.displayName(), app.icon(), keywords};
}

void sortByName(QList<InstalledApplication> &applications)
{
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::sort(applications.begin(), applications.end(),
              [&collator](const InstalledApplication &one, const InstalledApplication &other) {
                  const int order = collator.compare(one.name, other.name);
                  return order ? order < 0 : one.path < other.path;
              });
}
} // namespace

QList<InstalledApplication> GioApplications::all()
{
    QList<InstalledApplication> applications;
    for (const DesktopApp &app : DesktopApp::allShown()) {
        // GIO may list applications without a file.
        if (!app.file().isEmpty())
            applications << described(app);
    }
    sortByName(applications);
    return applications;
}

std::optional<InstalledApplication> GioApplications::at(const QString &path)
{
    // Files with other names are started as programs, whatever they contain.
    if (!path.endsWith(u".desktop"_s))
        return std::nullopt;
    const auto app = DesktopApp::fromFile(QFileInfo(path).absoluteFilePath());
    return app ? std::optional(described(*app)) : std::nullopt;
}
