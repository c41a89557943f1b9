#include "platform/linux/IniUserDefaults.h"

#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QTemporaryFile>
#include <fcntl.h>

using namespace Qt::StringLiterals;

namespace
{
/// No character takes more than that in the file, and no line more in addition.
constexpr qint64 bytesPerCharacter = 6;
constexpr qint64 bytesPerLine = 64;
} // namespace

// By path: by organisation and name QSettings would also read fall-back files, whose values
// cannot be removed.
IniUserDefaults::IniUserDefaults(const QString &path)
    : m_settings(path, QSettings::IniFormat)
{
}

bool IniUserDefaults::Settings::event(QEvent *event)
{
    return event->type() == QEvent::UpdateRequest || QSettings::event(event);
}

std::optional<QByteArray> IniUserDefaults::data(const QString &key) const
{
    const QVariant value = m_settings.value(key);
    if (value.typeId() != QMetaType::QByteArray)
        return std::nullopt;
    return value.toByteArray();
}

std::optional<bool> IniUserDefaults::boolean(const QString &key) const
{
    const QVariant value = m_settings.value(key);
    // It is a Boolean until it is read from the file, where it is a word.
    const bool isBoolean = value.typeId() == QMetaType::Bool;
    const bool isWord = value.typeId() == QMetaType::QString
        && (value.toString() == u"true" || value.toString() == u"false");
    return isBoolean || isWord ? std::optional(value.toBool()) : std::nullopt;
}

void IniUserDefaults::setData(const QString &key, const QByteArray &value)
{
    set(key, value);
}

void IniUserDefaults::setBoolean(const QString &key, bool value)
{
    set(key, value);
}

void IniUserDefaults::remove(const QString &key)
{
    m_settings.remove(key);
    changed();
}

Registration IniUserDefaults::writeTogether()
{
    ++m_delays;
    return Registration([this] {
        --m_delays;
        changed();
    });
}

void IniUserDefaults::set(const QString &key, const QVariant &value)
{
    m_settings.setValue(key, value);
    m_growth += bytesPerCharacter * (key.size() + value.toByteArray().size()) + bytesPerLine;
    changed();
}

void IniUserDefaults::changed()
{
    ++m_revision;
    if (m_delays > 0)
        return;
    write();
    m_observers.tell();
}

void IniUserDefaults::write()
{
    if (hasSpace()) {
        m_settings.sync();
        if (m_settings.status() != QSettings::AccessError) {
            m_growth = 0;
            return;
        }
    }
    if (!std::exchange(m_hasComplained, true))
        qWarning("corvane: the settings cannot be written to %s",
                 qUtf8Printable(m_settings.fileName()));
}

/// QSettings takes no notice of a full disk, and would put the first half of the file in its place.
bool IniUserDefaults::hasSpace() const
{
    const QFileInfo file(m_settings.fileName());
    QTemporaryFile trial(file.filePath());
    return QDir().mkpath(file.path()) && trial.open()
        && posix_fallocate(trial.handle(), 0, file.size() + m_growth + 1) == 0;
}
