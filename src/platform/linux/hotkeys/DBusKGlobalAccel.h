// Plasma's service for global shortcuts, on the session bus.
#pragma once

#include "platform/linux/base/DBusCall.h"
#include "platform/linux/hotkeys/KGlobalAccel.h"

#include <QDBusMessage>
#include <QTimer>
#include <QVariantList>

/// The component is the application's id. No service is started for it.
class DBusKGlobalAccel final : public KGlobalAccel
{
    Q_OBJECT

public:
    void start() override;
    void readActions(NamesHandler handler) override;
    void set(const QString &name, const QString &title, const QList<int> &codes,
             CodesHandler handler) override;
    void setTitle(const QString &name, const QString &title) override;
    void unregister(const QString &name, std::function<void()> handler) override;
    void unregisterNow(const QStringList &names) override;

private Q_SLOTS:
    void takePress(const QString &component, const QString &action);
    void takeRelease(const QString &component, const QString &action);
    void takeChange(const QDBusMessage &signal);

private:
    void call(
        const QString &method, const QVariantList &arguments,
        const DBusAnswerHandler &handler = [](const QDBusMessage &) {});

    QTimer m_settling;
};
