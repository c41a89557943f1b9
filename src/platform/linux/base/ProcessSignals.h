// Handles the signals by which other processes ask the program to quit or to open its window.
#pragma once

#include <QSocketNotifier>
#include <csignal>
#include <functional>
#include <optional>

/// Asks another instance to open its window. The default action of this signal is to ignore it, so
/// it does no harm if it reaches the wrong process.
inline constexpr int activationSignal = SIGURG;

/// SIGTERM and SIGINT quit the application with status 0. Only one instance may exist.
class ProcessSignals
{
public:
    /// Installs the handlers; signals are recorded from then on. Needs no QApplication yet.
    ProcessSignals();

    /// Quits or calls the handler when a signal arrives, or has arrived before. To be called once,
    /// when QApplication exists.
    void attachToEventLoop(std::function<void()> activate);

private:
    std::optional<QSocketNotifier> m_notifier;
};
