// Opens things the way the desktop opens them, and brings them to the front.
#pragma once

#include "foundation/Result.h"

#include <QString>
#include <QUrl>
#include <functional>
#include <optional>

/// The completions are called once, on the main thread, perhaps before the call returns.
class Workspace
{
public:
    virtual ~Workspace() = default;

    /// Starts the application at that path: a .desktop file or an executable file. Completes with
    /// the error if it could not be started.
    virtual void openApplication(const QString &path,
                                 std::function<void(std::optional<Error>)> completion) = 0;

    /// Hands a file, a folder or an address to the application that opens such by default.
    /// Completes with whether there is one and it could be started.
    virtual void open(const QUrl &url, std::function<void(bool isOpened)> completion) = 0;
};
