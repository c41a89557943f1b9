// The user's settings: small values under text keys that outlive the program.
#pragma once

#include "foundation/Result.h"
#include "platform/Registration.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <optional>

/// A change is on disk when the call returns. A value that cannot be written is kept until
/// the program ends.
class UserDefaults : public QObject
{
    Q_OBJECT

public:
    /// Nothing when the key is absent or holds a value of another type.
    virtual std::optional<QByteArray> data(const QString &key) const = 0;
    virtual std::optional<bool> boolean(const QString &key) const = 0;

    virtual void setData(const QString &key, const QByteArray &value) = 0;
    virtual void setBoolean(const QString &key, bool value) = 0;
    virtual void remove(const QString &key) = 0;

    /// Until the returned value ends, changes can be read but are not on disk yet; then all are
    /// written at once.
    virtual Registration writeTogether() = 0;

    /// Why the last change is not on disk; nothing if it is. Before the first change: why the
    /// values could not be read, or not all of them.
    virtual const std::optional<Error> &error() const = 0;

Q_SIGNALS:
    /// After each change.
    void changed();
};
