// The registry of the program's hot keys: keeps the system's registrations in line with the stored
// combinations, and runs the action of a name when its keys are pressed.
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

/// The four bytes "CRVN", part of every hot key id that the program registers.
inline constexpr quint32 HotKeySignature = 0x4352564E;

/// Main thread only. The services must outlive it.
class HotkeyCenter
{
public:
    HotkeyCenter(HotkeyService &service, const UserDefaults &defaults);

    /// The program's only instance. main creates it, never destroys it, and calls setShared()
    /// before it creates the store; until then there is none.
    static HotkeyCenter &shared();
    static void setShared(HotkeyCenter &center) { s_shared = &center; }

    /// The action of each name. A name without an action is never registered.
    QHash<QString, std::function<void()>> handlers;

    /// What a name does at once when its keys are pressed, before its action is queued, and when it
    /// is fired. It must not wait long or change a registration.
    QHash<QString, std::function<void()>> preparations;

    /// What the user calls each name. A change takes effect with the next sync().
    QHash<QString, QString> titles;

    /// Names that are not registered and do not fire.
    QSet<QString> disabled;

    /// Registers the name if it has a handler, is not disabled and has a stored combination;
    /// otherwise unregisters it. Call this after each change to one of these. A refused
    /// registration is silent, and the next call tries again. Stored values that are not unsigned
    /// 32-bit numbers abort the program.
    void sync(const KeyboardShortcuts::Name &name);

    /// Does what a press of the name's keys does, whether or not it has any: calls the action
    /// unless the name is disabled. Returns whether the name has an action.
    bool fire(const KeyboardShortcuts::Name &name) const;

private:
    void installHandlerIfNeeded();
    HotkeyId hotkeyId(const QString &name);
    void prepare(const QString &name) const;
    bool act(const QString &name) const;
    void dispatch(quint32 id) const;

    static inline HotkeyCenter *s_shared = nullptr;

    HotkeyService &m_service;
    const UserDefaults &m_defaults;
    std::unordered_map<QString, Registration> m_refs;
    QHash<quint32, QString> m_idToName;
    QHash<QString, quint32> m_nameToId;
    quint32 m_nextId = 1;
    bool m_installed = false;
    /// The target of queued dispatches. It is destroyed first, so no dispatch reaches a destroyed
    /// center.
    QObject m_queue;
};
