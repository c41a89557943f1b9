// The program's tray item: a StatusNotifierItem where the desktop shows those, else an icon in an
// X11 tray.
#pragma once

#include "platform/StatusBar.h"
#include "platform/linux/base/FileWatch.h"
#include "platform/linux/tray/DBusMenu.h"
#include "platform/linux/tray/PopupMenu.h"
#include "platform/linux/tray/StatusNotifierItem.h"
#include "platform/linux/tray/StatusNotifierWatcher.h"

#include <QObject>
#include <QSystemTrayIcon>
#include <QTimer>
#include <chrono>
#include <optional>

struct UserActivation;

class TrayItem final : public QObject, public StatusItem
{
    Q_OBJECT

public:
    /// Both references must outlive it. The patience is how long to wait for the item's host when a
    /// watcher is there but nothing shows its items yet.
    TrayItem(StatusItemDelegate &delegate, UserActivation &activation,
             std::chrono::milliseconds patience = std::chrono::seconds(30));

    void update() override;

private:
    QIcon image() const;
    void setHost(NotifierHost host);
    void setX11IconVisible(bool isVisible);
    void showButton();
    void openMenu();
    void choose(const MenuItem &item);
    void noteUserAction();

    StatusItemDelegate &m_delegate;
    UserActivation &m_activation;
    DBusMenu m_menu;
    StatusNotifierItem m_item;
    StatusNotifierWatcher m_watcher;
    PopupMenu m_popup;
    StatusButton m_button;
    /// The token for the user's next action; empty where desktops give none.
    QByteArray m_activationToken;
    QTimer m_patience;
    /// Plasma's panel colours an icon only when it loads it.
    std::optional<FileWatch> m_panelColors;
    /// Created only where no desktop shows StatusNotifierItems: if any did, Qt would use them
    /// instead, and would not reconsider later.
    std::optional<QSystemTrayIcon> m_x11Icon;
};
