// Opens applications, files and addresses as the desktop does, and brings them to the front.
#pragma once

#include "foundation/Result.h"

#include <QString>
#include <QUrl>
#include <functional>
#include <optional>

/// How an application is opened.
struct OpenConfiguration {
    /// Whether a window that the application has open comes to the front instead of another start.
    bool activates = false;
};

/// Each completion is called once, on the main thread, possibly before the call returns.
class Workspace
{
public:
    virtual ~Workspace() = default;

    /// Whether this session lets open applications come to the front, as far as is known.
    virtual bool canActivate() const = 0;

    /// Asks which windows are open. To be called at the user's action, shortly before
    /// openApplication() with that path and a configuration that activates, which then hardly has
    /// to wait. Without this call, it asks itself.
    virtual void prepareToActivate(const QString &path) = 0;

    /// Starts the application at that path: a .desktop file or an executable. Completes with the
    /// error if it could not be started.
    virtual void openApplication(const QString &path, const OpenConfiguration &configuration,
                                 std::function<void(std::optional<Error>)> completion) = 0;

    /// Opens a file, a folder or an address in its default application. Completes with whether
    /// there is one and it could be started.
    virtual void open(const QUrl &url, std::function<void(bool isOpened)> completion) = 0;

    /// Opens a folder in the file manager, or a file in the user's text editor, whatever type the
    /// file has: a script is never run. To be called at the user's action in a window of ours.
    /// Completes as open() does.
    virtual void openToEdit(const QString &path, std::function<void(bool isOpened)> completion) = 0;
};
