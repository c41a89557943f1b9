#include "foundation/Text.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
/// About five lines of an alert, enough to recognise any name or text.
constexpr qsizetype maxLengthInMessage = 300;

bool movesOn(QChar character)
{
    return character.category() == QChar::Other_Control
        || character.category() == QChar::Separator_Line
        || character.category() == QChar::Separator_Paragraph;
}
} // namespace

QString quoted(const QString &text)
{
    return QChar(u'“') + text + QChar(u'”');
}

QString shortened(const QString &text)
{
    if (text.size() <= maxLengthInMessage)
        return text;
    QString beginning = text.first(maxLengthInMessage - 1);
    if (beginning.back().isHighSurrogate())
        beginning.chop(1);
    return beginning + u'…';
}

QString withoutMiddle(const QString &text, qsizetype maxLength)
{
    if (text.size() <= maxLength)
        return text;
    QString beginning = text.first(maxLength / 2);
    if (beginning.back().isHighSurrogate())
        beginning.chop(1);
    QString end = text.last(maxLength - maxLength / 2 - 1);
    if (end.front().isLowSurrogate())
        end.remove(0, 1);
    return beginning + u'…' + end;
}

QString withoutDirections(QString text)
{
    return text.removeIf([](QChar character) {
        return (character >= QChar(0x202A) && character <= QChar(0x202E))
            || (character >= QChar(0x2066) && character <= QChar(0x2069));
    });
}

QString onOneLine(const QString &text)
{
    QString line = text;
    line.replace(u"\r\n"_s, u" "_s);
    std::ranges::replace_if(line, movesOn, QChar(u' '));
    return line;
}
