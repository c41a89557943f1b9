// The installed applications that match a search, for a list view.
#pragma once

#include "platform/InstalledApplications.h"

#include <QAbstractListModel>
#include <QColor>
#include <QIcon>
#include <optional>
#include <vector>

class ApplicationList final : public QAbstractListModel
{
    Q_OBJECT

public:
    /// Shows all applications, in the given order.
    explicit ApplicationList(const QList<InstalledApplication> &applications);

    /// Shows the applications that have every word of the text in their name or keywords, with
    /// those whose name begins with the text first. Shows all if the text has no word.
    void search(const QString &text);

    /// Sets the colour of the fallback icon.
    void setSymbolColor(const QColor &color);

    /// The path of the application's .desktop file.
    QString path(const QModelIndex &index) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    struct Row {
        InstalledApplication application;
        /// The name and all searchable words, folded for comparison.
        QString name;
        QString words;
        /// Loaded when the row first becomes visible, because loading hundreds takes long. A null
        /// icon if the application has none.
        mutable std::optional<QIcon> icon = std::nullopt;
    };

    const Row &row(const QModelIndex &index) const { return *m_shown.at(size_t(index.row())); }
    QIcon icon(const Row &row) const;

    std::vector<Row> m_rows;
    std::vector<const Row *> m_shown;
    QColor m_symbolColor;
    QIcon m_symbol;
};
