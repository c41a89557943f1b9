// The running sway, by its own tool.
#pragma once

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

/// The folder with sway's sockets, where it may write.
inline QDir swayFolder()
{
    return QFileInfo(qEnvironmentVariable("WAYLAND_DISPLAY")).dir();
}

/// What swaymsg answers.
inline QByteArray askSway(const QStringList &arguments)
{
    const QString socket =
        swayFolder().entryList({QStringLiteral("sway-ipc.*")}, QDir::System).value(0);
    QProcess tool;
    tool.start(QStringLiteral("swaymsg"),
               QStringList{QStringLiteral("-s"), swayFolder().filePath(socket)} + arguments);
    tool.waitForFinished();
    [&] { QCOMPARE(tool.exitCode(), 0); }();
    return tool.readAllStandardOutput();
}
