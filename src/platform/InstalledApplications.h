// The installed applications that the user can choose from.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>

struct InstalledApplication {
    /// The absolute path of its .desktop file.
    QString path;
    /// The displayed name.
    QString name;
    /// The name of an icon in the desktop's theme or the path of an image; empty if it has none.
    QString icon;
    /// Further search terms: the kind of application and related words.
    QStringList keywords;

    bool operator==(const InstalledApplication &) const = default;
};

class InstalledApplications
{
public:
    virtual ~InstalledApplications() = default;

    /// The applications that the desktop's own menus show to this user, sorted by name. Reads the
    /// disk.
    virtual QList<InstalledApplication> all() = 0;

    /// The application that this file starts, even if menus hide it; nothing if the file describes
    /// none.
    virtual std::optional<InstalledApplication> at(const QString &path) = 0;
};
