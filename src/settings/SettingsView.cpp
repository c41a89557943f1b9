#include "settings/SettingsView.h"

#include "foundation/Files.h"
#include "platform/HotkeyService.h"
#include "platform/LoginItem.h"
#include "platform/Platform.h"
#include "platform/SharedApplication.h"
#include "platform/SystemSettings.h"
#include "platform/UserDefaults.h"
#include "platform/Wording.h"
#include "settings/AboutView.h"
#include "settings/DetailsView.h"
#include "settings/DropArea.h"
#include "settings/Drops.h"
#include "settings/EditorForm.h"
#include "settings/EntryList.h"
#include "settings/FilePanel.h"
#include "settings/Preferences.h"
#include "settings/UndoLine.h"
#include "settings/WelcomeCard.h"
#include "store/ShortcutStore.h"
#include "viewkit/Alert.h"
#include "viewkit/ScrolledContent.h"
#include "viewkit/Sheet.h"

#include <QEvent>
#include <QLayout>
#include <QLineEdit>
#include <QScreen>
#include <QShortcut>
#include <QShowEvent>
#include <QStyle>

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
} // namespace

SettingsView::SettingsView(const Platform &platform, ShortcutStore &store)
    : m_platform(platform)
    , m_store(store)
{
    setBody(Column{
        // Search before anything shows what is found.
        {.rules = {[this] { m_search.update(); }}},
        toolbar(),
        divider(),
        content(),
        undoLine(
            m_store, [this] { undo(); }, *m_add),
        divider(),
        footer(),
        sheet(),
    });
    new DropArea([this] { return !hasSheet(); },
                 [this](const QUrl &address) { addDropped(address); }, this);
    fitToContent();
    connect(new QShortcut(QKeySequence::Undo, this), &QShortcut::activated, this,
            &SettingsView::undo);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this,
            &SettingsView::focusSearch);
    connect(&platform.userDefaults, &UserDefaults::changed, this, &View::invalidate);
    connect(&store, &ShortcutStore::willChange, this, &View::invalidate);
}

Item SettingsView::content()
{
    Item content = Column{
        welcomeCard(m_platform.userDefaults, m_platform.wording),
        shownWhen([this] { return !hasEntries(); }, stretched(emptyState())),
        shownWhen([this] { return !m_search.found().isEmpty(); }, stretched(entryList())),
        shownWhen([this] { return hasEntries() && m_search.found().isEmpty(); },
                  stretched(nothingFound())),
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
        searchField(),
        Spacer{},
        button(u"Import…"_s, [this] { importList(); }),
        enabledWhen([this] { return hasEntries(); },
                    button(u"Export…"_s, [this] { exportList(); })),
    };
}

Item SettingsView::searchField()
{
    Item field = viewkit::searchField({
        .get = [this] { return m_search.text(); },
        .set = [this](const QString &text) { setSearch(text); },
    });
    m_searchField = qobject_cast<QLineEdit *>(field.widget);
    // A drop means the whole window.
    m_searchField->setAcceptDrops(false);
    // Otherwise the focus would move to the next control, which imports.
    field.rules.append([this] {
        if (window()->focusWidget() == m_searchField && !m_search.isOffered())
            m_add->setFocus();
    });
    field = onKey(
        Qt::Key_Escape, [this] { setSearch({}); }, field);
    field = onKey(
        Qt::Key_Down, [this] { focusFirstFound(); }, field);
    // Otherwise the field would keep Ctrl+Z from the entry that was deleted last.
    field = leavingKeys(
        QKeySequence::Undo, [this] { return m_store.undoable().has_value(); }, field);
    field = described([this] { return m_search.result(); }, field);
    return shownWhen([this] { return m_search.isOffered(); }, stretched(field));
}

Item SettingsView::entryList()
{
    m_list = new EntryList(
        m_store, [this](const LaunchEntry &entry) { openSheet(entry); },
        [this](const LaunchEntry &entry) { m_store.deleteEntry(entry); });
    return widget(m_list, [this] {
        // Otherwise the focus would move from the last row to the next control, which does
        // something else.
        if (m_search.found().isEmpty() && m_list->isAncestorOf(window()->focusWidget()))
            (hasEntries() ? m_searchField : m_add)->setFocus();
        m_list->refresh(m_search.found());
    });
}

Item SettingsView::nothingFound()
{
    return Column{
        Spacer{},
        centred(announced(
            tinted(TextColor::secondary, text(TextStyle::body, u"No shortcuts found"_s)))),
        Spacer{},
    };
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
        preferences(m_platform, m_store),
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

void SettingsView::addDropped(const QUrl &address)
{
    openSheet(Drops::entryFor(address, m_platform.installedApplications));
    m_platform.application.activateAfterDrop(*window());
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

void SettingsView::focusSearch()
{
    if (!m_search.isOffered())
        return;
    m_searchField->setFocus(Qt::ShortcutFocusReason);
    // A field that has the focus already would select nothing.
    m_searchField->selectAll();
}

void SettingsView::focusFirstFound()
{
    // The list may not yet show what has been typed last.
    refresh();
    m_list->focusFirst();
}

void SettingsView::setSearch(const QString &text)
{
    if (text == m_search.text())
        return;
    m_search.setText(text);
    m_list->scrollToTop();
    invalidate();
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
    // A spontaneous event only tells that the window is restored.
    if (!event->spontaneous())
        m_search.setText({});
    View::showEvent(event);
}
