#include "platform/linux/services/IniUserDefaults.h"

#include "foundation/Files.h"
#include "foundation/Text.h"

#include <QScopeGuard>
#include <QSettings>
#include <QTemporaryDir>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{
/// A hundred thousand combinations need less.
constexpr qint64 maxSettingsBytes = 16LL * 1024 * 1024;

/// The spelling of QSettings.
const QString trueWord = u"true"_s;
const QString falseWord = u"false"_s;

/// Whether a quoted value does not end on its line. QSettings does not report that; it takes the
/// following lines as part of the value.
bool hasOpenQuotation(const QByteArray &text)
{
    bool isQuoted = false;
    for (qsizetype place = 0; place < text.size(); ++place) {
        const char character = text[place];
        const bool startsLine = place == 0 || text[place - 1] == '\n';
        if (character == '\n' && isQuoted)
            return true;
        if (character == ';' && startsLine) {
            // Skip a comment up to the end of its line.
            place = text.indexOf('\n', place);
            if (place < 0)
                break;
        } else if (character == '\\') {
            ++place;
        } else if (character == '"') {
            isQuoted = !isQuoted;
        }
    }
    return isQuoted;
}

struct Content {
    QVariantMap values;
    /// Whether every line could be read.
    bool isWhole;
};

// Opens by path: by organisation and name, QSettings would also read fall-back files.
Content contentOf(const QString &path)
{
    const QSettings settings(path, QSettings::IniFormat);
    Content content;
    for (const QString &key : settings.allKeys()) {
        // QSettings reads lines without a key, but does not write them.
        if (!key.isEmpty())
            content.values.insert(key, settings.value(key));
    }
    // QSettings has parsed all sections only now.
    content.isWhole = settings.status() == QSettings::NoError;
    return content;
}
} // namespace

IniUserDefaults::IniUserDefaults(const QString &path)
    : m_file(path, maxSettingsBytes)
    , m_error(read())
{
    if (m_error)
        m_file.keepBeforeWriting();
}

std::optional<Error> IniUserDefaults::read()
{
    const auto text = m_file.read();
    if (!text)
        return text.error();
    if (!*text)
        return std::nullopt;
    const Content content = contentOf(m_file.path());
    m_values = content.values;
    if (content.isWhole && !hasOpenQuotation(**text))
        return std::nullopt;
    return Error{u"The file %1 is damaged."_s.arg(quoted(m_file.path()))};
}

std::optional<QByteArray> IniUserDefaults::data(const QString &key) const
{
    const QVariant value = m_values.value(key);
    if (value.typeId() != QMetaType::QByteArray)
        return std::nullopt;
    return value.toByteArray();
}

std::optional<bool> IniUserDefaults::boolean(const QString &key) const
{
    const QVariant value = m_values.value(key);
    if (value == trueWord)
        return true;
    return value == falseWord ? std::optional(false) : std::nullopt;
}

void IniUserDefaults::setData(const QString &key, const QByteArray &value)
{
    set(key, value);
}

void IniUserDefaults::setBoolean(const QString &key, bool value)
{
    set(key, value ? trueWord : falseWord);
}

void IniUserDefaults::remove(const QString &key)
{
    if (m_values.remove(key) > 0)
        m_isUnsaved = true;
    save();
}

Registration IniUserDefaults::writeTogether()
{
    ++m_delays;
    return Registration([this] {
        --m_delays;
        save();
    });
}

void IniUserDefaults::set(const QString &key, const QVariant &value)
{
    m_values.insert(key, value);
    m_isUnsaved = true;
    save();
}

void IniUserDefaults::save()
{
    if (m_delays > 0)
        return;
    m_error = m_isUnsaved ? write() : std::nullopt;
    m_isUnsaved = m_error.has_value();
    Q_EMIT changed();
}

std::optional<Error> IniUserDefaults::write()
{
    if (auto error = m_file.makeFolder())
        return error;
    const auto text = this->text();
    return text ? m_file.write(*text) : text.error();
}

/// Returns the new content of the file. QSettings can only write to a file, so it writes one in a
/// temporary folder that only the user can enter.
Result<QByteArray> IniUserDefaults::text() const
{
    if (m_values.isEmpty())
        return QByteArray();
    // Make what QSettings creates accessible to the user only. The umask applies to all threads, so
    // files that other threads create meanwhile are affected in the same way.
    const auto end = qScopeGuard([usual = umask(S_IRWXG | S_IRWXO)] { umask(usual); });
    const QTemporaryDir folder(m_file.path() + u".XXXXXX"_s);
    if (!folder.isValid())
        return Error{folder.errorString()};
    const QString written = folder.filePath(u"written"_s);
    QSettings settings(written, QSettings::IniFormat);
    for (auto value = m_values.cbegin(); value != m_values.cend(); ++value)
        settings.setValue(value.key(), value.value());
    settings.sync();
    const Error notWhole{u"The file could not be written whole. The disk may be full."_s};
    if (settings.status() != QSettings::NoError)
        return notWhole;
    auto text = readWhole(written, maxSettingsBytes);
    if (!text)
        return text;
    // QSettings does not notice a full disk, so parse the file again. It is renamed first, because
    // QSettings caches files by name.
    const QString checked = folder.filePath(u"checked"_s);
    const bool isWhole = text->endsWith('\n') && QFile::rename(written, checked)
        && QSettings(checked, QSettings::IniFormat).allKeys() == settings.allKeys();
    return isWhole ? text : notWhole;
}
