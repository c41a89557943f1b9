#include "platform/linux/desktopkeys/DesktopShortcuts.h"

#include <utility>

void DesktopShortcuts::take(std::optional<Accelerators> accelerators)
{
    if (accelerators == m_accelerators)
        return;
    m_accelerators = std::move(accelerators);
    Q_EMIT changed();
}
