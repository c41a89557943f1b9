// An object on the session bus with one interface and read-only properties.
#pragma once

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QVariantMap>

class DBusObject : public QDBusVirtualObject
{
    Q_OBJECT

public:
    /// Registers the object on the bus until it is destroyed.
    void publish();

    QString introspect(const QString &path) const override;
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override;

protected:
    /// The introspection text is the <interface> element.
    DBusObject(QString path, QString interface, QString introspection);

    void emitSignal(const QString &name, const QVariantList &arguments = {}) const;
    static QDBusMessage unknownMethod(const QDBusMessage &call);

    virtual QVariantMap properties() const = 0;
    /// Answers a call to a method of the interface.
    virtual QDBusMessage answer(const QDBusMessage &call) = 0;

private:
    QDBusMessage answerForProperties(const QDBusMessage &call) const;

    QString m_path;
    QString m_interface;
    QString m_introspection;
};
