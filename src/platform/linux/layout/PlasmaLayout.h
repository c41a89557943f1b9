// Which of several keyboard layouts is in use on Plasma.
#pragma once

#include <QObject>

/// Follows Plasma's keyboard service, which comes after the compositor, and only if there are
/// several layouts. Main thread only.
class PlasmaLayout final : public QObject
{
    Q_OBJECT

public:
    /// To be called once. Nothing is started, and nothing waits for an answer.
    void start();

    /// The index in the user's order; 0 as long as it is unknown.
    quint32 index() const { return m_index; }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void ask();
    void setIndex(uint index);

private:
    quint32 m_index = 0;
};
