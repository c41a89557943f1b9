#include "support/RecordedApp.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

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

QList<QJsonObject> RecordedApp::starts() const
{
    QList<QJsonObject> starts;
    QFile file(recordFile());
    if (file.open(QIODevice::ReadOnly)) {
        while (!file.atEnd())
            starts << QJsonDocument::fromJson(file.readLine()).object();
    }
    return starts;
}

QJsonObject RecordedApp::onlyStart() const
{
    const bool isOne = QTest::qWaitFor([this] { return starts().size() == 1; });
    return isOne ? starts().constFirst() : QJsonObject();
}

QByteArray text(const QJsonValue &value)
{
    // Only arrays and objects can be written on their own.
    return QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact).chopped(1).mid(1);
}
