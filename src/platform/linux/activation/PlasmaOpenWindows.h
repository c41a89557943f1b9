// Open windows as KWin shows them to programs that it permits to manage windows.
#pragma once

#include "platform/linux/activation/ActivationTokens.h"
#include "platform/linux/activation/OpenWindows.h"

#include <memory>

/// Connects to KWin at each request and disconnects afterwards: KWin would report every change of a
/// window over a lasting connection.
class PlasmaOpenWindows final : public OpenWindows
{
public:
    /// The tokens, which know what KWin permits, must outlive it.
    explicit PlasmaOpenWindows(const ActivationTokens &tokens);
    ~PlasmaOpenWindows() override;

    bool isAvailable() const override { return m_tokens.isPermitted(); }
    void request(const WindowQuestions &questions) override;
    /// Waits for KWin, but at most 100 ms.
    bool bringToFront(const WindowQuestions &questions,
                      const std::function<bool(const OpenWindow &)> &isWanted) override;

private:
    struct Session;
    struct Window;

    const ActivationTokens &m_tokens;
    std::unique_ptr<Session> m_session;
};
