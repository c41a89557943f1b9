#include "support/RecordedApp.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

RecordedApp::RecordedApp(const QByteArray &arguments, const QByteArray &furtherLines)
{
    QFile file(desktopFile());
    if (!file.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(file.fileName()));
    file.write("[Desktop Entry]\nType=Application\nName=Recorded\nExec=" + command() + ' '
               + arguments + '\n' + furtherLines + '\n');
}

QByteArray RecordedApp::content() const
{
    QFile file(desktopFile());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void RecordedApp::openByDefault(const QList<QByteArray> &contentTypes, const QString &dataHome,
                                const QString &configHome) const
{
    const QString applications = dataHome + u"/applications"_s;
    const QString installed = applications + u"/recorded.desktop"_s;
    QFile defaults(configHome + u"/mimeapps.list"_s);
    if (!QDir().mkpath(applications) || !QDir().mkpath(configHome)
        || !defaults.open(QIODevice::WriteOnly))
        qFatal("cannot write %s", qPrintable(defaults.fileName()));
    QFile::remove(installed);
    QFile::copy(desktopFile(), installed);
    defaults.write("[Default Applications]\n");
    for (const QByteArray &contentType : contentTypes)
        defaults.write(contentType + "=recorded.desktop\n");
}

QByteArray RecordedApp::command() const
{
    const QString program = QCoreApplication::applicationDirPath() + u"/record-start"_s;
    return '"' + QFile::encodeName(program) + "\" \"" + QFile::encodeName(recordFile()) + '"';
}

QList<nlohmann::json> RecordedApp::starts() const
{
    QList<nlohmann::json> starts;
    QFile file(recordFile());
    if (file.open(QIODevice::ReadOnly)) {
        while (!file.atEnd())
            starts.append(nlohmann::json::parse(file.readLine().toStdString()));
    }
    return starts;
}
