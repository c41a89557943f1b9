#include "platform/linux/launch/ExecLine.h"

#include "foundation/Text.h"

#include <gio/gio.h>

using namespace Qt::StringLiterals;

namespace
{
/// The argument with its field codes replaced; nothing if it held nothing but codes for nothing.
std::optional<QString> expanded(const QString &argument, const ExecFields &fields)
{
    QString text;
    bool hadCode = false;
    for (qsizetype i = 0; i < argument.size(); ++i) {
        if (argument[i] != u'%' || i + 1 == argument.size()) {
            text += argument[i];
            continue;
        }
        hadCode = true;
        switch (argument[++i].unicode()) {
        case u'%':
            text += u'%';
            break;
        case u'c':
            text += fields.name;
            break;
        case u'k':
            text += fields.desktopFile;
            break;
        default:
            break;
        }
    }
    return hadCode && text.isEmpty() ? std::nullopt : std::optional(text);
}
} // namespace

Result<QStringList> parseExecLine(const QString &line, const ExecFields &fields)
{
    gchar **words = nullptr;
    GError *error = nullptr;
    if (!g_shell_parse_argv(line.toUtf8().constData(), nullptr, &words, &error)) {
        const Error failure{QString::fromUtf8(error->message)};
        g_error_free(error);
        return failure;
    }
    QStringList arguments;
    for (gchar **word = words; *word; ++word) {
        const QString argument = QString::fromUtf8(*word);
        if (argument == u"%i") {
            if (!fields.icon.isEmpty())
                arguments << u"--icon"_s << fields.icon;
        } else if (const auto text = expanded(argument, fields)) {
            arguments << *text;
        }
    }
    g_strfreev(words);
    if (arguments.isEmpty())
        return Error{u"The Exec line %1 names no program."_s.arg(quoted(line))};
    return arguments;
}
