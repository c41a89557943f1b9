// Ends the event loop when the session asks the program to end.
#pragma once

#include <QSocketNotifier>

/// SIGTERM and SIGINT quit the application with status 0. One at a time, after QApplication.
class TerminationSignals
{
public:
    TerminationSignals();

private:
    QSocketNotifier m_notifier;
};
