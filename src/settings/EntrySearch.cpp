#include "settings/EntrySearch.h"

#include "foundation/WordSearch.h"
#include "store/ShortcutStore.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace
{
/// The design's number: shorter lists are looked over at a glance.
constexpr qsizetype minSearchableEntries = 12;
} // namespace

void EntrySearch::update()
{
    const qsizetype count = m_store.entries().size();
    // An empty list hides nothing.
    if (std::exchange(m_count, count) < count || count == 0)
        m_text.clear();
    m_found = m_store.entries();
    if (const WordSearch words(m_text); !words.isBlank())
        m_found.removeIf(
            [&](const LaunchEntry &entry) { return !words.finds(foldedTexts(entry)); });
}

bool EntrySearch::isOffered() const
{
    return m_store.entries().size() >= minSearchableEntries || !m_text.isEmpty();
}

QString EntrySearch::result() const
{
    if (m_text.isEmpty())
        return {};
    return u"%1 of %2 shortcuts"_s.arg(m_found.size()).arg(m_store.entries().size());
}

/// All that can be found of the entry. A target is found as it is stored and as it is shown.
QString EntrySearch::foldedTexts(const LaunchEntry &entry) const
{
    const QStringList texts{entry.name, entry.target, entry.targetDescription(),
                            m_store.shortcutText(entry), m_store.spokenKeys(entry.shortcutName())};
    return WordSearch::folded(texts.join(u'\n'));
}
