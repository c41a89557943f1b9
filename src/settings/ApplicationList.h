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
    /// All applications, in that order.
    explicit ApplicationList(const QList<InstalledApplication> &applications);

    /// Keeps those that have every word of the text in their name or keywords, and puts those
    /// whose name begins with the text first. All if the text has no word.
    void search(const QString &text);

    /// Of the image of applications without an icon.
    void setSymbolColor(const QColor &color);

    /// Of the application's .desktop file.
    QString path(const QModelIndex &index) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;

private:
    struct Row {
        InstalledApplication application;
        /// As they are compared with what is searched.
        QString name;
        QString words;
        /// Read when the row is first in sight: that takes long for hundreds. A null one where
        /// there is none.
        mutable std::optional<QIcon> icon = std::nullopt;
    };

    const Row &row(const QModelIndex &index) const { return *m_shown.at(size_t(index.row())); }
    QIcon icon(const Row &row) const;

    std::vector<Row> m_rows;
    std::vector<const Row *> m_shown;
    QColor m_symbolColor;
    QIcon m_symbol;
};
