#include "settings/FilePanel.h"

#include "foundation/Text.h"

#include <QDir>
#include <QFileInfo>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::StringLiterals;

namespace
{
const QString proposedName = u"Corvane.json"_s;
} // namespace

FilePanel::FilePanel(Choosable choosable, const QString &title,
                     std::function<void(const QString &path)> onChoose, QWidget *parent)
    : QFileDialog(parent, title, QDir::homePath())
    , m_choosable(choosable)
    , m_onChoose(std::move(onChoose))
{
    // Desktops' own panels let choose either files or folders.
    if (choosable == Choosable::filesAndFolders)
        setOption(DontUseNativeDialog);
    if (choosable == Choosable::newJsonFile) {
        setAcceptMode(AcceptSave);
        selectFile(proposedName);
    } else {
        setFileMode(ExistingFile);
    }
    nameButton();
    if (isDesktopsOwn())
        return;
    // QFileDialog thinks that its button opens a folder, and says so.
    connect(this, &QFileDialog::currentChanged, this, &FilePanel::nameButton);
    connect(findChild<QLineEdit *>(), &QLineEdit::textChanged, this, &FilePanel::nameButton);
}

bool FilePanel::isDesktopsOwn() const
{
    return !findChild<QLineEdit *>();
}

void FilePanel::nameButton()
{
    setLabelText(Accept, windowTitle());
}

void FilePanel::showEvent(QShowEvent *event)
{
    QFileDialog::showEvent(event);
    // To be typed over, all but the extension.
    if (m_choosable == Choosable::newJsonFile && !isDesktopsOwn())
        findChild<QLineEdit *>()->setSelection(
            0, int(QFileInfo(proposedName).completeBaseName().size()));
}

void FilePanel::accept()
{
    const QString path = selectedFiles().value(0);
    const QFileInfo item(path);
    if (path.isEmpty()) {
        keepOpen();
    } else if (item.isDir() && m_choosable != Choosable::filesAndFolders) {
        setDirectory(path);
        keepOpen();
    } else if (m_choosable == Choosable::newJsonFile) {
        completeAndChoose(item.absoluteFilePath());
    } else if (!item.exists()) {
        tellThatItIsMissing();
    } else {
        choose(item.absoluteFilePath());
    }
}

/// Nothing is chosen yet. Desktops' own panels may have left the screen by now, though.
void FilePanel::keepOpen()
{
    if (isDesktopsOwn())
        reject();
}

void FilePanel::choose(const QString &path)
{
    // Its list would still open once the folder is read, and take the focus away from what is next.
    if (auto *const field = findChild<QLineEdit *>())
        field->setCompleter(nullptr);
    m_onChoose(path);
    done(Accepted);
}

/// Adds the extension if it is missing, and asks before another file is replaced.
void FilePanel::completeAndChoose(const QString &path)
{
    const bool isComplete = path.endsWith(u".json"_s, Qt::CaseInsensitive);
    const QString whole = isComplete ? path : path + u".json"_s;
    // The desktop's own panel has asked already, about the name that it knows.
    const bool isAsked = isDesktopsOwn() && isComplete;
    if (QFileInfo::exists(whole) && !isAsked)
        askToReplace(whole);
    else
        choose(whole);
}

void FilePanel::tellThatItIsMissing()
{
    auto *const box = makeBox(u"That item could not be found."_s, QMessageBox::Ok);
    connect(box, &QDialog::finished, this, &FilePanel::keepOpen);
    box->open();
}

void FilePanel::askToReplace(const QString &path)
{
    auto *const box = makeBox(
        u"%1 already exists. Do you want to replace it?"_s.arg(quoted(QFileInfo(path).fileName())),
        QMessageBox::Cancel);
    const auto *const replace = box->addButton(u"Replace"_s, QMessageBox::DestructiveRole);
    connect(box, &QDialog::finished, this, [this, box, replace, path] {
        if (box->clickedButton() == replace)
            choose(path);
        else
            keepOpen();
    });
    box->open();
}

/// In its own words QFileDialog would wait for the answer.
QMessageBox *FilePanel::makeBox(const QString &text, QMessageBox::StandardButton button)
{
    QWidget *const owner = isDesktopsOwn() ? parentWidget() : this;
    auto *const box = new QMessageBox(QMessageBox::Warning, windowTitle(), text, button, owner);
    box->setTextFormat(Qt::PlainText);
    box->setDefaultButton(button);
    box->setAttribute(Qt::WA_DeleteOnClose);
    return box;
}
