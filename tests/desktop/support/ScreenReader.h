// Hears what screen readers say without having been asked: a notification that appears, and a new
// name of what has the focus.
#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QStringList>

class ScreenReader : public QObject
{
    Q_OBJECT

public:
    /// Hears programs that are started from now on.
    ScreenReader();

    /// What it has heard since it was last asked.
    QStringList heard();

private Q_SLOTS:
    void stateChanged(const QDBusMessage &signal);
    void propertyChanged(const QDBusMessage &signal);

private:
    QStringList m_heard;
};
