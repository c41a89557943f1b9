// A desktop's panel with nothing but a tray, all along the upper edge of the screen.
#pragma once

#include <QMetaType>
#include <QProcess>
#include <sys/types.h>

class Panel
{
public:
    /// Xfce shows StatusNotifierItems and icons of X11, Lxqt only the former, Trayer and Tint2 only
    /// the latter.
    enum class Kind { Xfce, Lxqt, Trayer, Tint2 };

    /// Starts it and awaits that programs find it.
    explicit Panel(Kind kind);
    /// Kills it, and awaits that programs find it no more.
    ~Panel();
    Q_DISABLE_COPY_MOVE(Panel)

    static constexpr int height = 32;

private:
    Kind m_kind;
    QProcess m_process;
    pid_t m_group = 0;
};

Q_DECLARE_METATYPE(Panel::Kind)
