// Who has registered one key combination: the earliest is live, and the others wait.
#pragma once

#include "platform/HotkeyService.h"

#include <QList>
#include <optional>

/// One that ends and is made again for the same id, before dropEnded(), keeps its place.
class HotkeyClaims
{
public:
    /// The token identifies the claim when it ends.
    void add(HotkeyId id, const HotkeyPurpose &purpose, quint64 token);
    void end(quint64 token);
    void dropEnded();

    bool isEmpty() const { return m_claims.isEmpty(); }

    /// Whether any claim has not ended.
    bool isLasting() const;

    /// Those of the first. There must be one.
    HotkeyId live() const { return m_claims.constFirst().id; }
    const HotkeyPurpose &purpose() const { return m_claims.constFirst().purpose; }

private:
    struct Claim {
        HotkeyId id;
        HotkeyPurpose purpose;
        /// Nothing once the claim has ended.
        std::optional<quint64> token;
    };

    QList<Claim> m_claims;
};
