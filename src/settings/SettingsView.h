// The whole content of the settings window.
#pragma once

#include "model/AppError.h"
#include "model/LaunchEntry.h"
#include "platform/Registration.h"
#include "settings/FilePanel.h"
#include "viewkit/View.h"

#include <QPointer>
#include <optional>

class ShortcutStore;
struct Platform;

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
    viewkit::Item toolbar();
    viewkit::Item entryList();
    viewkit::Item emptyState();
    viewkit::Item footer();
    viewkit::Item approvalRow();

    viewkit::Item editorSheet();
    viewkit::Item aboutSheet();
    viewkit::Item detailsSheet();
    viewkit::Item resetConfirmation();
    viewkit::Item errorAlert();
    bool hasSheet() const;
    void openSheet(bool SettingsView::*sheet);
    void closeSheet(bool SettingsView::*sheet);

    void addEntry();
    void edit(const LaunchEntry &entry);
    void closeEditor();
    void deleteEntry(const LaunchEntry &entry);
    void resetAllShortcuts();

    const std::optional<AppError> &alertedError();
    void closeAlert();
    void showDetails();

    void importList();
    void importFrom(const QString &path);
    void exportList();
    void exportTo(const QString &path);
    void open(FilePanel::Choosable choosable, const QString &title,
              std::function<void(const QString &path)> onChoose);

    void refreshLoginState();
    void setLaunchAtLogin(bool on);

    bool hasEntries() const;
    viewkit::Binding<bool> showNotification();
    void fitToContent();

    const Platform &m_platform;
    ShortcutStore &m_store;
    Registration m_defaultsObserver;
    /// The entry whose editor is open.
    std::optional<LaunchEntry> m_editing;
    bool m_launchAtLogin = false;
    bool m_loginNeedsApproval = false;
    bool m_confirmReset = false;
    bool m_showAbout = false;
    bool m_showDetails = false;
    /// How the last successful import went.
    std::optional<QString> m_importMessage;
    QString m_detailsText;
    /// The error whose alert is open.
    std::optional<AppError> m_alerted;
    QPointer<FilePanel> m_panel;
    QWidget *m_add = nullptr;
};
