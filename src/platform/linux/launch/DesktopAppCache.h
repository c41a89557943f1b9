// Caches .desktop files that have been opened, until they change: reading one takes nearly as long
// as starting its program.
#pragma once

#include "platform/linux/launch/DesktopApp.h"

#include <QString>
#include <map>

class DesktopAppCache
{
public:
    /// Like DesktopApp::fromFile(), with null for nothing. Valid until the next call.
    const DesktopApp *find(const QString &path);

private:
    /// Identifies a state of the file: changes when the file is written or replaced.
    struct Version {
        quint64 device;
        quint64 inode;
        qint64 seconds;
        qint64 nanoseconds;

        bool operator==(const Version &) const = default;
    };
    struct Known {
        Version version;
        DesktopApp app;
    };

    static std::optional<Version> versionOf(const QString &path);

    std::map<QString, Known> m_known;
};
