// A key combination on which the desktop itself acts: KWin, or sway.
#pragma once

#include <QObject>
#include <QString>

class DesktopBinding final : public QObject
{
    Q_OBJECT

public:
    /// Binds Control, Alt and J. On sway, the command runs at each act.
    explicit DesktopBinding(const QString &command = QStringLiteral("true"));
    ~DesktopBinding() override;

    /// How often the desktop has acted so far, repeats included.
    int acts() const;

private Q_SLOTS:
    void act() { ++m_signals; }

private:
    /// sway writes a line into this file each time; empty on KWin, which sends a signal.
    QString m_file;
    int m_signals = 0;
};
