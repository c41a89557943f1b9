// A part of a program's windows, as screen readers and automation tools see and use it from
// outside (AT-SPI).
#pragma once

#include <QDBusConnection>
#include <QDBusPendingCall>
#include <QList>
#include <QObject>
#include <QRect>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <sys/types.h>

class Keyboard;
class QDBusArgument;
class QDBusMessage;

/// A handle. The part may not be there, or go at any time: then all answers are empty. A program
/// that does not answer for some seconds is taken for gone. What cannot be done or found is told in
/// a warning.
class Accessible
{
    Q_GADGET

public:
    /// With the numbers of AT-SPI.
    enum class State {
        active = 1,
        checked = 4,
        editable = 7,
        enabled = 8,
        focusable = 11,
        focused = 12,
        selected = 23,
        showing = 25,
        visible = 30,
        isDefault = 39,
        readOnly = 43,
    };
    Q_ENUM(State)

    /// Of nothing.
    Accessible() = default;

    /// Awaits that a process, which must have been started as accessible, joins the accessibility
    /// bus.
    static Accessible program(pid_t process);

    /// Of the accessibility bus, for programs that would not find it.
    static QString busAddress();

    /// The bus that accessible programs are on. The first to ask for it starts it.
    static QDBusConnection bus();

    /// What a signal on that bus is about.
    static Accessible source(const QDBusMessage &signal);

    bool isThere() const;

    /// "push button", "text", "check box", "dialog" and so on.
    QString role() const;

    /// Of a combo box, its current item; of a window, its title.
    QString name() const;
    QString description() const;

    /// Of a text field.
    QString text() const;

    /// The names of those that label it.
    QStringList labels() const;

    bool is(State state) const;
    QStringList actions() const;

    /// On the screen; also of what is scrolled out of sight.
    QRect geometry() const;

    QList<Accessible> children() const;

    /// All below it, the nearest first.
    QList<Accessible> descendants() const;

    /// All of that role below it, also those that do not show: the nearest first, and those of one
    /// parent in their order.
    QList<Accessible> findAll(const QString &role) const;
    QList<Accessible> findAll(const QString &role, const QString &name) const;

    /// The first that shows; if none does, the first.
    Accessible find(const QString &role, const QString &name) const;

    /// The one below it that has the keys; nothing if none has.
    Accessible focused() const;

    /// Awaits that there is one that shows, for no more than so many ms.
    Accessible await(const QString &role, const QString &name, int timeout = 5000) const;

    /// Does one of the actions, if it shows and is enabled; whether that was so. What comes of it
    /// may come later. A window-modal dialog does not keep anybody from acting on the parts behind.
    [[nodiscard]] bool act(const QString &action) const;
    [[nodiscard]] bool press() const { return act(QStringLiteral("Press")); }
    [[nodiscard]] bool toggle() const { return act(QStringLiteral("Toggle")); }

    /// Makes it the one in its window that has the keys; does not bring the window to the front.
    [[nodiscard]] bool focus() const { return act(QStringLiteral("SetFocus")); }

    /// Replaces the text of a text field, if a user could.
    [[nodiscard]] bool setText(const QString &text) const;

    /// Opens the list of a combo box and chooses an item by its text. The window must be active.
    [[nodiscard]] bool choose(const QString &item, Keyboard &keyboard) const;

    /// It and all below it, a line for each: role, name, states and actions.
    QString tree() const;

    bool operator==(const Accessible &other) const = default;

private:
    Accessible(QString service, QString path);

    QDBusPendingCall ask(const QString &interface, const QString &method,
                         const QVariantList &arguments = {}) const;
    QDBusPendingCall askProperty(const QString &property) const;
    QDBusPendingCall askStates() const;
    quint64 states() const;
    bool canBeUsed() const;
    QString line() const;

    /// From a list on the bus.
    static QList<Accessible> all(const QVariant &list);
    static QList<Accessible> all(const QDBusArgument &list);

    QString m_service;
    QString m_path;
};
