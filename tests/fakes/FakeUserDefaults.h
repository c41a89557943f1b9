// User defaults in memory.
#pragma once

#include "platform/UserDefaults.h"

#include <QHash>

class FakeUserDefaults : public UserDefaults
{
public:
    std::optional<QByteArray> data(const QString &key) const override
    {
        const auto found = values.constFind(key);
        return found == values.cend() ? std::nullopt : std::optional(*found);
    }
    void setData(const QString &key, const QByteArray &value) override
    {
        values.insert(key, value);
    }
    void remove(const QString &key) override { values.remove(key); }

    QHash<QString, QByteArray> values;
};
