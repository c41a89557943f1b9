// The user's settings: small values under string keys, kept across runs.
#pragma once

#include "foundation/Result.h"
#include "platform/Registration.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <optional>

/// A change is on disk when the call returns. A value that cannot be written is kept until the
/// program exits.
class UserDefaults : public QObject
{
    Q_OBJECT

public:
    /// The stored value; nothing if the key is absent or holds a value of another type.
    virtual std::optional<QByteArray> data(const QString &key) const = 0;
    virtual std::optional<bool> boolean(const QString &key) const = 0;

    virtual void setData(const QString &key, const QByteArray &value) = 0;
    virtual void setBoolean(const QString &key, bool value) = 0;
    virtual void remove(const QString &key) = 0;

    /// While the returned value lives, changes can be read but are not written. When it ends, all
    /// are written at once.
    virtual Registration writeTogether() = 0;

    /// Why the last change could not be written; nothing if it is on disk. Before the first change:
    /// why some or all values could not be read.
    virtual const std::optional<Error> &error() const = 0;

Q_SIGNALS:
    /// Emitted after each change.
    void changed();
};
