// Finds short texts by the words that a user types.
#pragma once

#include <QString>
#include <QStringList>

class WordSearch
{
public:
    explicit WordSearch(const QString &words);

    /// The text without what a search ignores: case, accents, invisible marks and
    /// superfluous spaces.
    static QString folded(const QString &text);

    /// Whether nothing is searched for, so that every text is found.
    bool isBlank() const { return m_words.isEmpty(); }

    /// Whether each of the words occurs in the folded text.
    bool finds(const QString &folded) const;

private:
    QStringList m_words;
};
