// Opens things the way the desktop opens them.
#pragma once

#include "foundation/Result.h"

#include <QString>
#include <functional>
#include <optional>

class Workspace
{
public:
    virtual ~Workspace() = default;

    /// Starts the application at that path: a .desktop file or an executable file. The completion
    /// is called once, on the main thread, with the error if it could not be started.
    virtual void openApplication(const QString &path,
                                 std::function<void(std::optional<Error>)> completion) = 0;
};
