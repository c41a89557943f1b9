#include "platform/linux/services/CanberraAlertSound.h"

#include <QGuiApplication>
#include <canberra.h>
#include <chrono>
#include <system_error>
#include <thread>
#include <xcb/xcb.h>

using namespace std::chrono_literals;

namespace
{
/// A sound that takes longer counts as hanging; alert sounds last less than a second.
constexpr auto maxSoundDuration = 2s;

void ringXBell()
{
    const auto *const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!x11)
        return;
    constexpr int8_t baseVolume = 0;
    xcb_bell(x11->connection(), baseVolume);
    xcb_flush(x11->connection());
}
} // namespace

CanberraAlertSound::CanberraAlertSound()
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(maxSoundDuration);
    connect(&m_patience, &QTimer::timeout, this, ringXBell);
}

void CanberraAlertSound::beep()
{
    if (m_isPlaying) {
        if (!m_patience.isActive())
            ringXBell();
        return;
    }
    m_isPlaying = true;
    m_patience.start();
    try {
        std::thread([this] { begin(); }).detach();
    } catch (const std::system_error &) {
        finished(CA_ERROR_SYSTEM);
    }
}

void CanberraAlertSound::begin()
{
    if (!m_context && ca_context_create(&m_context) != CA_SUCCESS) {
        finished(CA_ERROR_SYSTEM);
        return;
    }
    ca_proplist *properties = nullptr;
    ca_proplist_create(&properties);
    ca_proplist_sets(properties, CA_PROP_EVENT_ID, "bell");
    ca_proplist_sets(properties, CA_PROP_APPLICATION_NAME, "Corvane");
    ca_proplist_sets(properties, CA_PROP_APPLICATION_ID, "org.corvane.Corvane");
    const auto ended = [](ca_context *, uint32_t, int result, void *sound) {
        static_cast<CanberraAlertSound *>(sound)->finished(result);
    };
    const int result = ca_context_play_full(m_context, 0, properties, ended, this);
    ca_proplist_destroy(properties);
    if (result != CA_SUCCESS)
        finished(result);
}

void CanberraAlertSound::finished(int result)
{
    const auto end = [this, result] {
        m_isPlaying = false;
        const bool isInTime = m_patience.isActive();
        m_patience.stop();
        if (result != CA_SUCCESS && isInTime)
            ringXBell();
    };
    QMetaObject::invokeMethod(this, end, Qt::QueuedConnection);
}
