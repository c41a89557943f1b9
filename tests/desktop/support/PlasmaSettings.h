// Changes Plasma's settings as its own settings program does.
#pragma once

#include "support/WriteFile.h"

#include <QDBusConnection>
#include <QDBusMessage>

/// Names of keyboard layouts, separated by commas.
inline void setLayouts(const QByteArray &names)
{
    writeFile(qEnvironmentVariable("XDG_CONFIG_HOME") + QStringLiteral("/kxkbrc"),
              "[Layout]\nUse=true\nLayoutList=" + names + '\n');
    QDBusConnection::sessionBus().send(
        QDBusMessage::createSignal(QStringLiteral("/Layouts"), QStringLiteral("org.kde.keyboard"),
                                   QStringLiteral("reloadConfig")));
}
