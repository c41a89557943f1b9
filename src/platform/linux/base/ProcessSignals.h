// What other processes ask of the program by signals: to end, and to open its window.
#pragma once

#include <QSocketNotifier>
#include <csignal>
#include <functional>
#include <optional>

/// Asks another instance to open its window. A process without a handler ignores this signal, so
/// it does no harm where it reaches a wrong one.
inline constexpr int activationSignal = SIGURG;

/// SIGTERM and SIGINT quit the application with status 0. There is one in a program.
class ProcessSignals
{
public:
    /// From here on the signals are noted. Needs no QApplication yet.
    ProcessSignals();

    /// Quits or calls the handler on a signal, also on one that came before. To be called once,
    /// when QApplication exists.
    void attachToEventLoop(std::function<void()> activate);

private:
    std::optional<QSocketNotifier> m_notifier;
};
