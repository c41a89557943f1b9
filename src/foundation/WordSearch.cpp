#include "foundation/WordSearch.h"

#include <algorithm>

WordSearch::WordSearch(const QString &words)
    : m_words(folded(words).split(u' ', Qt::SkipEmptyParts))
{
}

QString WordSearch::folded(const QString &text)
{
    QString letters;
    for (const QChar character : text.normalized(QString::NormalizationForm_KD)) {
        const QChar::Category category = character.category();
        if (category != QChar::Mark_NonSpacing && category != QChar::Other_Format)
            letters += character;
    }
    // In upper case, ß becomes SS and ı becomes I; case folding alone keeps both. The lower case of
    // ẞ is ß; its upper case is itself.
    return letters.toLower().toUpper().toCaseFolded().simplified();
}

bool WordSearch::finds(const QString &folded) const
{
    return std::ranges::all_of(m_words,
                               [&folded](const QString &word) { return folded.contains(word); });
}
