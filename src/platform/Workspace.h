// Opens applications, files and addresses as the desktop does, and brings them to the front.
#pragma once

#include "foundation/Result.h"

#include <QString>
#include <QUrl>
#include <functional>
#include <optional>

/// Each completion is called once, on the main thread, possibly before the call returns.
class Workspace
{
public:
    virtual ~Workspace() = default;

    /// Starts the application at that path: a .desktop file or an executable. Completes with the
    /// error if it could not be started.
    virtual void openApplication(const QString &path,
                                 std::function<void(std::optional<Error>)> completion) = 0;

    /// Opens a file, a folder or an address in its default application. Completes with whether
    /// there is one and it could be started.
    virtual void open(const QUrl &url, std::function<void(bool isOpened)> completion) = 0;
};
