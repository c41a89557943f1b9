#include "platform/linux/IniUserDefaults.h"

// By path: by organisation and name QSettings would also read fall-back files, whose values
// cannot be removed.
IniUserDefaults::IniUserDefaults(const QString &path)
    : m_settings(path, QSettings::IniFormat)
{
}

std::optional<QByteArray> IniUserDefaults::data(const QString &key) const
{
    const QVariant value = m_settings.value(key);
    if (value.typeId() != QMetaType::QByteArray)
        return std::nullopt;
    return value.toByteArray();
}

void IniUserDefaults::setData(const QString &key, const QByteArray &value)
{
    m_settings.setValue(key, value);
    m_settings.sync();
}

void IniUserDefaults::remove(const QString &key)
{
    m_settings.remove(key);
    m_settings.sync();
}
