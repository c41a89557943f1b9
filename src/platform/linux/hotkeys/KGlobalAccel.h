// Plasma's service for global shortcuts, as far as one program's own actions go.
#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

/// An action has a name, a title for the user, and keys: codes in Qt's form. The service serves
/// the calls in their order.
class KGlobalAccel : public QObject
{
    Q_OBJECT

public:
    /// Reports the owner of the service, and presses, from now on. To be called once.
    virtual void start() = 0;

    /// The names of the program's actions; nothing if the service is not there.
    using NamesHandler = std::function<void(const std::optional<QStringList> &)>;
    virtual void readActions(NamesHandler handler) = 0;

    /// Registers the action, or takes it over. The handler receives those of the codes that are the
    /// action's now; nothing if the call failed.
    using CodesHandler = std::function<void(const std::optional<QList<int>> &)>;
    virtual void set(const QString &name, const QString &title, const QList<int> &codes,
                     CodesHandler handler) = 0;

    virtual void setTitle(const QString &name, const QString &title) = 0;

    virtual void unregister(const QString &name, std::function<void()> handler) = 0;

    /// Waits for the service, but not for long.
    virtual void unregisterNow(const QStringList &names) = 0;

Q_SIGNALS:
    /// Emitted when the service has gone, and when there is a new one. Answers to former calls may
    /// still arrive, or not at all.
    void gone();
    void appeared();

    /// Emitted once at a press, and again with each repeat.
    void pressed(const QString &name);
    void released(const QString &name);

    /// Emitted when the user has given the action other keys.
    void codesChanged(const QString &name, const QList<int> &codes);
};
