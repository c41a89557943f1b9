#include "platform/linux/tray/LinuxStatusBar.h"

#include "platform/linux/tray/TrayItem.h"

std::unique_ptr<StatusItem> LinuxStatusBar::makeStatusItem(StatusItemDelegate &delegate)
{
    return std::make_unique<TrayItem>(delegate, m_activation);
}
