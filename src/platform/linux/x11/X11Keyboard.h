// What the X server says of its keyboard: where the physical keys are, and which bit each modifier
// has.
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
    /// A keyboard without keys and modifiers.
    X11Keyboard() = default;

    /// One round trip.
    static X11Keyboard read(const X11Connection &connection);

    /// None if this keyboard has no such key.
    QList<XKeycode> keys(VirtualKey virtualKey) const;

    /// Nothing if the key has no virtual key code, or if the server has no such key.
    std::optional<VirtualKey> virtualKey(XKeycode key) const;

    /// The X modifier bits of a mask of KeyModifier bits, other bits aside;
    /// nothing if this keyboard lacks one of the modifiers.
    std::optional<quint16> modifiers(quint32 mask) const;

    /// The modifiers with each mix of the lock modifiers (Caps, Num and Scroll Lock) that this
    /// keyboard has, the one without any included.
    QList<quint16> lockVariants(quint16 modifiers) const;

    /// What a press's state says of the four modifiers that combinations are made of.
    quint16 combinationModifiers(quint16 state) const;

    /// The same as EventFlag bits.
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
    /// The bits of those in modifierForms; 0 where the keyboard has no such key.
    std::array<quint16, 4> m_modifiers{XCB_MOD_MASK_SHIFT, XCB_MOD_MASK_CONTROL};
    quint16 m_locks = 0;
};
