#include "platform/linux/hotkeys/HotkeyClaims.h"

#include <algorithm>

void HotkeyClaims::add(HotkeyId id, const HotkeyPurpose &purpose, quint64 token)
{
    const auto former = std::ranges::find_if(
        m_claims, [id](const Claim &claim) { return claim.id == id && !claim.token; });
    if (former != m_claims.end())
        *former = {id, purpose, token};
    else
        m_claims.append({id, purpose, token});
}

void HotkeyClaims::end(quint64 token)
{
    std::ranges::find(m_claims, token, &Claim::token)->token.reset();
}

void HotkeyClaims::dropEnded()
{
    m_claims.removeIf([](const Claim &claim) { return !claim.token; });
}

bool HotkeyClaims::isLasting() const
{
    return std::ranges::any_of(m_claims,
                               [](const Claim &claim) { return claim.token.has_value(); });
}
