// Ends the event loop when the session asks the program to end.
#pragma once

#include <QSocketNotifier>
#include <optional>

/// SIGTERM and SIGINT quit the application with status 0. There is one in a program.
class TerminationSignals
{
public:
    /// From here on the signals are noted. Needs no QApplication yet.
    TerminationSignals();

    /// Quits on a signal, also on one that came before. To be called once, when QApplication
    /// exists.
    void attachToEventLoop();

private:
    std::optional<QSocketNotifier> m_notifier;
};
