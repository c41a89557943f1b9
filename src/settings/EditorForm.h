// The form in which the user adds or edits one entry.
#pragma once

#include "model/LaunchEntry.h"
#include "viewkit/View.h"

#include <functional>
#include <optional>

class EventMonitor;
class InstalledApplications;
class SharedApplication;
class ShortcutLibrary;
class ShortcutStore;
class SystemSettings;
class Wording;

class EditorForm : public viewkit::View
{
    Q_OBJECT

public:
    /// Edits an entry of the store, or a new one that is not in it yet. The callback closes the
    /// form. The store and the services must outlive the form.
    EditorForm(ShortcutStore &store, EventMonitor &eventMonitor,
               InstalledApplications &applications, ShortcutLibrary &shortcuts,
               const SharedApplication &application, SystemSettings &systemSettings,
               const Wording &wording, const LaunchEntry &entry, std::function<void()> onClose);

    QString title() const;

    /// Restores the entry's combination and closes the form.
    void cancel();

private:
    viewkit::Binding<QString> draft(QString LaunchEntry::*field);
    viewkit::Item targetField();
    viewkit::Item keysRow(EventMonitor &eventMonitor);
    viewkit::Item keyboardSettingsRow();
    bool areDesktopKeys() const;
    QString otherKeys() const;
    QString tip() const;
    bool isKind(ActionKind kind) const { return m_draft.kind == kind; }
    bool opensFile() const { return isKind(ActionKind::app) || isKind(ActionKind::path); }

    void setKind(ActionKind kind);
    void choose();
    void chosen(const QString &path);
    QString displayName(const QString &path) const;
    void copyCommand() const;
    void keysChanged(const std::optional<KeyboardShortcuts::Shortcut> &keys);
    std::optional<QString> validate() const;
    void save();
    void finish();

    ShortcutStore &m_store;
    InstalledApplications &m_applications;
    ShortcutLibrary &m_shortcuts;
    const SharedApplication &m_application;
    SystemSettings &m_systemSettings;
    const Wording &m_wording;
    const LaunchEntry m_original;
    const std::function<void()> m_onClose;
    LaunchEntry m_draft;
    std::optional<QString> m_message;
    QWidget *m_confirmButton = nullptr;
    bool m_isClosed = false;
    const bool m_isNew;
    const std::optional<KeyboardShortcuts::Shortcut> m_originalShortcut;
};
