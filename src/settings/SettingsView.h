// The whole content of the settings window.
#pragma once

#include "model/LaunchEntry.h"
#include "viewkit/View.h"

#include <optional>

class ShortcutStore;

class SettingsView : public View
{
    Q_OBJECT

public:
    /// The store must outlive it.
    explicit SettingsView(ShortcutStore &store);

protected:
    bool event(QEvent *event) override;

private:
    Item toolbar();
    Item entryList();
    Item emptyState();
    Item editorSheet();
    void addEntry();
    void edit(const LaunchEntry &entry);
    void closeEditor();

    ShortcutStore &m_store;
    /// The entry whose editor is open.
    std::optional<LaunchEntry> m_editing;
};
