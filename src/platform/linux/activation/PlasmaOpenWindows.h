// Open windows as KWin shows them to programs that it permits to manage windows.
#pragma once

#include "platform/linux/activation/ActivationTokens.h"
#include "platform/linux/activation/OpenWindows.h"

#include <memory>

/// Each request has a connection of its own: once the interface is bound, KWin reports every change
/// of a window until the connection ends. KWin takes up to 40 ms to answer a new connection, so the
/// one for the next request is opened in advance.
class PlasmaOpenWindows final : public OpenWindows
{
public:
    /// The tokens, which know what KWin permits, must outlive it.
    explicit PlasmaOpenWindows(const ActivationTokens &tokens);
    ~PlasmaOpenWindows() override;

    bool isAvailable() const override { return m_tokens.isPermitted(); }
    void start() override;
    void request(const WindowQuestions &questions) override;
    /// Waits for KWin, but at most a second.
    bool bringToFront(const WindowQuestions &questions,
                      const std::function<bool(const OpenWindow &)> &isWanted) override;

private:
    struct Session;
    struct Window;

    const ActivationTokens &m_tokens;
    /// The connection for the next request.
    std::unique_ptr<Session> m_session;
};
