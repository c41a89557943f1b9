#include "settings/SettingsView.h"

#include "foundation/Files.h"
#include "foundation/Text.h"
#include "model/DefaultsKeys.h"
#include "platform/HotkeyService.h"
#include "platform/LoginItem.h"
#include "platform/Platform.h"
#include "platform/SystemSettings.h"
#include "platform/UserDefaults.h"
#include "platform/Wording.h"
#include "platform/Workspace.h"
#include "settings/AboutView.h"
#include "settings/DetailsView.h"
#include "settings/EditorForm.h"
#include "settings/EntryList.h"
#include "settings/FilePanel.h"
#include "settings/WelcomeCard.h"
#include "store/ShortcutStore.h"
#include "viewkit/Alert.h"
#include "viewkit/ScrolledContent.h"
#include "viewkit/Sheet.h"

#include <QEvent>
#include <QLayout>
#include <QScreen>
#include <QShortcut>
#include <QStyle>
#include <memory>

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
/// The design's size.
constexpr QSize minViewSize(580, 480);
/// Chosen by eye: the part that scrolls can still be used.
constexpr int minContentHeight = 100;
/// More than an export of fifty thousand entries takes. Parsing JSON needs up to thirty times its
/// size in memory.
constexpr qint64 maxImportBytes = 16LL * 1024 * 1024;
constexpr QChar leftToRightMark(0x200E);
} // namespace

SettingsView::SettingsView(const Platform &platform, ShortcutStore &store)
    : m_platform(platform)
    , m_store(store)
{
    setBody(Column{
        toolbar(),
        divider(),
        content(),
        undoLine(),
        divider(),
        footer(),
        sheet(),
    });
    fitToContent();
    connect(new QShortcut(QKeySequence::Undo, this), &QShortcut::activated, this,
            &SettingsView::undo);
    connect(&platform.userDefaults, &UserDefaults::changed, this, &View::invalidate);
    connect(&store, &ShortcutStore::willChange, this, &View::invalidate);
}

Item SettingsView::content()
{
    Item content = Column{
        welcomeCard(m_platform.userDefaults, m_platform.wording),
        shownWhen([this] { return !hasEntries(); }, stretched(emptyState())),
        shownWhen([this] { return hasEntries(); }, stretched(entryList())),
    };
    m_content = new ScrolledContent(content.widget, minContentHeight);
    content.widget = m_content;
    return stretched(content);
}

Item SettingsView::toolbar()
{
    const Item add = button(u"Add"_s, u"plus"_s, [this] { addEntry(); });
    m_add = add.widget;
    return Row{
        padding(10),
        spacing(8),
        add,
        Spacer{},
        button(u"Import…"_s, [this] { importList(); }),
        enabledWhen([this] { return hasEntries(); },
                    button(u"Export…"_s, [this] { exportList(); })),
    };
}

Item SettingsView::entryList()
{
    m_list = new EntryList(
        m_store, [this](const LaunchEntry &entry) { openSheet(entry); },
        [this](const LaunchEntry &entry) { deleteEntry(entry); });
    return widget(m_list, [this] { m_list->refresh(); });
}

Item SettingsView::emptyState()
{
    return Column{
        padding(12),
        spacing(10),
        Spacer{},
        centred(tinted(TextColor::secondary, symbol(u"keyboard"_s, 40))),
        centred(text(TextStyle::title3, u"No shortcuts yet"_s)),
        centred(fixedWidth(
            360,
            tinted(TextColor::secondary,
                   paragraph(TextStyle::body,
                             u"Add a shortcut to open an app, folder, file or website, or run a "
                             "Shortcut, with one key combination."_s)))),
        centred(button(u"Add"_s, [this] { addEntry(); })),
        shownWhen([this] { return m_importMessage.has_value(); },
                  centred(announced(
                      tinted(TextColor::secondary,
                             text(TextStyle::caption,
                                  [this] { return m_importMessage.value_or(QString()); }))))),
        Spacer{},
    };
}

Item SettingsView::undoLine()
{
    const Item button = described([this] { return whatCanBeUndone(); },
                                  decisiveButton(u"Undo"_s, [this] { undo(); }));
    Item line = Column{
        divider(),
        Row{padding(12, 8), spacing(8), undoMessage(), Spacer{}, button},
    };
    // Otherwise the focus would move from the button to the next control, which does something
    // else.
    line.rules.append([this, button = button.widget] {
        if (!canUndo() && button->window()->focusWidget() == button)
            m_add->setFocus();
    });
    return shownWhen([this] { return canUndo(); }, line);
}

Item SettingsView::undoMessage()
{
    Item message = announced(shortenedText(TextStyle::body, [this] { return whatCanBeUndone(); }));
    // Hide the former message first: screen readers announce a message only when it appears.
    const auto shown = std::make_shared<std::optional<ShortcutStore::Undoable>>();
    message.rules.prepend([this, label = message.widget, shown] {
        const auto undoable = m_store.undoable();
        if (std::exchange(*shown, undoable) != undoable)
            label->hide();
    });
    return shownWhen([this] { return canUndo(); }, message);
}

QString SettingsView::whatCanBeUndone() const
{
    const auto undoable = m_store.undoable();
    if (!undoable)
        return {};
    if (!undoable->deleted)
        return u"The keys of all entries were removed."_s;
    const QString &name = undoable->deleted->name;
    if (name.isEmpty())
        return u"An entry was deleted."_s;
    // The sentence is English, whichever direction the name has.
    const QString mark = name.isRightToLeft() ? QString(leftToRightMark) : QString();
    return mark + u"%1 was deleted."_s.arg(quoted(name));
}

Item SettingsView::footer()
{
    return Column{
        padding(12),
        spacing(8),
        checkBox(u"Launch at login"_s,
                 {
                     .get = [this] { return m_launchAtLogin; },
                     .set = [this](bool on) { setLaunchAtLogin(on); },
                 }),
        shownWhen([this] { return m_loginNeedsApproval; }, approvalRow()),
        checkBox(u"Show a small notification when a shortcut runs"_s, showNotification()),
        shownWhen([this] { return m_platform.workspace.canActivate(); },
                  checkBox(u"Bring open apps to the front"_s, bringToFront())),
        checkBox(u"Show keys with Mac signs (⌃⌥⇧⌘)"_s, macKeySigns()),
        Row{
            spacing(8),
            button(u"Open Notification Settings"_s,
                   [this] { m_platform.systemSettings.openNotificationSettings(); }),
            Spacer{},
            button(u"About"_s, [this] { openSheet(About()); }),
            enabledWhen(
                [this] { return hasEntries(); },
                button(u"Reset all shortcuts…"_s, [this] { openSheet(ResetConfirmation()); })),
        },
        shownWhen([this] { return !reachOfKeys().isEmpty(); },
                  tinted(TextColor::secondary,
                         paragraph(TextStyle::caption, [this] { return reachOfKeys(); }))),
    };
}

/// How keys are registered, if that is out of the ordinary.
QString SettingsView::reachOfKeys() const
{
    switch (m_platform.hotkeys.reach()) {
    case HotkeyReach::nowhere:
        return u"This desktop does not let apps register key combinations. Bind its own keys to an "
               "entry instead."_s;
    case HotkeyReach::inDesktopSettings:
        return u"Key combinations are kept in this desktop's own keyboard settings."_s;
    case HotkeyReach::registered:
    case HotkeyReach::notAllowed:
    case HotkeyReach::unknown:
        return {};
    }
    Q_UNREACHABLE();
}

Item SettingsView::approvalRow()
{
    return Row{
        spacing(8),
        tinted(TextColor::warning, text(TextStyle::caption, m_platform.wording.loginItemIsOff())),
        styled(TextStyle::caption,
               button(m_platform.wording.openLoginItems(),
                      [this] { m_platform.systemSettings.openLoginItems(); })),
        Spacer{},
    };
}

Item SettingsView::sheet()
{
    const Item sheet = sheetFor<Subject>(
        this, [this] { return m_sheet; },
        [this](const Subject &subject, QWidget *owner) {
            return std::visit([&](const auto &about) { return makeSheet(about, owner); }, subject);
        });
    return {.rules = QList<Rule>{[this] { alertNextError(); }} + sheet.rules};
}

QDialog *SettingsView::makeSheet(const LaunchEntry &entry, QWidget *owner)
{
    auto *const form = new EditorForm(m_platform, m_store, entry, [this] { closeSheet(); });
    return new Sheet(
        form->title(), form, [form] { form->cancel(); }, owner);
}

QDialog *SettingsView::makeSheet(const About &, QWidget *owner)
{
    const auto close = [this] { closeSheet(); };
    return new Sheet(u"Corvane"_s, new AboutView(m_platform.wording, close), close, owner);
}

QDialog *SettingsView::makeSheet(const Details &details, QWidget *owner)
{
    const auto close = [this] { closeSheet(); };
    return new Sheet(u"Details"_s, new DetailsView(details.text, close), close, owner);
}

QDialog *SettingsView::makeSheet(const ResetConfirmation &, QWidget *owner)
{
    const auto cancel = [this] { closeSheet(); };
    return alert(
        {.title = u"Remove the keys from every shortcut?"_s,
         .message = u"Your entries stay in the list, but each one loses its key combination."_s,
         .buttons =
             Row{spacing(8), Spacer{},
                 destructiveButton(u"Reset all shortcuts"_s, [this] { resetAllShortcuts(); }),
                 defaultButton(u"Cancel"_s, cancel)},
         .cancel = cancel},
        owner);
}

QDialog *SettingsView::makeSheet(const AppError &error, QWidget *owner)
{
    const auto close = [this, error] {
        m_store.clearError(error);
        closeSheet();
    };
    const auto showDetails = [this, error] {
        m_store.clearError(error);
        m_sheet = Details{error.details};
        refresh();
    };
    return alert({.title = u"Something went wrong"_s,
                  .message = error.message,
                  .buttons = Row{spacing(8), Spacer{}, button(u"Show Details"_s, showDetails),
                                 defaultButton(u"OK"_s, close)},
                  .cancel = close},
                 owner);
}

/// Whether a sheet or panel is open. Only one is open at a time.
bool SettingsView::hasSheet() const
{
    return m_sheet || (m_panel && m_panel->isVisible());
}

void SettingsView::openSheet(const Subject &subject)
{
    if (hasSheet())
        return;
    m_sheet = subject;
    invalidate();
}

void SettingsView::closeSheet()
{
    m_sheet.reset();
    // Refresh at once: a recording must stop, and another sheet must not be taken for this one.
    refresh();
}

void SettingsView::addEntry()
{
    openSheet(LaunchEntry());
}

void SettingsView::deleteEntry(const LaunchEntry &entry)
{
    m_store.deleteEntry(entry);
    // Otherwise the focus would move from the last row to the next control, which does something
    // else.
    if (!hasEntries())
        m_add->setFocus();
}

void SettingsView::resetAllShortcuts()
{
    m_store.resetAllShortcuts();
    closeSheet();
}

void SettingsView::undo()
{
    // An open editor would store the combination that its entry had when it was opened.
    if (hasSheet())
        return;
    const auto undone = m_store.undoable();
    m_store.undo();
    if (undone && undone->deleted) {
        // The entry needs a row before it can have the focus.
        refresh();
        m_list->focusEntry(undone->deleted->id);
    }
}

/// Opens the alert for the store's first error once nothing else is open. It stays until the user
/// closes it, whatever else goes wrong meanwhile.
void SettingsView::alertNextError()
{
    // Window managers would show the alert alone and refuse to restore its minimized owner.
    if (hasSheet() || !isVisible() || window()->isMinimized())
        return;
    if (const auto error = m_store.error())
        m_sheet = *error;
}

void SettingsView::importList()
{
    open(FilePanel::Choosable::files, u"Import"_s, u"Open"_s,
         [this](const QString &path) { importFrom(path); });
}

void SettingsView::importFrom(const QString &path)
{
    const auto content = readWhole(path, maxImportBytes);
    const auto count = content ? m_store.importData(*content) : content.error();
    if (!count) {
        m_store.report(u"That file could not be imported. Is it a Corvane export?"_s,
                       count.error());
        return;
    }
    m_importMessage = u"Imported %1 shortcut%2."_s.arg(*count).arg(*count == 1 ? u""_s : u"s"_s);
    invalidate();
}

void SettingsView::exportList()
{
    open(FilePanel::Choosable::newJsonFile, u"Export"_s, u"Save"_s,
         [this](const QString &path) { exportTo(path); });
}

void SettingsView::exportTo(const QString &path)
{
    if (const auto error = replaceContent(path, m_store.exportData(), FileAccess::asUsual))
        m_store.report(u"The list could not be exported."_s, *error);
}

void SettingsView::open(FilePanel::Choosable choosable, const QString &title,
                        const QString &confirmingButton,
                        std::function<void(const QString &path)> onChoose)
{
    if (hasSheet())
        return;
    m_panel = new FilePanel(choosable, title, confirmingButton, std::move(onChoose), this);
    m_panel->setNameFilter(u"JSON files (*.json)"_s);
    m_panel->setAttribute(Qt::WA_DeleteOnClose);
    // Errors that were reported while the panel was open can be shown now.
    connect(m_panel, &QDialog::finished, this, &View::invalidate);
    m_panel->open();
}

void SettingsView::refreshLoginState()
{
    const LoginItemStatus status = m_platform.loginItem.status();
    m_launchAtLogin = status == LoginItemStatus::enabled;
    m_loginNeedsApproval = status == LoginItemStatus::requiresApproval;
    invalidate();
}

void SettingsView::setLaunchAtLogin(bool on)
{
    LoginItem &item = m_platform.loginItem;
    if (const auto error = on ? item.registerItem() : item.unregisterItem())
        m_store.report(u"Launch at login could not be changed."_s, *error);
    refreshLoginState();
}

bool SettingsView::hasEntries() const
{
    return !m_store.entries().isEmpty();
}

bool SettingsView::canUndo() const
{
    return m_store.undoable().has_value();
}

Binding<bool> SettingsView::showNotification()
{
    UserDefaults &defaults = m_platform.userDefaults;
    return {
        .get = [&defaults] { return ShortcutStore::showRunNotification(defaults); },
        .set = [&defaults](bool on) { defaults.setBoolean(DefaultsKeys::showRunNotification, on); },
    };
}

Binding<bool> SettingsView::bringToFront() const
{
    UserDefaults &defaults = m_platform.userDefaults;
    return {
        .get = [&defaults] { return ShortcutStore::bringToFront(defaults); },
        .set = [&defaults](bool on) { defaults.setBoolean(DefaultsKeys::bringToFront, on); },
    };
}

Binding<bool> SettingsView::macKeySigns()
{
    UserDefaults &defaults = m_platform.userDefaults;
    return {
        .get = [&defaults] { return ShortcutStore::showMacKeySigns(defaults); },
        .set =
            [this, &defaults](bool on) {
                defaults.setBoolean(DefaultsKeys::showMacKeySigns, on);
                // The menu shows keys too.
                m_store.announceChange();
            },
    };
}

/// Lets the user shrink the window only as far as its whole content remains visible. If the screen
/// is too low for that, some of the content scrolls.
void SettingsView::fitToContent()
{
    const int width = std::max(minViewSize.width(), layout()->totalMinimumSize().width());
    const int givenWidth = std::max(width, this->width());
    // The first is -1 while no text is shown that could wrap.
    const int least = std::max(layout()->totalMinimumHeightForWidth(givenWidth),
                               layout()->totalMinimumSize().height());
    const int whole = least - minContentHeight + m_content->neededHeight(givenWidth);
    const int room =
        screen()->availableSize().height() - style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const int height = std::min(std::max(minViewSize.height(), whole), room);
    setMinimumSize(width, std::max(height, least));
}

bool SettingsView::event(QEvent *event)
{
    const bool isHandled = View::event(event);
    switch (event->type()) {
    case QEvent::WindowActivate:
        // Files may have changed while the user was elsewhere, and so may the login item.
        refreshLoginState();
        break;
    case QEvent::LayoutRequest:
    case QEvent::Resize:
        fitToContent();
        break;
    default:
        break;
    }
    return isHandled;
}

void SettingsView::showEvent(QShowEvent *event)
{
    refreshLoginState();
    View::showEvent(event);
}
