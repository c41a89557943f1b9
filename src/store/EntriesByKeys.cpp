#include "store/EntriesByKeys.h"

#include "platform/UserDefaults.h"

using namespace KeyboardShortcuts;

EntriesByKeys::EntriesByKeys(const QList<LaunchEntry> &entries, const UserDefaults &defaults)
    : m_entries(entries)
    , m_defaults(defaults)
{
}

QList<LaunchEntry> EntriesByKeys::enabledEntries(const Shortcut &shortcut)
{
    if (!isCurrent())
        rebuild();
    return m_enabled.value(shortcut);
}

bool EntriesByKeys::isCurrent() const
{
    // A change of a shared list gives it memory of its own.
    return m_entries.isSharedWith(m_indexed) && m_revision == m_defaults.revision();
}

void EntriesByKeys::rebuild()
{
    m_indexed = m_entries;
    m_revision = m_defaults.revision();
    m_enabled.clear();
    for (const LaunchEntry &entry : m_entries) {
        if (!entry.isEnabled)
            continue;
        if (const auto shortcut = getShortcut(entry.shortcutName(), m_defaults))
            m_enabled[*shortcut].append(entry);
    }
}
