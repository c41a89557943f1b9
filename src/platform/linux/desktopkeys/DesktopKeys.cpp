#include "platform/linux/desktopkeys/DesktopKeys.h"

#include <utility>

void DesktopKeys::setAccelerators(std::optional<Accelerators> accelerators)
{
    if (accelerators == m_accelerators)
        return;
    m_accelerators = std::move(accelerators);
    Q_EMIT changed();
}
