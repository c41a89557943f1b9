// The system's registry of global key combinations.
#pragma once

#include "platform/Registration.h"

#include <QObject>
#include <QString>
#include <QtGlobal>
#include <functional>
#include <optional>

/// Identifies the registration that a press belongs to.
struct HotkeyId {
    quint32 signature;
    quint32 id;

    bool operator==(const HotkeyId &) const = default;
};

/// What a registration is for.
struct HotkeyPurpose {
    /// Stays the same for the life of the entry.
    QString name;
    /// What the user calls it. Desktops show it in their settings and dialogs.
    QString title;

    bool operator==(const HotkeyPurpose &) const = default;
};

/// A virtual key code and a mask of KeyModifier bits.
struct HotkeyKeys {
    quint32 keyCode;
    quint32 modifiers;

    bool operator==(const HotkeyKeys &) const = default;
};

/// How far registrations get in this session.
enum class HotkeyReach {
    /// The program gets the presses of the keys.
    registered,
    /// The keys are kept in the desktop's own keyboard settings.
    inDesktopSettings,
    /// The user has not allowed the program to have keys.
    notAllowed,
    /// The session offers no way to register keys.
    nowhere,
    /// The desktop has not answered yet.
    unknown,
};

class HotkeyService : public QObject
{
    Q_OBJECT

public:
    /// Sets the only receiver of presses. It is called on the main thread, once per press however
    /// long the keys are held.
    virtual void installHandler(std::function<void(HotkeyId)> handler) = 0;

    /// Registers a virtual key code with a mask of modifiers (KeyModifier bits) until the
    /// registration is destroyed. Returns nothing if there is no such key. A service that learns of
    /// a refusal only later drops the keys silently and may retry by itself. If the same keys are
    /// registered several times, the earliest registration is live; the others wait for it to end,
    /// in the order in which they were made. Ending a registration and making it again for the same
    /// id in the same turn of the event loop costs nothing, loses no press and keeps its place.
    virtual std::optional<Registration> registerHotkey(quint32 keyCode, quint32 modifiers,
                                                       HotkeyId id,
                                                       const HotkeyPurpose &purpose) = 0;

    virtual HotkeyReach reach() const = 0;

    /// The keys that the desktop says it uses in place of the registered ones; nothing as a rule.
    virtual std::optional<HotkeyKeys> otherKeys(quint32 keyCode, quint32 modifiers) const = 0;

Q_SIGNALS:
    /// Emitted when reach() or an answer of otherKeys() has changed.
    void changed();
};
