// The registry of our hot keys: keeps the system's registrations in line with what is stored,
// and brings each press to the action of its name.
#pragma once

#include "hotkeys/KeyboardShortcuts.h"
#include "platform/HotkeyService.h"
#include "platform/Registration.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>
#include <functional>
#include <unordered_map>

/// The four bytes "CRVN", which every registration of ours carries.
inline constexpr quint32 HotKeySignature = 0x4352564E;

/// Main thread only. The services must outlive it.
class HotkeyCenter
{
public:
    HotkeyCenter(HotkeyService &service, const UserDefaults &defaults);

    /// The program's one instance, which main makes and never destroys. There is none before main
    /// has named it, which it does before it makes the store.
    static HotkeyCenter &shared();
    static void setShared(HotkeyCenter &center) { s_shared = &center; }

    /// The action of each name. A name without one is never registered.
    QHash<QString, std::function<void()>> handlers;

    /// Names that must not be registered and must not fire.
    QSet<QString> disabled;

    /// Registers the name exactly if it has a handler, is not disabled and has a stored
    /// combination. To be called after each change of one of these. A refusal is silent, and
    /// tried again by the next call. Stored key values that are no unsigned 32-bit numbers are
    /// fatal.
    void sync(const KeyboardShortcuts::Name &name);

    /// What a press of the name's keys does, whether it has any or not: calls its action, unless
    /// it is disabled. Tells whether it has an action at all.
    bool fire(const KeyboardShortcuts::Name &name) const;

private:
    void installHandlerIfNeeded();
    HotkeyId hotkeyId(const QString &name);
    void dispatch(quint32 id) const;

    static inline HotkeyCenter *s_shared = nullptr;

    HotkeyService &m_service;
    const UserDefaults &m_defaults;
    std::unordered_map<QString, Registration> m_refs;
    QHash<quint32, QString> m_idToName;
    QHash<QString, quint32> m_nameToId;
    quint32 m_nextId = 1;
    bool m_installed = false;
    /// Receives the queued dispatches; destroyed first, so that none arrives at a center that has
    /// gone.
    QObject m_queue;
};
