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

FilePanel::FilePanel(Choosable choosable, const QString &title, const QString &confirmingButton,
                     std::function<void(const QString &path)> onChoose, QWidget *parent)
    : QFileDialog(parent, title, QDir::homePath())
    , m_choosable(choosable)
    , m_confirmingButton(confirmingButton)
    , m_onChoose(std::move(onChoose))
{
    // Native panels let the user choose either files or folders, not both.
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
    // QFileDialog relabels its button, since it assumes that the button opens a folder.
    connect(this, &QFileDialog::currentChanged, this, &FilePanel::nameButton);
    connect(findChild<QLineEdit *>(), &QLineEdit::textChanged, this, &FilePanel::nameButton);
}

bool FilePanel::isDesktopsOwn() const
{
    return !findChild<QLineEdit *>();
}

void FilePanel::nameButton()
{
    setLabelText(Accept, m_confirmingButton);
}

void FilePanel::showEvent(QShowEvent *event)
{
    QFileDialog::showEvent(event);
    // Select the name without its extension, ready to be typed over.
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

/// Leaves the panel open, since nothing is chosen yet. A native panel may already have closed
/// itself, so it is rejected.
void FilePanel::keepOpen()
{
    if (isDesktopsOwn())
        reject();
}

void FilePanel::choose(const QString &path)
{
    // The completer's list would still open once the folder is read, and take the focus from what
    // comes next.
    if (auto *const field = findChild<QLineEdit *>())
        field->setCompleter(nullptr);
    m_onChoose(path);
    done(Accepted);
}

/// Adds a missing extension, and asks before an existing file is replaced.
void FilePanel::completeAndChoose(const QString &path)
{
    const bool isComplete = path.endsWith(u".json"_s, Qt::CaseInsensitive);
    const QString whole = isComplete ? path : path + u".json"_s;
    // A native panel has already asked, but only about the name as typed.
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

/// QFileDialog's own message box would run a nested event loop.
QMessageBox *FilePanel::makeBox(const QString &text, QMessageBox::StandardButton button)
{
    QWidget *const owner = isDesktopsOwn() ? parentWidget() : this;
    auto *const box = new QMessageBox(QMessageBox::Warning, windowTitle(), text, button, owner);
    box->setTextFormat(Qt::PlainText);
    box->setDefaultButton(button);
    box->setAttribute(Qt::WA_DeleteOnClose);
    return box;
}
