#include "platform/linux/launch/DesktopAppCache.h"

#include <QFile>
#include <sys/stat.h>

const DesktopApp *DesktopAppCache::find(const QString &path)
{
    const auto version = versionOf(path);
    const auto known = m_known.find(path);
    if (known != m_known.end() && version == known->second.version)
        return &known->second.app;

    m_known.erase(path);
    auto app = DesktopApp::fromFile(path);
    if (!app || !version)
        return nullptr;
    return &m_known.emplace(path, Known{*version, std::move(*app)}).first->second.app;
}

std::optional<DesktopAppCache::Version> DesktopAppCache::versionOf(const QString &path)
{
    struct stat file = {};
    if (stat(QFile::encodeName(path).constData(), &file) != 0)
        return std::nullopt;
    return Version{file.st_dev, file.st_ino, file.st_ctim.tv_sec, file.st_ctim.tv_nsec};
}
