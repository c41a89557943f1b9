#include "foundation/Text.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
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

QString onOneLine(const QString &text)
{
    QString line = text;
    line.replace(u"\r\n"_s, u" "_s);
    std::ranges::replace_if(line, movesOn, QChar(u' '));
    return line;
}
