// The X server's keyboard: the positions of the physical keys and the bits of the modifiers.
#pragma once

#include "platform/linux/keys/KeyNumbers.h"

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QtGlobal>
#include <array>
#include <optional>
#include <xcb/xcb.h>

class X11Connection;
namespace KeyCodes
{
struct PhysicalKey;
}

class X11Keyboard
{
public:
    /// Makes a keyboard without keys and modifiers.
    X11Keyboard() = default;

    /// Reads the keyboard from the server in one round trip.
    static X11Keyboard read(const X11Connection &connection);

    /// The keys with a virtual key code; empty if this keyboard has none.
    QList<XKeycode> keys(VirtualKey virtualKey) const;

    /// The virtual key code of a key; nothing if it has none, or if the server has no such key.
    std::optional<VirtualKey> virtualKey(XKeycode key) const;

    /// Converts a mask of KeyModifier bits to X modifier bits; other bits are ignored. Nothing if
    /// this keyboard lacks one of the modifiers.
    std::optional<quint16> modifiers(quint32 mask) const;

    /// The modifiers combined with every subset of this keyboard's lock modifiers (Caps, Num and
    /// Scroll Lock), including none of them.
    QList<quint16> lockVariants(quint16 modifiers) const;

    /// The bits of a press's state that belong to the four modifiers of combinations.
    quint16 combinationModifiers(quint16 state) const;

    /// The modifiers of a press's state as EventFlag bits.
    quint32 eventFlags(quint16 state) const;

private:
    void readKeyNames(xcb_connection_t *connection, unsigned int sequence);
    void findVirtualKeys();
    void readModifiers(xcb_connection_t *connection, unsigned int mapSequence,
                       unsigned int keysSequence);

    std::optional<XKeycode> find(const KeyCodes::PhysicalKey &key) const;

    QHash<QByteArray, XKeycode> m_keysByName;
    std::array<std::optional<VirtualKey>, 256> m_virtualKeys;
    XKeycode m_firstKey{};
    XKeycode m_lastKey{};
    /// The bits of the modifiers in the order of modifierForms; 0 if the keyboard lacks one.
    std::array<quint16, 4> m_modifiers{XCB_MOD_MASK_SHIFT, XCB_MOD_MASK_CONTROL};
    quint16 m_locks = 0;
};
