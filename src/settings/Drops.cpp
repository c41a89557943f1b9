#include "settings/Drops.h"

#include "actions/ActionRunner.h"
#include "settings/Targets.h"

#include <QDir>
#include <QFile>
#include <QMimeData>
#include <QSysInfo>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace Drops
{

namespace
{
QString textOf(const QUrl &address)
{
    return address.toString(QUrl::FullyEncoded);
}

/// Sources may name the computer in addresses of files.
bool isFileOfThisComputer(const QUrl &address)
{
    const QString host = address.host();
    const bool isHere = host.isEmpty() || host == u"localhost"
        || host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0;
    return address.scheme() == u"file" && isHere && address.path().startsWith(u'/');
}

bool isUsable(const QUrl &address)
{
    return isFileOfThisComputer(address) || ActionRunner::isValidWebsite(textOf(address));
}

/// The addresses, or what may be one if the data is plain text.
QList<QUrl> addressesIn(const QMimeData &data)
{
    if (data.hasUrls())
        return data.urls();
    const QString text = data.text().trimmed();
    const bool isOneWord =
        std::ranges::none_of(text, [](QChar character) { return character.isSpace(); });
    const QUrl address = isOneWord ? QUrl(text) : QUrl();
    return address.isLocalFile() ? QList<QUrl>() : QList{address};
}

/// Whether the file's content is a program. On some file systems, such as those of memory cards,
/// every file is executable.
bool isProgram(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray beginning = file.read(4);
    return beginning.startsWith("#!") || beginning == "\177ELF";
}

ActionKind kindOf(const QString &path, InstalledApplications &applications)
{
    const bool isApp =
        isApplication(path, applications) && (path.endsWith(u".desktop"_s) || isProgram(path));
    return isApp ? ActionKind::app : ActionKind::path;
}
} // namespace

std::optional<QUrl> usableAddress(const QMimeData &data)
{
    const QList<QUrl> addresses = addressesIn(data);
    const auto found = std::ranges::find_if(addresses, isUsable);
    return found == addresses.end() ? std::nullopt : std::optional(*found);
}

LaunchEntry entryFor(const QUrl &address, InstalledApplications &applications)
{
    if (!isFileOfThisComputer(address))
        return {.name = address.host(), .kind = ActionKind::website, .target = textOf(address)};
    const QString path = QDir::cleanPath(address.path(QUrl::FullyDecoded));
    const ActionKind kind = kindOf(path, applications);
    return {.name = nameOfTarget(kind, path, applications), .kind = kind, .target = path};
}

} // namespace Drops
