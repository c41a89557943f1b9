#include "platform/linux/tray/TrayItem.h"

#include "platform/linux/activation/UserActivation.h"
#include "platform/linux/base/ApplicationId.h"
#include "platform/linux/base/Session.h"
#include "symbols/SystemSymbol.h"

#include <QCursor>
#include <QGuiApplication>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{
bool isX11()
{
    return qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
}

/// Plasma's panel takes up to half a second to change its colours.
constexpr std::chrono::seconds panelColoringTime(1);

bool isPlasma()
{
    return currentDesktop(QProcessEnvironment::systemEnvironment()) == Desktop::plasma;
}

/// The icon that Plasma shows in the colours of its panel; empty if it is not installed. Also empty
/// on other desktops, where it could be dark on a dark panel.
QString panelIconName(bool isDimmed)
{
    if (!isPlasma())
        return {};
    const QString name = applicationId + (isDimmed ? u"-paused-symbolic"_s : u"-symbolic"_s);
    const QString file = u"icons/hicolor/symbolic/apps/%1.svg"_s.arg(name);
    const bool isInstalled =
        !QStandardPaths::locate(QStandardPaths::GenericDataLocation, file).isEmpty();
    return isInstalled ? name : QString();
}
} // namespace

TrayItem::TrayItem(StatusItemDelegate &delegate, UserActivation &activation,
                   std::chrono::milliseconds patience)
    : m_delegate(delegate)
    , m_activation(activation)
    , m_menu([this] { return m_delegate.menuNeedsUpdate(); },
             [this](const MenuItem &item) { choose(item); })
    , m_item(applicationId)
    , m_popup([this](const MenuItem &item) { choose(item); })
{
    connect(&m_item, &StatusNotifierItem::clicked, this, &TrayItem::openMenu);
    connect(&m_item, &StatusNotifierItem::activationTokenProvided, this,
            [this](const QByteArray &token) { m_activationToken = token; });
    connect(&m_watcher, &StatusNotifierWatcher::hostChanged, this, &TrayItem::setHost);
    m_patience.setSingleShot(true);
    m_patience.setInterval(patience);
    connect(&m_patience, &QTimer::timeout, this, [this] { setX11IconVisible(true); });
    if (isPlasma()) {
        m_panelColors.emplace(configFiles(u"kdeglobals"_s) + configFiles(u"plasmarc"_s),
                              panelColoringTime);
        connect(&*m_panelColors, &FileWatch::changed, &m_item, &StatusNotifierItem::NewIcon);
    }
    // The item must be complete before any desktop reads it.
    update();
    m_watcher.start();
}

void TrayItem::update()
{
    m_menu.update();
    if (m_popup.isVisible())
        m_popup.refresh(m_delegate.menuNeedsUpdate());
    const StatusButton button = m_delegate.statusButton();
    if (button == m_button)
        return;
    m_button = button;
    m_item.setButton(image(), panelIconName(m_button.isDimmed), m_button.accessibilityDescription);
    showButton();
}

QIcon TrayItem::image() const
{
    return statusImage(m_button.image,
                       m_button.isDimmed ? StatusEmphasis::Dimmed : StatusEmphasis::Normal);
}

void TrayItem::setHost(NotifierHost host)
{
    m_patience.stop();
    switch (host) {
    case NotifierHost::present:
        setX11IconVisible(false);
        break;
    case NotifierHost::awaited:
        // The desktop is probably still starting and busy. If we made our icon now, Qt would block
        // on the watcher's answers, and the icon would be removed a moment later.
        m_patience.start();
        break;
    case NotifierHost::absent:
        setX11IconVisible(true);
        break;
    }
}

void TrayItem::setX11IconVisible(bool isVisible)
{
    if (!m_x11Icon && isVisible && isX11()) {
        m_x11Icon.emplace();
        connect(&*m_x11Icon, &QSystemTrayIcon::activated, this, &TrayItem::openMenu);
        showButton();
    }
    if (m_x11Icon)
        m_x11Icon->setVisible(isVisible);
}

void TrayItem::showButton()
{
    if (!m_x11Icon)
        return;
    m_x11Icon->setIcon(image());
    m_x11Icon->setToolTip(m_button.accessibilityDescription);
}

void TrayItem::openMenu()
{
    if (isX11()) {
        // At the pointer: some panels send a place that is not where the icon is.
        m_popup.open(QCursor::pos(), m_delegate.menuNeedsUpdate());
        return;
    }
    // On Wayland only the desktop can place a menu beside its panel.
    noteUserAction();
    m_delegate.statusButtonClicked();
}

void TrayItem::choose(const MenuItem &item)
{
    noteUserAction();
    item.action(item);
}

void TrayItem::noteUserAction()
{
    m_activation.accept({.startupId = {}, .activationToken = std::exchange(m_activationToken, {})});
}
