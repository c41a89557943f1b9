// The panel in which the user chooses a file or a folder.
#pragma once

#include <QFileDialog>
#include <functional>

/// To be shown with open(). It is the desktop's own where that can do what is wanted.
class FilePanel final : public QFileDialog
{
    Q_OBJECT

public:
    enum class Choosable {
        files,
        filesAndFolders,
    };

    /// The confirming button has the panel's title. The callback gets an absolute path.
    FilePanel(Choosable choosable, const QString &title,
              std::function<void(const QString &path)> onChoose, QWidget *parent);

    void accept() override;

private:
    void nameButton();
    void tellThatItIsMissing();

    const Choosable m_choosable;
    const std::function<void(const QString &path)> m_onChoose;
};
