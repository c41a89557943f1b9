#include "platform/linux/layout/KeyboardLayout.h"

void KeyboardLayout::setKeys(const LayoutKeys &keys)
{
    if (keys == m_keys)
        return;
    m_keys = keys;
    Q_EMIT changed();
}
