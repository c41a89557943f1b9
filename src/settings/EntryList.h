// The list of entries. Only rows in or near the visible area and around the focus exist, however
// long the list is.
#pragma once

#include "settings/EntryRow.h"

#include <QHash>
#include <QMap>
#include <QScrollArea>
#include <QSet>
#include <optional>
#include <vector>

class EntryList : public QScrollArea
{
    Q_OBJECT

public:
    /// The store must outlive the list.
    EntryList(ShortcutStore &store, EntryRow::EntryAction onEdit, EntryRow::EntryAction onDelete);

    /// Shows these entries of the store and keeps the scroll position.
    void refresh(const QList<LaunchEntry> &entries);

    void scrollToTop();

    /// Scrolls to the entry and puts the focus on its Edit button; does nothing without such an
    /// entry.
    void focusEntry(const QUuid &id);

    /// Does the same for the first entry, if there is one.
    void focusFirst();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// Rows by the index of the entry that they show.
    using Rows = QMap<qsizetype, EntryRow *>;

    /// The topmost visible row, and how far it extends above the upper edge.
    struct Anchor {
        QUuid id;
        qsizetype index;
        int offset;
    };

    std::optional<Anchor> anchor() const;
    void scrollTo(const Anchor &anchor);

    void layOut();
    void showRows(std::optional<Anchor> place);
    bool showRowsInSight();
    QSet<qsizetype> wantedIndexes() const;
    void assignRows(QSet<qsizetype> wanted);
    void placeRows();
    void orderRows();

    int heightOf(const QUuid &id) const { return m_heights.value(id, m_typicalHeight); }
    void computeTops();
    qsizetype indexAt(int place) const;
    qsizetype placeOf(const QUuid &id, qsizetype former) const;
    bool shows(const QUuid &id) const;

    EntryRow *makeRow();
    std::optional<qsizetype> targetRow(const QKeyEvent &press, qsizetype from) const;
    bool moveFocus(const QKeyEvent &press);
    EntryRow *rowAt(qsizetype index, qsizetype from);
    std::optional<qsizetype> focusedIndex() const;

    ShortcutStore &m_store;
    const EntryRow::EntryAction m_onEdit;
    const EntryRow::EntryAction m_onDelete;
    QWidget *m_content;
    QList<LaunchEntry> m_entries;
    Rows m_rows;
    /// The rows that are up to date with their entries.
    QSet<EntryRow *> m_currentRows;
    /// The rows in the order in which the Tab key and screen readers reach them.
    QList<EntryRow *> m_order;

    /// The last known heights of rows that have been shown; other rows are assumed to have the
    /// typical height.
    QHash<QUuid, int> m_heights;
    int m_typicalHeight = 0;
    /// The top of each row, followed by the bottom of the last one.
    std::vector<int> m_tops{0};
    bool m_isLayingOut = false;
};
