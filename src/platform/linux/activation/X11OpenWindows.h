// Open windows as the window manager lists them on the root window.
#pragma once

#include "platform/linux/activation/OpenWindows.h"
#include "platform/linux/activation/UserActivation.h"
#include "platform/linux/x11/X11Connection.h"

#include <memory>

/// Uses a connection of its own, which is opened at the first request: waiting for an answer on the
/// hot keys' connection could leave a press in its queue.
class X11OpenWindows final : public OpenWindows
{
public:
    /// The activation must outlive it.
    explicit X11OpenWindows(const UserActivation &activation);
    ~X11OpenWindows() override;

    bool isAvailable() const override { return true; }
    void request(const WindowQuestions &questions) override;
    bool bringToFront(const WindowQuestions &questions,
                      const std::function<bool(const OpenWindow &)> &isWanted) override;

private:
    struct Session;
    struct Window;

    void activate(const Window &window);

    const UserActivation &m_activation;
    std::unique_ptr<Session> m_session;
};
