// The program's item in the tray: a StatusNotifierItem where the desktop shows such, else an icon
// in a tray of X11.
#pragma once

#include "platform/StatusBar.h"
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
    /// Both must outlive it. The patience is for a desktop that has begun to come, and is not there
    /// yet.
    TrayItem(StatusItemDelegate &delegate, UserActivation &activation,
             std::chrono::milliseconds patience = std::chrono::seconds(30));

    void update() override;

private:
    QIcon image() const;
    void setHost(NotifierHost host);
    void setX11IconVisible(bool isVisible);
    void showButton();
    void openMenu(const QPoint &place);
    void choose(const MenuItem &item);
    void noteUserAction();

    StatusItemDelegate &m_delegate;
    UserActivation &m_activation;
    DBusMenu m_menu;
    StatusNotifierItem m_item;
    StatusNotifierWatcher m_watcher;
    PopupMenu m_popup;
    StatusButton m_button;
    /// For what the user does next; empty where desktops give none.
    QByteArray m_activationToken;
    QTimer m_patience;
    /// Made only where no desktop shows StatusNotifierItems: Qt would use them by itself, once and
    /// for all, if there were any when it is made.
    std::optional<QSystemTrayIcon> m_x11Icon;
};
