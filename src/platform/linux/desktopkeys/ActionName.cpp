#include "platform/linux/desktopkeys/ActionName.h"

#include "foundation/Text.h"

using namespace Qt::StringLiterals;

std::optional<QString> actionName(const QString &text)
{
    // Several times what warnings show. Commands may have any length, and all names are kept.
    constexpr qsizetype maxLength = 200;
    const QString name = onOneLine(text).trimmed();
    return name.isEmpty() ? std::nullopt : std::optional(withoutMiddle(name, maxLength));
}

QString wordsOf(const QString &settingKey)
{
    QString words = settingKey;
    // XFCE's window manager ends the names of all its actions so.
    if (words.endsWith("_key"_L1))
        words.chop(4);
    words = words.replace(u'_', u' ').replace(u'-', u' ').simplified();
    if (!words.isEmpty())
        words[0] = words.at(0).toUpper();
    return words;
}
