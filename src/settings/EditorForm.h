// The form in which the user adds or edits one entry.
#pragma once

#include "model/LaunchEntry.h"
#include "viewkit/View.h"

#include <QTimer>
#include <functional>
#include <optional>

class ShortcutStore;
struct Platform;

class EditorForm : public viewkit::View
{
    Q_OBJECT

public:
    /// Edits an entry of the store, or a new one that is not in it yet. The callback closes the
    /// form. The platform and the store must outlive the form.
    EditorForm(const Platform &platform, ShortcutStore &store, const LaunchEntry &entry,
               std::function<void()> onClose);

    QString title() const;

    /// Restores the entry's combination and closes the form.
    void cancel();

protected:
    bool event(QEvent *event) override;

private:
    viewkit::Binding<QString> draft(QString LaunchEntry::*field);
    viewkit::Item targetField();
    viewkit::Item shortcutField();
    viewkit::Item newScriptSheet();
    viewkit::Item keysRow();
    viewkit::Item keyboardSettingsRow();
    bool areDesktopKeys() const;
    QString otherKeys() const;
    QString tip() const;
    bool isKind(ActionKind kind) const { return m_draft.kind == kind; }
    bool opensFile() const { return isKind(ActionKind::app) || isKind(ActionKind::path); }

    void setKind(ActionKind kind);
    void choose();
    void chosen(const QString &path);
    void askForScript();
    void stopAsking();
    void scriptCreated(const QString &name, const QString &path);
    void openNewScript();
    void openShortcutsFolder();
    void openToEdit(const QString &path, const QString &messageIfNot);
    void copyCommand() const;
    void keysChanged(const std::optional<KeyboardShortcuts::Shortcut> &keys);
    std::optional<QString> validate() const;
    void save();
    void finish();

    const Platform &m_platform;
    ShortcutStore &m_store;
    const LaunchEntry m_original;
    const std::function<void()> m_onClose;
    LaunchEntry m_draft;
    std::optional<QString> m_message;
    QWidget *m_confirmButton = nullptr;
    QWidget *m_shortcutField = nullptr;
    bool m_asksForScript = false;
    QString m_newScript;
    /// Runs until the new script is opened in the text editor. Window managers keep a window behind
    /// one that was used after its start, so the focus first has to be back from the closed sheet.
    QTimer m_focusSettles;
    bool m_isClosed = false;
    const bool m_isNew;
    const std::optional<KeyboardShortcuts::Shortcut> m_originalShortcut;
};
