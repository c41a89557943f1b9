// The user's settings: small values under text keys that outlive the program.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

/// A change is on disk when the call returns.
class UserDefaults
{
public:
    virtual ~UserDefaults() = default;

    /// Nothing when the key is absent or holds a value of another type.
    virtual std::optional<QByteArray> data(const QString &key) const = 0;
    virtual void setData(const QString &key, const QByteArray &value) = 0;
    virtual void remove(const QString &key) = 0;
};
