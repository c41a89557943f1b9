// User defaults in memory, and how often they were read and would have been written to disk.
#pragma once

#include "fakes/CallLog.h"
#include "platform/UserDefaults.h"

#include <QHash>
#include <QVariant>

class FakeUserDefaults : public UserDefaults
{
public:
    explicit FakeUserDefaults(CallLog log = CallLog())
        : m_log(log)
    {
    }

    std::optional<QByteArray> data(const QString &key) const override
    {
        return value<QByteArray>(key);
    }
    std::optional<bool> boolean(const QString &key) const override { return value<bool>(key); }
    void setData(const QString &key, const QByteArray &value) override
    {
        values.insert(key, value);
        write();
    }
    void setBoolean(const QString &key, bool value) override
    {
        m_log.note(QStringLiteral("store ") + key);
        values.insert(key, value);
        write();
    }
    void remove(const QString &key) override
    {
        m_log.note(QStringLiteral("remove ") + key);
        values.remove(key);
        write();
    }
    Registration writeTogether() override
    {
        ++m_delays;
        return Registration([this] {
            --m_delays;
            write();
        });
    }
    const std::optional<Error> &error() const override { return failure; }

    QHash<QString, QVariant> values;
    std::optional<Error> failure;
    mutable int reads = 0;
    int writes = 0;

private:
    template <typename Type>
    std::optional<Type> value(const QString &key) const
    {
        ++reads;
        const QVariant found = values.value(key);
        return found.typeId() == qMetaTypeId<Type>() ? std::optional(found.value<Type>())
                                                     : std::nullopt;
    }
    void write()
    {
        if (m_delays > 0)
            return;
        ++writes;
        Q_EMIT changed();
    }

    CallLog m_log;
    int m_delays = 0;
};
