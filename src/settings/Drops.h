// What the user drops on the settings window, as an entry to add.
#pragma once

#include "model/LaunchEntry.h"

#include <QUrl>
#include <optional>

class InstalledApplications;
class QMimeData;

namespace Drops
{

/// The first file or folder of this computer, or http or https address, in the dragged data; also
/// if it is plain text that is such an address. Does not read the disk.
std::optional<QUrl> usableAddress(const QMimeData &data);

/// A new entry that opens the address, with the name that the editor would give it. Reads the disk.
LaunchEntry entryFor(const QUrl &address, InstalledApplications &applications);

} // namespace Drops
