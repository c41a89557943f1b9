#include "support/PrivateBus.h"

#include "support/WriteFile.h"

#include <QFile>

using namespace Qt::StringLiterals;

PrivateBus::PrivateBus(const QString &activatableName, const QString &program,
                       const QProcessEnvironment &environment)
{
    // sway may run as another user.
    QFile::setPermissions(m_folder.path(),
                          QFile::permissions(m_folder.path()) | QFile::ExeGroup | QFile::ExeOther);
    if (!activatableName.isEmpty())
        writeFile(m_folder.filePath(activatableName + u".service"_s),
                  u"[D-BUS Service]\nName=%1\nExec=%2\n"_s.arg(activatableName, program).toUtf8());
    const QString configuration = m_folder.filePath(u"bus.conf"_s);
    writeFile(
        configuration,
        u"<busconfig><type>session</type><listen>unix:path=%1/bus</listen>"
        "<servicedir>%1</servicedir><policy context=\"default\"><allow user=\"*\"/>"
        "<allow send_destination=\"*\" "
        "eavesdrop=\"true\"/>"
        "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>"_s.arg(m_folder.path())
            .toUtf8());

    m_daemon.setProcessEnvironment(environment);
    m_daemon.start(
        u"dbus-daemon"_s,
        {u"--config-file"_s, configuration, u"--nofork"_s, u"--nopidfile"_s, u"--print-address"_s});
    if (!m_daemon.waitForReadyRead())
        qFatal("the bus does not start: %s", m_daemon.readAllStandardError().constData());
    m_address = QString::fromLatin1(m_daemon.readLine().trimmed());
}

PrivateBus::~PrivateBus()
{
    m_daemon.kill();
    m_daemon.waitForFinished();
}
