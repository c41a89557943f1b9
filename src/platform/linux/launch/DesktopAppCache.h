// The .desktop files that were opened before, for as long as they stay as they are: to read one
// takes nearly as long as to start its program.
#pragma once

#include "platform/linux/launch/DesktopApp.h"

#include <QString>
#include <map>

class DesktopAppCache
{
public:
    /// As DesktopApp::fromFile; null instead of nothing. Valid until the next call.
    const DesktopApp *find(const QString &path);

private:
    /// What changes when a file is written or replaced.
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
