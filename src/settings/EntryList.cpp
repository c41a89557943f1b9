#include "settings/EntryList.h"

#include "store/ShortcutStore.h"
#include "viewkit/AccessibleRole.h"
#include "viewkit/Layouts.h"

#include <QEvent>
#include <QKeyEvent>
#include <QResizeEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
/// Ends loops that would not converge: entries with the same id may need different heights.
constexpr int maxRounds = 20;
/// The space above the first row and below the last one.
constexpr int edgePadding = 5;

/// The row's focusable controls, in tab order.
QList<QWidget *> controlsOf(const EntryRow &row)
{
    QList<QWidget *> controls = row.findChildren<QWidget *>();
    controls.removeIf([](const QWidget *part) { return part->focusPolicy() == Qt::NoFocus; });
    return controls;
}
} // namespace

EntryList::EntryList(ShortcutStore &store, EntryRow::EntryAction onEdit,
                     EntryRow::EntryAction onDelete)
    : m_store(store)
    , m_onEdit(std::move(onEdit))
    , m_onDelete(std::move(onDelete))
    , m_content(new QWidget)
{
    setAccessibleRole(*m_content, QAccessible::List);
    m_content->setAccessibleName(u"Shortcuts"_s);
    setFrameShape(NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setBackgroundRole(QPalette::Base);
    setWidget(m_content);
    connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &EntryList::layOut);
}

void EntryList::refresh(const QList<LaunchEntry> &entries)
{
    const QScopedValueRollback guard(m_isLayingOut, true);
    const auto place = anchor();
    m_entries = entries;
    m_currentRows.clear();
    computeTops();
    if (place)
        scrollTo(*place);
    showRows(place);
}

void EntryList::layOut()
{
    if (m_isLayingOut)
        return;
    const QScopedValueRollback guard(m_isLayingOut, true);
    showRows(anchor());
}

std::optional<EntryList::Anchor> EntryList::anchor() const
{
    const int place = verticalScrollBar()->value();
    // At the very top there is nothing to anchor.
    if (place == 0)
        return std::nullopt;
    const auto row = m_rows.lowerBound(indexAt(place));
    if (row == m_rows.end() || m_tops[size_t(row.key())] >= place + viewport()->height())
        return std::nullopt;
    return Anchor{row.value()->entry().id, row.key(), place - m_tops[size_t(row.key())]};
}

void EntryList::scrollTo(const Anchor &anchor)
{
    const qsizetype index = placeOf(anchor.id, anchor.index);
    verticalScrollBar()->setValue(m_tops[size_t(index)] + anchor.offset);
}

/// Shows the rows in sight. A row's height is known only once the row is laid out, and may bring
/// other rows into sight. Meanwhile what the user sees keeps its position.
void EntryList::showRows(std::optional<Anchor> place)
{
    QScrollBar &bar = *verticalScrollBar();
    const bool isAtEnd = bar.value() > 0 && bar.value() == bar.maximum();
    for (int round = 0; showRowsInSight() && round < maxRounds; ++round) {
        computeTops();
        if (isAtEnd)
            bar.setValue(bar.maximum());
        else if (place)
            scrollTo(*place);
        else
            place = anchor();
    }
    placeRows();
    orderRows();
}

/// Returns whether a row's height differs from the assumed one.
bool EntryList::showRowsInSight()
{
    assignRows(wantedIndexes());
    const int lowerEdge = verticalScrollBar()->value() + viewport()->height();
    int bottom = m_rows.isEmpty() ? 0 : m_tops[size_t(m_rows.firstKey())];
    bool isSurprised = false;
    for (auto item = m_rows.cbegin(); item != m_rows.cend(); ++item) {
        // Rows turned out higher than assumed. The rows below may not be needed, and each may have
        // many warnings.
        if (isSurprised && bottom > lowerEdge)
            break;
        EntryRow *const row = item.value();
        if (!m_currentRows.contains(row)) {
            row->setEntry(m_entries.at(item.key()));
            m_currentRows.insert(row);
        }
        const int height = settledHeight(*row, viewport()->width());
        isSurprised |= height != heightOf(row->entry().id);
        m_heights.insert(row->entry().id, height);
        bottom += height;
    }
    return isSurprised;
}

/// The visible rows and the one with the focus, plus one row on either side, which the Tab key can
/// reach.
QSet<qsizetype> EntryList::wantedIndexes() const
{
    QSet<qsizetype> wanted;
    const auto want = [&](qsizetype first, qsizetype last) {
        const qsizetype end = std::min(last + 2, m_entries.size());
        for (qsizetype index = std::max<qsizetype>(first - 1, 0); index < end; ++index)
            wanted.insert(index);
    };
    const int place = verticalScrollBar()->value();
    want(indexAt(place), indexAt(place + viewport()->height()));
    if (const auto focused = focusedIndex()) {
        const qsizetype index = placeOf(m_rows.value(*focused)->entry().id, *focused);
        want(index, index);
    }
    return wanted;
}

void EntryList::assignRows(QSet<qsizetype> wanted)
{
    const auto focused = focusedIndex();
    Rows former = std::exchange(m_rows, {});
    const auto assign = [&](qsizetype index, EntryRow *row) {
        if (row->entry() != m_entries.at(index))
            m_currentRows.remove(row);
        m_rows.insert(index, row);
        wanted.remove(index);
    };
    // If the focused entry was removed, its row is reused for the next entry, so the focus stays in
    // place.
    if (focused && !m_entries.isEmpty() && !shows(former.value(*focused)->entry().id))
        assign(std::min(*focused, m_entries.size() - 1), former.take(*focused));
    for (auto item = former.begin(); item != former.end();) {
        const auto same = std::ranges::find_if(wanted, [&](qsizetype index) {
            return m_entries.at(index).id == item.value()->entry().id;
        });
        if (same == wanted.end()) {
            ++item;
            continue;
        }
        assign(*same, item.value());
        item = former.erase(item);
    }
    QList<EntryRow *> spare = former.values();
    for (const qsizetype index : QSet(wanted))
        assign(index, spare.isEmpty() ? makeRow() : spare.takeLast());
    for (EntryRow *const row : std::as_const(spare)) {
        m_currentRows.remove(row);
        row->hide();
        // Delete the row later: the event that scrolled it away may have come through it.
        row->deleteLater();
    }
}

void EntryList::placeRows()
{
    for (auto item = m_rows.cbegin(); item != m_rows.cend(); ++item) {
        const int top = m_tops[size_t(item.key())];
        item.value()->setGeometry(0, top, viewport()->width(),
                                  m_tops[size_t(item.key()) + 1] - top);
        item.value()->show();
    }
}

void EntryList::orderRows()
{
    if (m_order == m_rows.values())
        return;
    m_order = m_rows.values();
    // Qt's tab order accepts only focusable widgets as predecessors.
    m_content->setFocusPolicy(Qt::TabFocus);
    QWidget *previous = m_content;
    for (EntryRow *const row : std::as_const(m_order)) {
        row->raise();
        for (QWidget *const control : controlsOf(*row)) {
            setTabOrder(previous, control);
            previous = control;
        }
    }
    m_content->setFocusPolicy(Qt::NoFocus);
}

void EntryList::computeTops()
{
    if (m_typicalHeight == 0 && !m_entries.isEmpty()) {
        const std::unique_ptr<EntryRow> row(makeRow());
        row->setEntry({.kind = ActionKind::website});
        m_typicalHeight = settledHeight(*row, viewport()->width());
    }
    m_tops.assign(1, edgePadding);
    for (const LaunchEntry &entry : std::as_const(m_entries))
        m_tops.push_back(m_tops.back() + heightOf(entry.id));
    m_content->resize(viewport()->width(), m_tops.back() + edgePadding);
}

/// The row at this distance from the top of the content; -1 above the first row, the row count
/// below the last one.
qsizetype EntryList::indexAt(int place) const
{
    return std::ranges::upper_bound(m_tops, place) - m_tops.begin() - 1;
}

/// The current index of the entry that was at the former index. If the entry is gone: the former
/// index, but at most the end of the list.
qsizetype EntryList::placeOf(const QUuid &id, qsizetype former) const
{
    if (former < m_entries.size() && m_entries.at(former).id == id)
        return former;
    const auto found = std::ranges::find(m_entries, id, &LaunchEntry::id);
    return found == m_entries.end() ? std::min(former, m_entries.size())
                                    : found - m_entries.begin();
}

bool EntryList::shows(const QUuid &id) const
{
    return std::ranges::find(m_entries, id, &LaunchEntry::id) != m_entries.end();
}

EntryRow *EntryList::makeRow()
{
    auto *const row = new EntryRow(m_store, m_onEdit, m_onDelete, m_content);
    for (QWidget *const control : controlsOf(*row))
        control->installEventFilter(this);
    return row;
}

/// The row to which the key moves the focus. The index may be out of range.
std::optional<qsizetype> EntryList::targetRow(const QKeyEvent &press, qsizetype from) const
{
    if (press.modifiers() & ~Qt::KeypadModifier)
        return std::nullopt;
    const int place = m_tops[size_t(from)];
    const int page = viewport()->height();
    switch (press.key()) {
    case Qt::Key_Up:
        return from - 1;
    case Qt::Key_Down:
        return from + 1;
    case Qt::Key_PageUp:
        return std::min(indexAt(place - page) + 1, from - 1);
    case Qt::Key_PageDown:
        return std::max(indexAt(place + page), from + 1);
    case Qt::Key_Home:
        return 0;
    case Qt::Key_End:
        return indexAt(m_tops.back());
    default:
        return std::nullopt;
    }
}

/// Moves the focus to the same control of another row, if the key is one that does so.
bool EntryList::moveFocus(const QKeyEvent &press)
{
    const auto from = focusedIndex();
    const auto to = from ? targetRow(press, *from) : std::nullopt;
    if (!to)
        return false;
    const auto index = std::clamp<qsizetype>(*to, 0, qsizetype(m_tops.size()) - 2);
    const auto control = controlsOf(*m_rows.value(*from)).indexOf(window()->focusWidget());
    if (EntryRow *const row = rowAt(index, *from)) {
        controlsOf(*row).at(control)->setFocus(Qt::TabFocusReason);
        // Some styles show the focus only with this attribute, which Qt sets only for arrow keys
        // and Tab.
        window()->setAttribute(Qt::WA_KeyboardFocusChange);
        ensureWidgetVisible(row, 0, edgePadding);
    }
    return true;
}

/// The row of an entry, scrolled to if it does not exist yet, coming from the other index; null if
/// it cannot be reached.
EntryRow *EntryList::rowAt(qsizetype index, qsizetype from)
{
    for (int round = 0; !m_rows.contains(index) && round < maxRounds; ++round) {
        const int top = m_tops[size_t(index)];
        const int bottom = m_tops[size_t(index) + 1];
        verticalScrollBar()->setValue(index < from ? top : bottom - viewport()->height());
    }
    return m_rows.value(index);
}

void EntryList::scrollToTop()
{
    verticalScrollBar()->setValue(0);
}

void EntryList::focusFirst()
{
    if (!m_entries.isEmpty())
        focusEntry(m_entries.constFirst().id);
}

void EntryList::focusEntry(const QUuid &id)
{
    if (!shows(id))
        return;
    if (EntryRow *const row = rowAt(placeOf(id, 0), indexAt(verticalScrollBar()->value()))) {
        row->focusEdit();
        ensureWidgetVisible(row, 0, edgePadding);
    }
}

std::optional<qsizetype> EntryList::focusedIndex() const
{
    const QWidget *const focus = window()->focusWidget();
    for (auto item = m_rows.cbegin(); item != m_rows.cend(); ++item) {
        if (focus && item.value()->isAncestorOf(focus))
            return item.key();
    }
    return std::nullopt;
}

bool EntryList::eventFilter(QObject *watched, QEvent *event)
{
    // A row needs another height.
    if (watched == m_content && event->type() == QEvent::LayoutRequest)
        layOut();
    if (event->type() == QEvent::KeyPress && moveFocus(*static_cast<QKeyEvent *>(event)))
        return true;
    return QScrollArea::eventFilter(watched, event);
}

void EntryList::resizeEvent(QResizeEvent *event)
{
    QScrollArea::resizeEvent(event);
    m_content->resize(viewport()->width(), m_tops.back() + edgePadding);
    layOut();
}
