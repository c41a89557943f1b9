#include "platform/linux/layout/KeyboardLayout.h"

void KeyboardLayout::take(const LayoutKeys &keys)
{
    if (keys == m_keys)
        return;
    m_keys = keys;
    Q_EMIT changed();
}
