// The whole content of the settings window.
#pragma once

#include "model/AppError.h"
#include "model/LaunchEntry.h"
#include "settings/EntrySearch.h"
#include "settings/FilePanel.h"
#include "viewkit/View.h"

#include <QPointer>
#include <optional>
#include <variant>

class EntryList;
class QLineEdit;
class QUrl;
class ShortcutStore;
struct Platform;

namespace viewkit
{
class ScrolledContent;
}

class SettingsView : public viewkit::View
{
    Q_OBJECT

public:
    /// The platform and the store must outlive it.
    SettingsView(const Platform &platform, ShortcutStore &store);

protected:
    bool event(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    viewkit::Item content();
    viewkit::Item toolbar();
    viewkit::Item searchField();
    viewkit::Item entryList();
    viewkit::Item nothingFound();
    viewkit::Item emptyState();
    viewkit::Item footer();
    viewkit::Item approvalRow();
    QString reachOfKeys() const;

    struct About {
        bool operator==(const About &) const = default;
    };
    struct Details {
        QString text;
        bool operator==(const Details &) const = default;
    };
    struct ResetConfirmation {
        bool operator==(const ResetConfirmation &) const = default;
    };
    /// The subject of the open sheet: an entry opens the editor, an error opens an alert.
    using Subject = std::variant<LaunchEntry, About, Details, ResetConfirmation, AppError>;

    viewkit::Item sheet();
    QDialog *makeSheet(const LaunchEntry &entry, QWidget *owner);
    QDialog *makeSheet(const About &, QWidget *owner);
    QDialog *makeSheet(const Details &details, QWidget *owner);
    QDialog *makeSheet(const ResetConfirmation &, QWidget *owner);
    QDialog *makeSheet(const AppError &error, QWidget *owner);
    bool hasSheet() const;
    void openSheet(const Subject &subject);
    void closeSheet();

    void addEntry();
    void addDropped(const QUrl &address);
    void resetAllShortcuts();
    void undo();

    void alertNextError();

    void focusSearch();
    void focusFirstFound();
    void setSearch(const QString &text);

    void importList();
    void importFrom(const QString &path);
    void exportList();
    void exportTo(const QString &path);
    void open(FilePanel::Choosable choosable, const QString &title, const QString &confirmingButton,
              std::function<void(const QString &path)> onChoose);

    void refreshLoginState();
    void setLaunchAtLogin(bool on);

    bool hasEntries() const;
    void fitToContent();

    const Platform &m_platform;
    ShortcutStore &m_store;
    std::optional<Subject> m_sheet;
    EntrySearch m_search{m_store};
    bool m_launchAtLogin = false;
    bool m_loginNeedsApproval = false;
    /// The result of the last successful import.
    std::optional<QString> m_importMessage;
    QPointer<FilePanel> m_panel;
    viewkit::ScrolledContent *m_content = nullptr;
    QWidget *m_add = nullptr;
    QLineEdit *m_searchField = nullptr;
    EntryList *m_list = nullptr;
};
