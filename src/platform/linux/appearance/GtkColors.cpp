#include "platform/linux/appearance/GtkColors.h"

#include <QColor>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <algorithm>
#include <cctype>

using namespace Qt::StringLiterals;

namespace
{
/// Far beyond any real theme. Style sheets that import each other, and colours that refer to each
/// other, end there.
constexpr int maxDepth = 8;
constexpr qint64 maxSize = 4'000'000;
constexpr int maxStatementLength = 300;

QByteArray withoutComments(QByteArrayView css)
{
    QByteArray text;
    for (;;) {
        const qsizetype begin = css.indexOf("/*");
        if (begin < 0)
            return text.append(css);
        text.append(css.first(begin));
        const qsizetype end = css.indexOf("*/", begin + 2);
        if (end < 0)
            return text;
        css = css.sliced(end + 2);
    }
}

/// Splits the text behind its first word: a name, a number or a colour.
std::pair<QByteArray, QByteArray> split(const QByteArray &text)
{
    const auto isOfWord = [](char letter) {
        return std::isalnum(uchar(letter)) || QByteArrayView("@#_-").contains(letter);
    };
    const QByteArray trimmed = text.trimmed();
    const auto length = std::ranges::find_if_not(trimmed, isOfWord) - trimmed.begin();
    return {trimmed.first(length), trimmed.sliced(length)};
}

/// The path of a quoted text, or of one in url(…).
QString importedPath(QByteArray text)
{
    if (text.startsWith("url(") && text.endsWith(')'))
        text = text.sliced(4).chopped(1).trimmed();
    if (text.size() > 1 && (text.front() == '"' || text.front() == '\''))
        text = text.sliced(1).chopped(1);
    return QString::fromUtf8(text);
}

/// Of the arguments of rgb(1, 2, 3) or rgba(1, 2, 3, 0.4).
std::optional<QRgb> colorOfNumbers(const QByteArray &arguments)
{
    const QByteArrayList numbers = arguments.split(',');
    if (numbers.size() < 3)
        return {};
    const auto number = [&numbers](int index) { return split(numbers[index]).first.toInt(); };
    return qRgb(number(0), number(1), number(2));
}

class ColorDefinitions
{
public:
    explicit ColorDefinitions(const QDir &theme)
        : m_theme(theme)
    {
    }

    /// Reads a style sheet of the theme and those that it imports.
    void read(const QString &path, int depth = 0);

    /// Takes a function of colours, such as shade(…), for its first colour.
    std::optional<QRgb> color(const QByteArray &value, int depth = 0) const;

private:
    QByteArray content(const QString &path);

    const QDir &m_theme;
    QHash<QByteArray, QByteArray> m_values;
    qint64 m_size = 0;
};

/// Empty outside of the theme, and beyond the limit.
QByteArray ColorDefinitions::content(const QString &path)
{
    QFile file(m_theme.filePath(path));
    const bool isOutside = QDir::isAbsolutePath(path) || path.startsWith(u"../");
    if (isOutside || !QFileInfo(file).isFile())
        return {};
    m_size += file.size();
    return m_size <= maxSize && file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void ColorDefinitions::read(const QString &path, int depth)
{
    if (depth > maxDepth)
        return;
    const QByteArray css = withoutComments(content(path));
    for (qsizetype begin = 0; (begin = css.indexOf('@', begin)) >= 0; ++begin) {
        QByteArray statement = css.mid(begin, maxStatementLength);
        statement.truncate(statement.indexOf(';'));
        const auto [keyword, rest] = split(statement);
        if (keyword == "@import")
            read(QDir::cleanPath(QFileInfo(path).path() + u'/' + importedPath(rest.trimmed())),
                 depth + 1);
        if (keyword == "@define-color") {
            const auto [name, value] = split(rest);
            m_values[name] = value;
        }
    }
}

std::optional<QRgb> ColorDefinitions::color(const QByteArray &value, int depth) const
{
    const auto [word, rest] = split(value);
    if (depth > maxDepth || word.isEmpty())
        return {};
    if (word.startsWith('@'))
        return color(m_values[word.sliced(1)], depth + 1);
    if (rest.startsWith('('))
        return word.startsWith("rgb") ? colorOfNumbers(rest.sliced(1))
                                      : color(rest.sliced(1), depth + 1);
    const QColor named(QString::fromLatin1(word));
    return named.isValid() ? std::optional(named.rgb()) : std::nullopt;
}
} // namespace

std::optional<QRgb> gtkWindowColor(const QDir &theme, const QString &styleSheet)
{
    ColorDefinitions colors(theme);
    colors.read(styleSheet);
    for (const char *const name : {"@theme_bg_color", "@bg_color", "@window_bg_color"}) {
        if (const auto color = colors.color(name))
            return color;
    }
    return {};
}
