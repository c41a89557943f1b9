// The applications on this computer, for the user to choose from.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

struct InstalledApplication {
    /// What starts it: the absolute path of its .desktop file.
    QString path;
    /// As the user sees it.
    QString name;
    /// The name of an icon of the desktop's theme or the path of an image; empty if it has none.
    QString icon;
    /// What else it is searched by: what kind of application it is, and words that go with it.
    QStringList keywords;

    bool operator==(const InstalledApplication &) const = default;
};

class InstalledApplications
{
public:
    virtual ~InstalledApplications() = default;

    /// Those that the desktop's own menus show to this user, by name. Reads the disk.
    virtual QList<InstalledApplication> all() = 0;

    /// The application that this file starts, shown in menus or not; nothing if it describes none.
    virtual std::optional<InstalledApplication> at(const QString &path) = 0;
};
