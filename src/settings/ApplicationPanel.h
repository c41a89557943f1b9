// The panel in which the user chooses an application: an installed one or an application file.
#pragma once

#include <QDialog>
#include <functional>
#include <optional>

class ApplicationList;
class InstalledApplications;
class QListView;

namespace viewkit
{
class View;
struct Item;
} // namespace viewkit

/// Show it with open().
class ApplicationPanel final : public QDialog
{
    Q_OBJECT

public:
    /// The constructor reads the list of applications. The service must outlive the panel.
    ApplicationPanel(InstalledApplications &applications,
                     std::function<void(const QString &path)> onChoose, QWidget *parent);

    bool eventFilter(QObject *object, QEvent *event) override;

private:
    viewkit::Item searchField();
    viewkit::Item list();
    std::optional<QString> selected() const;
    void search(const QString &text);
    void selectionChanged();
    void chooseSelected();
    void choose(const QString &path);
    void browse();
    void browsed(const QString &path);

    InstalledApplications &m_applications;
    const std::function<void(const QString &path)> m_onChoose;
    ApplicationList *m_model;
    QListView *m_list;
    viewkit::View *m_body;
    QString m_searched;
    bool m_isRejected = false;
};
