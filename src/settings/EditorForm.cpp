#include "settings/EditorForm.h"

#include "actions/ActionRunner.h"
#include "foundation/Text.h"
#include "platform/Platform.h"
#include "platform/SharedApplication.h"
#include "platform/ShortcutLibrary.h"
#include "platform/SystemSettings.h"
#include "platform/Wording.h"
#include "platform/Workspace.h"
#include "settings/ApplicationPanel.h"
#include "settings/FilePanel.h"
#include "settings/NewScriptForm.h"
#include "settings/Recorder.h"
#include "settings/Targets.h"
#include "settings/WarningLines.h"
#include "store/ShortcutStore.h"
#include "viewkit/Sheet.h"

#include <QClipboard>
#include <QEvent>
#include <QFileInfo>
#include <QGuiApplication>
#include <QPointer>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using namespace viewkit;

namespace
{
/// The design's width.
constexpr int formWidth = 460;

/// Window managers may move the focus to and fro when a sheet closes. That takes some milliseconds,
/// and far longer on a busy computer.
constexpr auto focusSettlesIn = 250ms;

QStringList kindTitles()
{
    QStringList titles;
    for (const ActionKind kind : ActionKinds::allCases)
        titles << title(kind);
    return titles;
}

/// Whether the text has only tabs and spaces. A line break is not blank.
bool isBlank(const QString &text)
{
    return std::ranges::all_of(text, [](QChar character) {
        return character == u'\t' || character.category() == QChar::Separator_Space;
    });
}
} // namespace

EditorForm::EditorForm(const Platform &platform, ShortcutStore &store, const LaunchEntry &entry,
                       std::function<void()> onClose)
    : m_platform(platform)
    , m_store(store)
    , m_original(entry)
    , m_onClose(std::move(onClose))
    , m_draft(entry)
    , m_isNew(!store.contains(entry.id))
    , m_originalShortcut(store.getShortcut(entry.shortcutName()))
{
    const Item confirmButton = defaultButton(m_isNew ? u"Add"_s : u"Save"_s, [this] { save(); });
    m_confirmButton = confirmButton.widget;
    setMinimumWidth(formWidth);
    setBody(Column{
        padding(20),
        spacing(14),
        text(TextStyle::title2, title()),
        textField(u"Name"_s, u"Name"_s, draft(&LaunchEntry::name)),
        picker(u"Action"_s, kindTitles(),
               {
                   .get = [this] { return int(m_draft.kind); },
                   .set = [this](int index) { setKind(ActionKinds::allCases.at(index)); },
               }),
        targetField(),
        keysRow(),
        announcedWarningLines(
            TextStyle::callout,
            [this] { return m_store.warnings(m_draft.shortcutName(), m_draft.id); }),
        keyboardSettingsRow(),
        shownWhen([this] { return !otherKeys().isEmpty(); },
                  announced(tinted(TextColor::secondary,
                                   paragraph(TextStyle::callout, [this] { return otherKeys(); })))),
        tinted(TextColor::secondary, paragraph(TextStyle::caption, [this] { return tip(); })),
        shownWhen([this] { return m_message.has_value(); },
                  announced(tinted(TextColor::error,
                                   paragraph(TextStyle::callout,
                                             [this] { return m_message.value_or(QString()); })))),
        Row{
            spacing(8),
            Spacer{},
            button(u"Cancel"_s, [this] { cancel(); }),
            confirmButton,
        },
    });
    m_focusSettles.setSingleShot(true);
    m_focusSettles.setInterval(focusSettlesIn);
    m_focusSettles.callOnTimeout(this, &EditorForm::openNewScript);
    connect(&store, &ShortcutStore::willChange, this, &View::invalidate);
}

QString EditorForm::title() const
{
    return m_isNew ? u"New shortcut"_s : u"Edit shortcut"_s;
}

Binding<QString> EditorForm::draft(QString LaunchEntry::*field)
{
    return {
        .get = [this, field] { return m_draft.*field; },
        .set = [this, field](const QString &text) { m_draft.*field = text; },
    };
}

Item EditorForm::targetField()
{
    const auto isAbsent = [this] { return m_draft.target.isEmpty(); };
    const auto isChosen = [this] { return !m_draft.target.isEmpty(); };
    return Column{
        shownWhen(
            [this] { return opensFile(); },
            Row{
                spacing(8),
                shownWhen(isAbsent,
                          tinted(TextColor::secondary, text(TextStyle::body, u"Nothing chosen"_s))),
                shownWhen(
                    isChosen,
                    shortenedText(TextStyle::body, [this] { return m_draft.targetDescription(); })),
                Spacer{},
                button(u"Choose…"_s, [this] { choose(); }),
            }),
        shownWhen([this] { return isKind(ActionKind::website); },
                  textField(u"Website"_s, u"https://example.com"_s, draft(&LaunchEntry::target))),
        shownWhen([this] { return isKind(ActionKind::shortcut); }, shortcutField()),
    };
}

Item EditorForm::shortcutField()
{
    const Item field = suggesting(
        [this] { return m_platform.shortcutLibrary.names(); },
        textField(u"Shortcut"_s, m_platform.wording.nameOfShortcut(), draft(&LaunchEntry::target)));
    m_shortcutField = field.widget;
    // Beside the buttons the field would be too short for its placeholder.
    return Column{
        spacing(8),
        field,
        Row{
            spacing(8),
            Spacer{},
            button(u"New…"_s, [this] { askForScript(); }),
            button(u"Open Folder"_s, [this] { openShortcutsFolder(); }),
        },
        newScriptSheet(),
    };
}

Item EditorForm::newScriptSheet()
{
    const auto make = [this](QWidget *owner) {
        const QString typed = m_draft.target.trimmed();
        const bool isFree = !m_platform.shortcutLibrary.names().contains(typed);
        const auto cancel = [this] { stopAsking(); };
        auto *const form = new NewScriptForm(
            m_platform.shortcutLibrary, isFree ? typed : QString(),
            [this](const QString &name, const QString &path) { scriptCreated(name, path); },
            cancel);
        return new Sheet(NewScriptForm::title(), form, cancel, owner);
    };
    return sheetWhen(
        this, [this] { return m_asksForScript; }, make);
}

Item EditorForm::keysRow()
{
    return Row{
        spacing(8),
        text(TextStyle::body, u"Keys"_s),
        shownWhen([this] { return !m_store.canRegisterKeys(); },
                  button(u"Copy Command"_s, [this] { copyCommand(); })),
        stretched(widget(new KeyboardShortcuts::Recorder(
            m_store, m_platform.eventMonitor, m_draft.shortcutName(),
            [this](const auto &keys) { keysChanged(keys); }))),
    };
}

Item EditorForm::keyboardSettingsRow()
{
    Item settings = button(u"Keyboard Settings"_s,
                           [this] { m_platform.systemSettings.openKeyboardSettings(); });
    // Otherwise the focus would move from the button to the next control, which cancels.
    settings.rules.append([this, widget = settings.widget] {
        if (widget->window()->focusWidget() == widget && !areDesktopKeys())
            m_confirmButton->setFocus();
    });
    return shownWhen([this] { return areDesktopKeys(); }, Row{settings, Spacer{}});
}

bool EditorForm::areDesktopKeys() const
{
    return m_store.areDesktopKeys(m_draft.shortcutName());
}

QString EditorForm::otherKeys() const
{
    return m_store.otherKeys(m_draft.shortcutName());
}

QString EditorForm::tip() const
{
    return u"Tip: include %1 so the combination does not clash with typing."_s.arg(
        m_store.keyWording().requiredModifiers());
}

void EditorForm::setKind(ActionKind kind)
{
    if (kind == m_draft.kind)
        return;
    m_draft.kind = kind;
    m_draft.target.clear();
    m_message.reset();
    m_asksForScript = false;
    invalidate();
}

void EditorForm::choose()
{
    const auto use = [this](const QString &path) { chosen(path); };
    QDialog *panel = nullptr;
    if (isKind(ActionKind::app))
        panel = new ApplicationPanel(m_platform.installedApplications, use, this);
    else
        panel = new FilePanel(FilePanel::Choosable::filesAndFolders, u"Choose"_s, u"Choose"_s, use,
                              this);
    panel->setAttribute(Qt::WA_DeleteOnClose);
    panel->open();
}

void EditorForm::chosen(const QString &path)
{
    m_draft.target = path;
    if (isBlank(m_draft.name))
        m_draft.name = nameOfTarget(m_draft.kind, path, m_platform.installedApplications);
    invalidate();
}

void EditorForm::askForScript()
{
    m_asksForScript = true;
    refresh();
}

void EditorForm::stopAsking()
{
    m_asksForScript = false;
    refresh();
}

void EditorForm::scriptCreated(const QString &name, const QString &path)
{
    m_draft.target = name;
    if (isBlank(m_draft.name))
        m_draft.name = name;
    m_message.reset();
    m_newScript = path;
    stopAsking();
    m_shortcutField->setFocus();
    m_focusSettles.start();
}

bool EditorForm::event(QEvent *event)
{
    if (event->type() == QEvent::WindowActivate && m_focusSettles.isActive())
        m_focusSettles.start();
    return View::event(event);
}

void EditorForm::openNewScript()
{
    m_focusSettles.stop();
    openToEdit(m_newScript, u"The script was made, but no text editor could be opened."_s);
}

void EditorForm::openShortcutsFolder()
{
    const auto path = m_platform.shortcutLibrary.folder();
    if (path)
        openToEdit(*path, u"Your shortcuts folder could not be opened."_s);
    else
        say(m_message, path.error().description);
}

void EditorForm::openToEdit(const QString &path, const QString &messageIfNot)
{
    // The answer may come after the form has been closed.
    m_platform.workspace.openToEdit(path, [form = QPointer(this), messageIfNot](bool isOpened) {
        if (form && !isOpened)
            form->say(form->m_message, messageIfNot);
    });
}

void EditorForm::copyCommand() const
{
    QGuiApplication::clipboard()->setText(m_platform.application.fireCommand(m_draft.id));
}

void EditorForm::keysChanged(const std::optional<KeyboardShortcuts::Shortcut> &keys)
{
    // On some desktops Return presses the focused button, which would start another recording.
    if (keys)
        m_confirmButton->setFocus();
    // The list behind the sheet and the menu show the combination too.
    m_store.announceChange();
}

std::optional<QString> EditorForm::validate() const
{
    const QString target = m_draft.target.trimmed();
    if (m_draft.name.trimmed().isEmpty())
        return u"Please give this shortcut a name."_s;
    if (opensFile() && target.isEmpty())
        return u"Choose what to open."_s;
    if (opensFile() && !QFileInfo::exists(target))
        return u"That item could not be found."_s;
    if (isKind(ActionKind::website) && !ActionRunner::isValidWebsite(target))
        return u"The website must start with http:// or https://"_s;
    if (isKind(ActionKind::shortcut) && target.isEmpty())
        return u"Enter the name of the Shortcut to run."_s;
    // Where no keys can be registered, the desktop's own keys run the entry.
    if (m_store.canRegisterKeys() && !m_store.getShortcut(m_draft.shortcutName()))
        return u"Click the key box and press a key combination."_s;
    return std::nullopt;
}

void EditorForm::save()
{
    if (m_isClosed)
        return;
    if (const auto message = validate()) {
        say(m_message, *message);
        return;
    }
    LaunchEntry entry = m_draft;
    entry.name = entry.name.trimmed();
    entry.target = entry.target.trimmed();
    m_store.upsert(entry);
    finish();
}

void EditorForm::cancel()
{
    if (m_isClosed)
        return;
    // Leave an unchanged combination alone, even if it cannot be read.
    const KeyboardShortcuts::Name name = m_original.shortcutName();
    if (m_store.getShortcut(name) != m_originalShortcut)
        m_store.setShortcut(m_originalShortcut, name);
    m_store.announceChange();
    finish();
}

/// Closes the form. Later keys and clicks have no effect.
void EditorForm::finish()
{
    m_isClosed = true;
    if (m_focusSettles.isActive())
        openNewScript();
    m_onClose();
}
