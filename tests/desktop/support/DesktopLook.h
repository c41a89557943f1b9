// What a user has set about the look of programs on his desktop.
#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaType>
#include <QString>

class ProgramUnderTest;

struct DesktopLook {
    QString name;
    /// Of KDE's settings, which Qt follows without a plugin; empty for what is plain.
    QByteArray colors;
    QByteArray font;
    QByteArray scale = "1";
    /// As a portal tells it, for desktops without colours of their own.
    bool prefersDark = false;

    /// To be called before the program's start.
    void setUp(ProgramUnderTest &program) const;

    /// Those in which places on the screen are the same to everybody.
    static QList<DesktopLook> measured();

    static QList<DesktopLook> others();
};

Q_DECLARE_METATYPE(DesktopLook)

/// Has the program's letters drawn without smooth edges; to be called before its start.
void setHardEdges(ProgramUnderTest &program);
