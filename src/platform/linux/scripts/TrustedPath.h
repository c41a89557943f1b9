// Checks that a file can be run without running what another user has put in its place.
#pragma once

#include "foundation/Result.h"

#include <QString>
#include <optional>

/// Explains why another user could decide what is found at that absolute path; nothing if none can.
/// Follows the path link by link, as the system does: each folder, link and file on the way must
/// belong to this user or to root, and others must not be able to change it. The user's own private
/// group does not count as others. In a sticky folder others can add files, but not replace
/// existing ones.
std::optional<Error> reasonForDistrust(const QString &path);
