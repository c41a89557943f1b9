// User defaults in an INI file.
#pragma once

#include "platform/Observers.h"
#include "platform/UserDefaults.h"

#include <QSettings>

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
    Registration addObserver(std::function<void()> observer) override
    {
        return m_observers.add(std::move(observer));
    }
    quint64 revision() const override { return m_revision; }

private:
    /// Writes when it is told to, and not by itself as well.
    class Settings : public QSettings
    {
    public:
        using QSettings::QSettings;

    protected:
        bool event(QEvent *event) override;
    };

    void set(const QString &key, const QVariant &value);
    void changed();
    void write();
    bool hasSpace() const;

    Settings m_settings;
    /// The most by which the file may have grown since it was written.
    qint64 m_growth = 0;
    Observers m_observers;
    int m_delays = 0;
    quint64 m_revision = 0;
    bool m_hasComplained = false;
};
