#include "platform/linux/launch/ExecLine.h"

#include "foundation/Text.h"
#include "platform/linux/launch/GLib.h"

using namespace Qt::StringLiterals;

namespace
{
/// The target as an address, for programs that accept addresses.
QString address(const QUrl &target)
{
    return target.toString(QUrl::FullyEncoded);
}

/// The expansion of a field code, and whether it stands for the target.
struct Field {
    QString text;
    bool isForTarget = false;
};

Field field(QChar code, const ExecFields &fields)
{
    switch (code.unicode()) {
    case u'%':
        return {u"%"_s};
    case u'c':
        return {fields.name};
    case u'k':
        return {fields.desktopFile};
    case u'f':
    case u'F':
        return {fields.target.toLocalFile(), true};
    case u'u':
    case u'U':
        return {address(fields.target), true};
    default:
        return {};
    }
}

class Expansion
{
public:
    explicit Expansion(const ExecFields &fields)
        : m_fields(fields)
    {
    }

    void add(const QString &argument)
    {
        if (argument == u"%i") {
            if (!m_fields.icon.isEmpty())
                m_arguments << u"--icon"_s << m_fields.icon;
        } else if (const auto text = expanded(argument)) {
            m_arguments << *text;
        }
    }

    QStringList arguments() const
    {
        if (m_hasTarget || m_arguments.isEmpty() || m_fields.target.isEmpty())
            return m_arguments;
        const QUrl &target = m_fields.target;
        return m_arguments
            + QStringList(target.isLocalFile() ? target.toLocalFile() : address(target));
    }

private:
    /// The argument with its codes expanded; nothing if it held only codes that expand to nothing.
    std::optional<QString> expanded(const QString &argument)
    {
        QString text;
        bool hadCode = false;
        for (qsizetype i = 0; i < argument.size(); ++i) {
            if (argument[i] != u'%' || i + 1 == argument.size()) {
                text += argument[i];
                continue;
            }
            const Field found = field(argument[++i], m_fields);
            text += found.text;
            m_hasTarget |= found.isForTarget;
            hadCode = true;
        }
        return hadCode && text.isEmpty() ? std::nullopt : std::optional(text);
    }

    const ExecFields &m_fields;
    QStringList m_arguments;
    bool m_hasTarget = false;
};
} // namespace

Result<QStringList> parseExecLine(const QString &line, const ExecFields &fields)
{
    gchar **words = nullptr;
    GError *error = nullptr;
    if (!g_shell_parse_argv(line.toUtf8().constData(), nullptr, &words, &error))
        return takeError(error);
    Expansion expansion(fields);
    for (gchar **word = words; *word; ++word)
        expansion.add(QString::fromUtf8(*word));
    g_strfreev(words);
    const QStringList arguments = expansion.arguments();
    if (arguments.isEmpty())
        return Error{u"The Exec line %1 names no program."_s.arg(quoted(line))};
    return arguments;
}
