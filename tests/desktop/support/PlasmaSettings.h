// Changes Plasma's settings as its own settings program and its panel do.
#pragma once

#include "support/WriteFile.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QTest>

/// Names of keyboard layouts, separated by commas.
inline void setLayouts(const QByteArray &names)
{
    writeFile(qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/kxkbrc"),
              "[Layout]\nUse=true\nLayoutList=" + names + '\n');
    QDBusConnection::sessionBus().send(
        QDBusMessage::createSignal(QStringLiteral("/Layouts"), QStringLiteral("org.kde.keyboard"),
                                   QStringLiteral("reloadConfig")));
}

/// To one of several layouts, counted from 0.
inline void switchToLayout(uint layout)
{
    auto *const bus = QDBusConnection::sessionBus().interface();
    QTRY_VERIFY(bus->isServiceRegistered(QStringLiteral("org.kde.keyboard")));
    auto call = QDBusMessage::createMethodCall(
        QStringLiteral("org.kde.keyboard"), QStringLiteral("/Layouts"),
        QStringLiteral("org.kde.KeyboardLayouts"), QStringLiteral("setLayout"));
    call << layout;
    QCOMPARE(QDBusConnection::sessionBus().call(call).arguments(), QVariantList{true});
}
