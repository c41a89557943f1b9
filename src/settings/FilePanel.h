// The panel in which the user chooses a file or a folder.
#pragma once

#include <QFileDialog>
#include <QMessageBox>
#include <functional>

/// To be shown with open(). It is the desktop's own where that can do what is wanted.
class FilePanel final : public QFileDialog
{
    Q_OBJECT

public:
    enum class Choosable {
        files,
        filesAndFolders,
        /// A place for Corvane.json, or a JSON file of another name, which it completes. It asks
        /// before a file is replaced.
        newJsonFile,
    };

    /// The confirming button has the panel's title. The callback gets an absolute path.
    FilePanel(Choosable choosable, const QString &title,
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
    const std::function<void(const QString &path)> m_onChoose;
};
