// Activation tokens of the Wayland compositor, with which a started program may come to the front.
#pragma once

#include <QByteArray>
#include <QtGlobal>

struct wl_event_queue;
struct wl_registry;
struct xdg_activation_v1;

/// Uses Qt's own connection to the compositor.
class ActivationTokens
{
public:
    ActivationTokens() = default;
    ~ActivationTokens();
    Q_DISABLE_COPY_MOVE(ActivationTokens)

    /// Asks for the compositor's interfaces, which arrive in the event loop. To be called once,
    /// when QApplication exists.
    void start();

    /// Whether the compositor gives tokens to this program, as far as is known. If so, it also
    /// shows the open windows to it.
    bool isPermitted() const { return m_isPermitted; }

    /// A token for the user's latest key press; empty if the compositor gives none to this program.
    /// Waits for the compositor, but at most 20 ms.
    QByteArray request();

private:
    struct Listeners;

    wl_registry *m_registry = nullptr;
    wl_event_queue *m_queue = nullptr;
    xdg_activation_v1 *m_activation = nullptr;
    bool m_isPermitted = false;
};
