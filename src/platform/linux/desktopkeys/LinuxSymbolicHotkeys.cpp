#include "platform/linux/desktopkeys/LinuxSymbolicHotkeys.h"

#include <utility>

using namespace std::chrono_literals;

namespace
{
/// How long a desktop may take to update its grabs: it learns of a change in its settings when we
/// do. Chosen by feel: a warning that comes a little later disturbs nobody.
constexpr auto desktopSettlingTime = 300ms;

/// One hot key for each key that can produce the accelerator.
QList<SymbolicHotkey> hotkeys(const DesktopKey &desktopKey, const LayoutKeys &keys)
{
    const Accelerator &accelerator = desktopKey.accelerator;
    if (accelerator.keycode) {
        const auto key = keys.virtualKey(*accelerator.keycode);
        return key
            ? QList<SymbolicHotkey>{{qint64(*key), accelerator.modifiers, true, desktopKey.action}}
            : QList<SymbolicHotkey>();
    }
    QList<SymbolicHotkey> found;
    for (const LayoutKeys::Key &key : keys.keysWithKeysym(accelerator.keysym)) {
        const bool needsShift = accelerator.impliesShift && key.needsShift;
        found.append({qint64(key.virtualKey),
                      needsShift ? accelerator.modifiers | shiftEventFlag : accelerator.modifiers,
                      true, desktopKey.action});
    }
    return found;
}
} // namespace

LinuxSymbolicHotkeys::LinuxSymbolicHotkeys(std::unique_ptr<DesktopKeys> desktopKeys,
                                           const KeyboardLayout &layout, TakenKeys *takenKeys)
    : m_desktopKeys(std::move(desktopKeys))
    , m_layout(layout)
    , m_takenKeys(takenKeys)
{
    if (m_desktopKeys) {
        connect(m_desktopKeys.get(), &DesktopKeys::changed, this, &LinuxSymbolicHotkeys::resolve);
        connect(&m_layout, &KeyboardLayout::changed, this, &LinuxSymbolicHotkeys::resolve);
    }
    m_settling.setInterval(desktopSettlingTime);
    m_settling.setSingleShot(true);
    if (m_takenKeys) {
        connect(m_takenKeys, &TakenKeys::changed, this, &SymbolicHotkeys::changed);
        connect(&m_settling, &QTimer::timeout, m_takenKeys, &TakenKeys::invalidate);
    }
}

std::optional<QList<SymbolicHotkey>> LinuxSymbolicHotkeys::copySymbolicHotkeys()
{
    if (m_desktopKeys && !std::exchange(m_isStarted, true))
        m_desktopKeys->start();
    return m_hotkeys;
}

bool LinuxSymbolicHotkeys::keepsSuperKey()
{
    return m_keepsSuperKey;
}

bool LinuxSymbolicHotkeys::isHeldElsewhere(quint32 keyCode, quint32 modifiers)
{
    return m_takenKeys && m_takenKeys->isHeldElsewhere(VirtualKey(keyCode), modifiers);
}

void LinuxSymbolicHotkeys::refresh()
{
    if (m_takenKeys)
        m_takenKeys->invalidate();
    if (m_isStarted)
        m_desktopKeys->refresh();
}

void LinuxSymbolicHotkeys::resolve()
{
    std::optional<QList<SymbolicHotkey>> resolved;
    if (const auto &desktopKeys = m_desktopKeys->keys()) {
        resolved.emplace();
        for (const DesktopKey &desktopKey : *desktopKeys)
            *resolved += hotkeys(desktopKey, m_layout.keys());
    }
    const bool keepsSuperKey = m_desktopKeys->keepsSuperKey();
    if (resolved == m_hotkeys && keepsSuperKey == m_keepsSuperKey)
        return;
    m_hotkeys = std::move(resolved);
    m_keepsSuperKey = keepsSuperKey;
    Q_EMIT changed();
    // The desktop grabs its keys at the X server too; wait until it has done so.
    m_settling.start();
}
