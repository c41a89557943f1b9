// Key combinations: their value, their text and how they are stored under a name.
#pragma once

#include <QHash>
#include <QString>
#include <QtGlobal>
#include <optional>

class HotkeyCenter;
class UserDefaults;

namespace KeyboardShortcuts
{

struct Shortcut {
    /// The virtual key code of the physical key: 0 is the key labelled A on a US layout.
    qint64 carbonKeyCode = 0;
    /// An OR of KeyModifier bits.
    qint64 carbonModifiers = 0;

    bool operator==(const Shortcut &) const = default;

    /// The text for the user, such as ⇧⌘A: the modifiers in a fixed order, then the key's name.
    QString description() const;
};

size_t qHash(const Shortcut &shortcut, size_t seed = 0);

/// The name under which a combination is stored and registered.
struct Name {
    QString rawValue;

    bool operator==(const Name &) const = default;
};

size_t qHash(const Name &name, size_t seed = 0);

/// The names of keys by virtual key code, as a US layout labels them.
const QHash<qint64, QString> &keyNames();

/// The user-defaults key that holds the combination of the name.
QString defaultsKey(const Name &name);

/// The stored combination; nothing if there is none or if it cannot be read.
std::optional<Shortcut> getShortcut(const Name &name, const UserDefaults &defaults);

/// Stores the combination, or removes it, and updates the registered hot key.
void setShortcut(const std::optional<Shortcut> &shortcut, const Name &name, UserDefaults &defaults,
                 HotkeyCenter &center);

} // namespace KeyboardShortcuts
