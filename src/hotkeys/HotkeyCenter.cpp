#include "hotkeys/HotkeyCenter.h"

#include <limits>

using namespace KeyboardShortcuts;

namespace
{
quint32 unsignedOrDie(qint64 value, const Name &name)
{
    if (value < 0 || value > std::numeric_limits<quint32>::max())
        qFatal("corvane: the stored value %s holds %lld, which is no key code or modifier mask",
               qPrintable(defaultsKey(name)), static_cast<long long>(value));
    return static_cast<quint32>(value);
}
} // namespace

HotkeyCenter::HotkeyCenter(HotkeyService &service, const UserDefaults &defaults)
    : m_service(service)
    , m_defaults(defaults)
{
}

HotkeyCenter &HotkeyCenter::shared()
{
    Q_ASSERT(s_shared);
    return *s_shared;
}

void HotkeyCenter::sync(const Name &name)
{
    m_refs.erase(name.rawValue);
    if (disabled.contains(name.rawValue) || !handlers.contains(name.rawValue))
        return;
    const auto shortcut = getShortcut(name, m_defaults);
    if (!shortcut)
        return;
    installHandlerIfNeeded();
    const HotkeyId id = hotkeyId(name.rawValue);
    auto registration = m_service.registerHotkey(unsignedOrDie(shortcut->carbonKeyCode, name),
                                                 unsignedOrDie(shortcut->carbonModifiers, name), id,
                                                 {name.rawValue, titles.value(name.rawValue)});
    if (registration)
        m_refs.emplace(name.rawValue, std::move(*registration));
}

void HotkeyCenter::installHandlerIfNeeded()
{
    if (m_installed)
        return;
    m_installed = true;
    // Queued, so that the action runs only after the service has finished with its event.
    m_service.installHandler([this](HotkeyId pressed) {
        prepare(m_idToName.value(pressed.id));
        QMetaObject::invokeMethod(
            &m_queue, [this, id = pressed.id] { dispatch(id); }, Qt::QueuedConnection);
    });
}

HotkeyId HotkeyCenter::hotkeyId(const QString &name)
{
    if (const auto known = m_nameToId.constFind(name); known != m_nameToId.cend())
        return {HotKeySignature, *known};
    if (m_nextId == std::numeric_limits<quint32>::max())
        qFatal("corvane: there are no more ids for hot keys");
    const quint32 id = m_nextId++;
    m_nameToId.insert(name, id);
    m_idToName.insert(id, name);
    return {HotKeySignature, id};
}

bool HotkeyCenter::fire(const Name &name) const
{
    prepare(name.rawValue);
    return act(name.rawValue);
}

void HotkeyCenter::prepare(const QString &name) const
{
    if (const auto preparation = preparations.value(name); preparation && !disabled.contains(name))
        preparation();
}

bool HotkeyCenter::act(const QString &name) const
{
    // Copy the action: it may replace or remove its own handler.
    const auto action = handlers.value(name);
    if (action && !disabled.contains(name))
        action();
    return action != nullptr;
}

void HotkeyCenter::dispatch(quint32 id) const
{
    const auto name = m_idToName.constFind(id);
    if (name != m_idToName.cend())
        act(*name);
}
