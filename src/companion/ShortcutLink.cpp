#include "companion/ShortcutLink.h"

#include "foundation/Text.h"
#include "platform/linux/scripts/LinuxShortcutLibrary.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace
{
constexpr QByteArrayView beginning = "shortcuts://run-shortcut?name=";

/// Whether the text can be the value in a link's query, which ends with &. Letters beyond ASCII are
/// accepted, since programs and people write them unescaped.
bool isPercentEncoded(const QByteArray &text)
{
    static const QRegularExpression wrong(
        uR"(%(?![0-9A-Fa-f]{2})|[^%A-Za-z0-9\-._~!$'()*+,;=:@/?\x80-\xff])"_s);
    return !QString::fromLatin1(text).contains(wrong);
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
