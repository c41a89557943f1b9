// The search for entries of the list: what the user types, and what has it.
#pragma once

#include "model/LaunchEntry.h"

#include <QList>
#include <QString>

class ShortcutStore;

class EntrySearch
{
public:
    /// The store must outlive the search.
    explicit EntrySearch(const ShortcutStore &store)
        : m_store(store)
    {
    }

    const QString &text() const { return m_text; }
    void setText(const QString &text) { m_text = text; }

    /// Searches the store's current entries. If some have been added, the search is emptied: they
    /// must be seen, whatever they are called.
    void update();

    /// The entries that have every word of the text in their name, target or keys, in list order,
    /// when update() was last called.
    const QList<LaunchEntry> &found() const { return m_found; }

    /// A short list needs no search. One that has become short stays searched, and says so.
    bool isOffered() const;

    /// How many entries are found, in words; empty while nothing is searched for.
    QString result() const;

private:
    QString foldedTexts(const LaunchEntry &entry) const;

    const ShortcutStore &m_store;
    QString m_text;
    QList<LaunchEntry> m_found;
    /// The number of entries at the last update.
    qsizetype m_count = 0;
};
