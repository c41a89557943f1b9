#include "settings/ApplicationList.h"

#include "foundation/Text.h"
#include "foundation/WordSearch.h"
#include "symbols/SystemSymbol.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{
/// The themed icon; null if it does not exist.
QIcon loadedIcon(const QString &icon)
{
    const QIcon loaded = icon.isEmpty() ? QIcon() : QIcon::fromTheme(icon);
    return loaded.availableSizes().isEmpty() ? QIcon() : loaded;
}
} // namespace

ApplicationList::ApplicationList(const QList<InstalledApplication> &applications)
{
    m_rows.reserve(size_t(applications.size()));
    for (const InstalledApplication &application : applications) {
        const QStringList words = QStringList(application.name) + application.keywords;
        m_rows.push_back({application, WordSearch::folded(application.name),
                          WordSearch::folded(words.join(u'\n'))});
    }
    search({});
}

void ApplicationList::search(const QString &text)
{
    const WordSearch search(text);
    beginResetModel();
    m_shown.clear();
    for (const Row &row : m_rows) {
        if (search.finds(row.words))
            m_shown.push_back(&row);
    }
    std::stable_partition(m_shown.begin(), m_shown.end(),
                          [wanted = WordSearch::folded(text)](const Row *row) {
                              return row->name.startsWith(wanted);
                          });
    endResetModel();
}

void ApplicationList::setSymbolColor(const QColor &color)
{
    if (color == m_symbolColor)
        return;
    m_symbolColor = color;
    m_symbol = systemSymbol(u"app.badge"_s, color);
}

QString ApplicationList::path(const QModelIndex &index) const
{
    return row(index).application.path;
}

int ApplicationList::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_shown.size());
}

QVariant ApplicationList::data(const QModelIndex &index, int role) const
{
    switch (role) {
    case Qt::DisplayRole:
        return onOneLine(row(index).application.name);
    case Qt::DecorationRole:
        return icon(row(index));
    case Qt::ToolTipRole:
        // The path distinguishes applications with the same name.
        return QString(u"<span>"_s + path(index).toHtmlEscaped() + u"</span>"_s);
    default:
        return {};
    }
}

QIcon ApplicationList::icon(const Row &row) const
{
    if (!row.icon) {
        row.icon = loadedIcon(row.application.icon);
        if (row.icon->isNull())
            row.icon = loadedIcon(u"application-x-executable"_s);
    }
    return row.icon->isNull() ? m_symbol : *row.icon;
}
