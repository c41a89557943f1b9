// The list of entries. However long it is, only the rows in sight exist.
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

    /// Shows the store's entries as they are now, at the place to which the user has scrolled.
    void refresh();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    /// Rows by the index of the entry that they show.
    using Rows = QMap<qsizetype, EntryRow *>;

    /// The uppermost row of those that the user sees, and how far it reaches beyond the upper edge.
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

    EntryRow *makeRow();
    std::optional<qsizetype> targetRow(const QKeyEvent &press, qsizetype from) const;
    bool moveFocus(const QKeyEvent &press);
    std::optional<qsizetype> focusedIndex() const;

    ShortcutStore &m_store;
    const EntryRow::EntryAction m_onEdit;
    const EntryRow::EntryAction m_onDelete;
    QWidget *m_content;
    Rows m_rows;
    /// Those that show their entry as it is.
    QSet<EntryRow *> m_currentRows;
    /// The order in which the Tab key and screen readers meet the rows.
    QList<EntryRow *> m_order;

    /// Of the rows that have been shown, when they were last; others are taken to be typical.
    QHash<QUuid, int> m_heights;
    int m_typicalHeight = 0;
    /// Where each row begins, and where the last one ends.
    std::vector<int> m_tops{0};
    bool m_isLayingOut = false;
};
