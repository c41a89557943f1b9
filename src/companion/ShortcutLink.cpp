#include "companion/ShortcutLink.h"

#include "foundation/Text.h"
#include "platform/linux/scripts/LinuxShortcutLibrary.h"

#include <string_view>

using namespace Qt::StringLiterals;

namespace
{
constexpr QByteArrayView beginning = "shortcuts://run-shortcut?name=";

bool isHexDigit(char character)
{
    return std::string_view("0123456789abcdefABCDEF").find(character) != std::string_view::npos;
}

/// Whether a link's query value may contain the character unescaped, except &, which starts the
/// next value. Letters beyond ASCII are accepted, since programs and people write them unescaped.
bool mayStandAsItIs(char character)
{
    return uchar(character) >= 0x80 || (character >= 'a' && character <= 'z')
        || (character >= 'A' && character <= 'Z') || (character >= '0' && character <= '9')
        || std::string_view("-._~!$'()*+,;=:@/?").find(character) != std::string_view::npos;
}

bool isPercentEncoded(QByteArrayView text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != '%') {
            if (!mayStandAsItIs(text[i]))
                return false;
            continue;
        }
        if (i + 2 >= text.size() || !isHexDigit(text[i + 1]) || !isHexDigit(text[i + 2]))
            return false;
        i += 2;
    }
    return true;
}

/// The text as shown in messages. Text from a web page must not change the direction of the words
/// around it.
QString shown(const QString &text)
{
    return quoted(shortened(withoutDirections(onOneLine(text))));
}

Error notALink(const QByteArray &link)
{
    return Error{u"%1 is not a link that runs a Shortcut."_s.arg(shown(QString::fromUtf8(link)))};
}
} // namespace

Result<QString> shortcutName(const QByteArray &link)
{
    if (!link.startsWith(beginning))
        return notALink(link);
    const QByteArray encoded = link.sliced(beginning.size());
    if (!isPercentEncoded(encoded))
        return notALink(link);
    const QByteArray bytes = QByteArray::fromPercentEncoding(encoded);
    const QString name = QString::fromUtf8(bytes);
    // Invalid UTF-8 does not survive the decoding.
    if (name.toUtf8() != bytes)
        return notALink(link);
    if (name.isEmpty())
        return Error{u"The link names no Shortcut."_s};
    if (!LinuxShortcutLibrary::canBeName(name))
        return Error{u"%1 cannot be the name of a Shortcut."_s.arg(shown(name))};
    return name;
}
