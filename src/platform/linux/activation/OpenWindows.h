// The windows that are open in the session.
#pragma once

#include <QString>
#include <functional>
#include <sys/types.h>

/// What is to be asked of each window. Each question takes the display server some microseconds.
struct WindowQuestions {
    bool classes = false;
    bool applicationId = false;
    bool process = false;

    bool operator==(const WindowQuestions &) const = default;
};

/// What a window tells of its application. All of it may be missing.
struct OpenWindow {
    /// On X11 the two parts of WM_CLASS. On Wayland both are the application id.
    QString instance;
    QString className;
    /// The id of a GTK application, or the application id on Wayland.
    QString applicationId;
    /// 0 if unknown.
    pid_t process = 0;
};

/// Main thread only.
class OpenWindows
{
public:
    virtual ~OpenWindows() = default;

    /// Prepares the first request. To be called once, when the event loop runs.
    virtual void start() { }

    /// Whether this session lets us see windows and bring them to the front, as far as is known.
    virtual bool isAvailable() const = 0;

    /// Asks which windows are open, for the call of bringToFront() that follows soon. Forgets what
    /// was asked before.
    virtual void request(const WindowQuestions &questions) = 0;

    /// Asks what has not been requested, and brings the wanted window that was used last to the
    /// front, on its own workspace, on behalf of the user's latest action. If a wanted window is in
    /// front already, the one that was used least recently comes. Does not wait for the window.
    /// Returns false if no window is wanted.
    virtual bool bringToFront(const WindowQuestions &questions,
                              const std::function<bool(const OpenWindow &)> &isWanted) = 0;
};
