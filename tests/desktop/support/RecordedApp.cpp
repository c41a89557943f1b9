#include "support/RecordedApp.h"

#include <QCoreApplication>
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
