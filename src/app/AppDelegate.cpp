#include "app/AppDelegate.h"

#include "foundation/Text.h"
#include "foundation/Uuid.h"
#include "model/DefaultsKeys.h"
#include "platform/Platform.h"
#include "platform/SharedApplication.h"
#include "platform/UserDefaults.h"
#include "settings/SettingsView.h"
#include "store/ShortcutStore.h"
#include "symbols/SystemSymbol.h"
#include "viewkit/AccessibleRole.h"

#include <QCursor>
#include <QGuiApplication>
#include <QIcon>
#include <QScreen>
#include <QStyle>
#include <QVBoxLayout>
#include <QWidget>
#include <algorithm>

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
/// Chosen by eye: the welcome and a few rows without scrolling.
constexpr QSize comfortableSize(620, 560);

/// Centres the window on the screen with the pointer, as high as its content needs if the screen
/// is.
void place(QWidget &window)
{
    const QScreen *const screen = QGuiApplication::screenAt(QCursor::pos());
    const QRect whole = (screen ? screen : QGuiApplication::primaryScreen())->availableGeometry();
    const int titleBar = window.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const QRect room = whole.adjusted(0, titleBar, 0, 0);
    window.resize(std::max(comfortableSize.width(), window.minimumSizeHint().width()),
                  comfortableSize.height());
    // Let the layouts of all levels settle, on which the height depends.
    window.layout()->activate();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    const QSize needed = window.size().expandedTo(window.minimumSizeHint());
    QRect content(QPoint(), needed.boundedTo(room.size()));
    content.moveCenter(whole.center());
    content.moveTop(std::max(content.top(), room.top()));
    window.setGeometry(content);
}

std::unique_ptr<QWidget> makeSettingsWindow(const Platform &platform, ShortcutStore &store)
{
    auto window = std::make_unique<QWidget>();
    window->setWindowTitle(u"Corvane"_s);
    window->setWindowIcon(QIcon::fromTheme(
        platform.bundleIdentifier, statusImage(u"command.square"_s, StatusEmphasis::Normal)));
    setAccessibleRole(*window, QAccessible::Window);
    auto *const layout = new QVBoxLayout(window.get());
    layout->setContentsMargins({});
    layout->addWidget(new SettingsView(platform, store));
    place(*window);
    return window;
}
} // namespace

AppDelegate::AppDelegate(const Platform &platform, ShortcutStore &store)
    : m_platform(platform)
    , m_store(store)
{
    connect(&store, &ShortcutStore::willChange, this, &AppDelegate::queueUpdate);
}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching()
{
    m_statusItem = m_platform.statusBar.makeStatusItem(*this);
    if (!m_platform.userDefaults.boolean(DefaultsKeys::hasSeenWelcome).value_or(false))
        openSettings();
}

void AppDelegate::openSettings()
{
    if (!m_settingsWindow)
        m_settingsWindow = makeSettingsWindow(m_platform, m_store);
    m_platform.application.activate(*m_settingsWindow);
}

StatusButton AppDelegate::statusButton() const
{
    return {
        .image = u"command.square"_s,
        .accessibilityDescription = m_store.paused() ? u"Corvane (paused)"_s : u"Corvane"_s,
        .isDimmed = m_store.paused(),
    };
}

QList<MenuItem> AppDelegate::menuNeedsUpdate()
{
    QList<MenuItem> items;
    if (m_store.entries().isEmpty())
        items << MenuItem{.title = u"No shortcuts yet"_s, .isEnabled = false};
    for (const LaunchEntry &entry : m_store.entries())
        items << menuItem(entry);
    items << MenuItem{}
          << MenuItem{
                 .title = u"Pause all shortcuts"_s,
                 .action = [this](const MenuItem &) { m_store.setPaused(!m_store.paused()); },
                 .isChecked = m_store.paused(),
             }
          << MenuItem{
                 .title = u"Open Settings"_s,
                 .action = [this](const MenuItem &) { openSettings(); },
                 .keyEquivalent = u","_s,
             }
          << MenuItem{}
          << MenuItem{
                 .title = u"Quit"_s,
                 .action = [this](const MenuItem &) { m_platform.application.terminate(); },
                 .keyEquivalent = u"q"_s,
             };
    return items;
}

MenuItem AppDelegate::menuItem(const LaunchEntry &entry)
{
    return {
        .title = onOneLine(entry.name) + u"    "_s + m_store.shortcutText(entry),
        .action = [this](const MenuItem &chosen) { runEntry(chosen); },
        .representedObject = entry.id.toString(QUuid::WithoutBraces),
        .isEnabled = entry.isEnabled,
    };
}

void AppDelegate::runEntry(const MenuItem &chosen)
{
    const auto id = uuidFromText(chosen.representedObject);
    for (const LaunchEntry &entry : m_store.entries()) {
        if (id == entry.id) {
            m_store.run(entry);
            return;
        }
    }
}

void AppDelegate::queueUpdate()
{
    // The store announces a change before making it, and often several in a row.
    if (m_isUpdateQueued || !m_statusItem)
        return;
    m_isUpdateQueued = true;
    const auto update = [this] {
        m_isUpdateQueued = false;
        m_statusItem->update();
    };
    QMetaObject::invokeMethod(this, update, Qt::QueuedConnection);
}
