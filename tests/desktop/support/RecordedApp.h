// An application whose starts are recorded: a .desktop file that runs record-start.
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QTemporaryDir>

class RecordedApp
{
public:
    /// The arguments are written into the Exec line as they stand, the further lines behind it.
    explicit RecordedApp(const QByteArray &arguments = {}, const QByteArray &furtherLines = {});

    /// The program and the arguments that record a start, as an Exec line has them.
    QByteArray command() const;

    /// Of its .desktop file.
    QByteArray content() const;

    QString desktopFile() const { return m_folder.filePath(QStringLiteral("app.desktop")); }

    /// Makes it what opens these content types by default (x-scheme-handler/… for addresses) for
    /// whoever has these XDG folders, and nothing else what opens any.
    void openByDefault(const QList<QByteArray> &contentTypes, const QString &dataHome,
                       const QString &configHome) const;

    /// What record-start wrote, in the order of the starts so far.
    QList<QJsonObject> starts() const;
    /// The only start, once it has come; empty if it does not come or is not the only one.
    QJsonObject onlyStart() const;

private:
    QString recordFile() const { return m_folder.filePath(QStringLiteral("starts")); }

    QTemporaryDir m_folder;
};

/// A value as JSON has it.
QByteArray text(const QJsonValue &value);
