#include "settings/SettingsView.h"

#include "model/ShortcutStore.h"
#include "settings/EditorForm.h"
#include "settings/EntryList.h"
#include "viewkit/Sheet.h"

#include <QEvent>

using namespace Qt::StringLiterals;

namespace
{
constexpr QSize smallestSize(580, 480);
}

SettingsView::SettingsView(ShortcutStore &store)
    : m_store(store)
{
    setMinimumSize(smallestSize);
    const auto hasEntries = [this] { return !m_store.entries().isEmpty(); };
    const auto hasNoEntries = [this] { return m_store.entries().isEmpty(); };
    setBody(Column{
        toolbar(),
        divider(),
        shownWhen(hasNoEntries, stretched(emptyState())),
        shownWhen(hasEntries, stretched(entryList())),
        editorSheet(),
    });
    connect(&store, &ShortcutStore::willChange, this, &View::invalidate);
}

Item SettingsView::toolbar()
{
    return Row{
        padding(10),
        button(u"Add"_s, u"plus"_s, [this] { addEntry(); }),
        Spacer{},
    };
}

Item SettingsView::entryList()
{
    auto *const list = new EntryList(
        m_store, [this](const LaunchEntry &entry) { edit(entry); },
        [this](const LaunchEntry &entry) { m_store.deleteEntry(entry); });
    return part(list, [list] { list->refresh(); });
}

Item SettingsView::emptyState()
{
    return Column{
        spacing(10),
        Spacer{},
        centred(inked(Ink::secondary, symbol(u"keyboard"_s, 40))),
        centred(text(TextStyle::title3, u"No shortcuts yet"_s)),
        centred(framed(
            360,
            inked(Ink::secondary,
                  paragraph(TextStyle::body,
                            u"Add a shortcut to open an app, folder, file or website, or run a "
                            "Shortcut, with one key combination."_s)))),
        centred(button(u"Add"_s, [this] { addEntry(); })),
        Spacer{},
    };
}

Item SettingsView::editorSheet()
{
    const auto isEditing = [this] { return m_editing.has_value(); };
    return sheetWhen(this, isEditing, [this](QWidget *owner) {
        auto *const form = new EditorForm(m_store, *m_editing, [this] { closeEditor(); });
        return new Sheet(
            form->title(), form, [form] { form->cancel(); }, owner);
    });
}

void SettingsView::addEntry()
{
    edit(LaunchEntry());
}

void SettingsView::edit(const LaunchEntry &entry)
{
    m_editing = entry;
    invalidate();
}

void SettingsView::closeEditor()
{
    m_editing.reset();
    // Now: a recording must not go on, nor another sheet be taken for this one.
    refresh();
}

bool SettingsView::event(QEvent *event)
{
    // Files may have come and gone while the user was elsewhere.
    if (event->type() == QEvent::WindowActivate)
        invalidate();
    return View::event(event);
}
