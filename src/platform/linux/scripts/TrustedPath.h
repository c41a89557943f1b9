// Whether a file can be run without running what another user has put in its place.
#pragma once

#include "foundation/Result.h"

#include <QString>
#include <optional>

/// Why another user may decide what is found at that absolute path, if one may. Followed as the
/// system follows it, link by link: each folder, link and file on the way belongs to this user or
/// to root, and none of them can be changed by others. The user's own private group is nobody else.
/// In a sticky folder others can add what they like, but not replace what is there.
std::optional<Error> reasonForDistrust(const QString &path);
