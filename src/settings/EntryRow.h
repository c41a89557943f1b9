// One entry in the list: what it is, what is wrong with it, and what can be done with it.
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

    /// The store must outlive the row. The row shows an entry once it has been given one.
    EntryRow(ShortcutStore &store, EntryAction onEdit, EntryAction onDelete, QWidget *parent);

    /// Shows the entry as it is now; asks the disk and the desktop about it.
    void setEntry(const LaunchEntry &entry);

    const LaunchEntry &entry() const { return m_entry; }

private:
    viewkit::Item description();
    QStringList warnings() const;

    ShortcutStore &m_store;
    LaunchEntry m_entry;
    /// Of the entry shown; asked for once for each time that it is shown.
    std::optional<QString> m_missingReason;
    QGraphicsOpacityEffect *m_dimming;
};
