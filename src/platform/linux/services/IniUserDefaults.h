// Stores the user defaults in an INI file.
#pragma once

#include "foundation/PrivateFile.h"
#include "platform/UserDefaults.h"

#include <QVariant>

/// Reads the file once and keeps all values in memory, including unknown ones. Each write replaces
/// the whole file.
class IniUserDefaults : public UserDefaults
{
public:
    explicit IniUserDefaults(const QString &path);

    std::optional<QByteArray> data(const QString &key) const override;
    std::optional<bool> boolean(const QString &key) const override;
    void setData(const QString &key, const QByteArray &value) override;
    void setBoolean(const QString &key, bool value) override;
    void remove(const QString &key) override;
    Registration writeTogether() override;
    const std::optional<Error> &error() const override { return m_error; }

private:
    std::optional<Error> read();
    void set(const QString &key, const QVariant &value);
    void save();
    std::optional<Error> write();
    Result<QByteArray> text() const;

    PrivateFile m_file;
    QVariantMap m_values;
    std::optional<Error> m_error;
    bool m_isUnsaved = false;
    int m_delays = 0;
};
