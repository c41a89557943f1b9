#include "settings/FilePanel.h"

#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>

using namespace Qt::StringLiterals;

FilePanel::FilePanel(Choosable choosable, const QString &title,
                     std::function<void(const QString &path)> onChoose, QWidget *parent)
    : QFileDialog(parent, title, QDir::homePath())
    , m_choosable(choosable)
    , m_onChoose(std::move(onChoose))
{
    setFileMode(ExistingFile);
    nameButton();
    if (choosable == Choosable::files)
        return;
    // Desktops' own panels let choose either files or folders.
    setOption(DontUseNativeDialog);
    // QFileDialog thinks that its button opens a folder, and says so.
    connect(this, &QFileDialog::currentChanged, this, &FilePanel::nameButton);
    connect(findChild<QLineEdit *>(), &QLineEdit::textChanged, this, &FilePanel::nameButton);
}

void FilePanel::nameButton()
{
    setLabelText(Accept, windowTitle());
}

void FilePanel::accept()
{
    const QString path = selectedFiles().value(0);
    const QFileInfo item(path);
    if (path.isEmpty())
        return;
    // In its own words QFileDialog would wait for an answer.
    if (!item.exists()) {
        tellThatItIsMissing();
        return;
    }
    if (item.isDir() && m_choosable == Choosable::files) {
        setDirectory(path);
        return;
    }
    m_onChoose(item.absoluteFilePath());
    done(Accepted);
}

void FilePanel::tellThatItIsMissing()
{
    auto *const box = new QMessageBox(QMessageBox::Warning, windowTitle(),
                                      u"That item could not be found."_s, QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}
