// User defaults in an INI file.
#pragma once

#include "platform/UserDefaults.h"

#include <QSettings>

class IniUserDefaults : public UserDefaults
{
public:
    explicit IniUserDefaults(const QString &path);

    std::optional<QByteArray> data(const QString &key) const override;
    void setData(const QString &key, const QByteArray &value) override;
    void remove(const QString &key) override;

private:
    QSettings m_settings;
};
