// A row of the list: one entry with its problems and controls.
#pragma once

#include "model/LaunchEntry.h"
#include "viewkit/View.h"

#include <functional>
#include <optional>

class QGraphicsOpacityEffect;
class ShortcutStore;

class EntryRow : public viewkit::View
{
    Q_OBJECT

public:
    using EntryAction = std::function<void(const LaunchEntry &entry)>;

    /// The store must outlive the row. The row is blank until setEntry() is called.
    EntryRow(ShortcutStore &store, EntryAction onEdit, EntryAction onDelete, QWidget *parent);

    /// Shows the entry's current state; checks on disk whether its target exists, and collects its
    /// warnings.
    void setEntry(const LaunchEntry &entry);

    const LaunchEntry &entry() const { return m_entry; }

    /// Puts the focus on the Edit button.
    void focusEdit() { m_edit->setFocus(); }

private:
    viewkit::Item description();

    ShortcutStore &m_store;
    LaunchEntry m_entry;
    /// Why the entry's target is missing, if it is; determined once by each setEntry().
    std::optional<QString> m_missingReason;
    QString m_otherKeys;
    QGraphicsOpacityEffect *m_dimming;
    QWidget *m_edit = nullptr;
};
