// The panel in which the user chooses a file or a folder.
#pragma once

#include <QFileDialog>
#include <QMessageBox>
#include <functional>

/// Show it with open(). It is the desktop's own panel where that supports what is needed.
class FilePanel final : public QFileDialog
{
    Q_OBJECT

public:
    enum class Choosable {
        files,
        filesAndFolders,
        /// The file to save: Corvane.json, or another JSON file, whose missing extension is added.
        /// The panel asks before it replaces a file.
        newJsonFile,
    };

    /// The callback receives an absolute path.
    FilePanel(Choosable choosable, const QString &title, const QString &confirmingButton,
              std::function<void(const QString &path)> onChoose, QWidget *parent);

    void accept() override;

protected:
    void showEvent(QShowEvent *event) override;

private:
    bool isDesktopsOwn() const;
    void nameButton();
    void choose(const QString &path);
    void completeAndChoose(const QString &path);
    void tellThatItIsMissing();
    void askToReplace(const QString &path);
    QMessageBox *makeBox(const QString &text, QMessageBox::StandardButton button);
    void keepOpen();

    const Choosable m_choosable;
    const QString m_confirmingButton;
    const std::function<void(const QString &path)> m_onChoose;
};
