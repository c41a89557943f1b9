#include "platform/linux/scripts/LinuxShortcutLibrary.h"

#include "foundation/Files.h"
#include "foundation/Text.h"
#include "platform/linux/launch/DesktopApp.h"
#include "platform/linux/launch/ExecLine.h"
#include "platform/linux/scripts/TrustedPath.h"

#include <QCollator>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>
#include <algorithm>
#include <climits>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
const QByteArray newScript =
    "#!/bin/sh\n"
    "# Write the commands of this Shortcut below. It starts in your home folder.\n"
    "# What it prints goes to your journal, which this command shows: journalctl --user -e\n"
    "\n";

/// A file that may be a Shortcut.
struct Candidate {
    QString path;
    QString fileName;
    /// The file name without the extension.
    QString name;
    /// Whether the permissions allow it to run. A launcher is read, not executed.
    bool isRunnable;

    bool isCalled(const QString &text) const { return fileName == text || name == text; }
};
using Folder = std::vector<Candidate>;

bool isLauncher(const QString &path)
{
    return path.endsWith(u".desktop"_s);
}

/// Removes an extension, which is up to eight letters and digits starting with a letter; so "Notes
/// 1.2" and "Dr. No" have none.
QString withoutExtension(const QString &fileName)
{
    static const QRegularExpression extension(u"(?<=.)\\.[A-Za-z][A-Za-z0-9]{0,7}\\z"_s);
    return QString(fileName).remove(extension);
}

QString personalFolder()
{
    // Relative paths count as not set, here and below.
    const QString dataHome = qEnvironmentVariable("XDG_DATA_HOME");
    return (QDir::isAbsolutePath(dataHome) ? dataHome : QDir::homePath() + u"/.local/share"_s)
        + u"/shortcuts"_s;
}

QStringList folders()
{
    QString dataFolders = qEnvironmentVariable("XDG_DATA_DIRS");
    if (dataFolders.isEmpty())
        dataFolders = u"/usr/local/share:/usr/share"_s;
    QStringList folders{personalFolder()};
    for (const QString &folder : dataFolders.split(u':')) {
        if (QDir::isAbsolutePath(folder))
            folders << folder + u"/shortcuts"_s;
    }
    return folders;
}

/// The candidates in a folder: skips hidden files, backup files of editors, anything that is not a
/// file, and files whose names cannot be used.
Folder content(const QString &folder)
{
    Folder found;
    const auto files = QDir(folder).entryInfoList(QDir::Files, QDir::Name);
    for (const QFileInfo &file : files) {
        const QString name = file.fileName();
        if (file.isFile() && !name.endsWith(u'~') && LinuxShortcutLibrary::canBeName(name))
            found.push_back({file.filePath(), name, withoutExtension(name),
                             isLauncher(name) || file.isExecutable()});
    }
    return found;
}

std::vector<Folder> contents()
{
    std::vector<Folder> all;
    for (const QString &folder : folders())
        all.push_back(content(folder));
    return all;
}

Error ambiguous(const Folder &candidates)
{
    QStringList files;
    for (const Candidate &candidate : candidates)
        files << quoted(candidate.fileName);
    return Error{u"Several Shortcuts have this name: %1. Say which by its extension."_s.arg(
        shortened(onOneLine(files.join(u", "_s))))};
}

/// Selects the candidate that the name means; the list must not be empty.
Result<QString> chosen(const QString &name, const Folder &candidates)
{
    Folder runnable;
    std::ranges::copy_if(candidates, std::back_inserter(runnable), &Candidate::isRunnable);
    if (runnable.empty())
        return Error{
            u"%1 is not executable. Allow it to be executed as a program in its properties."_s.arg(
                quoted(onOneLine(candidates.front().fileName)))};
    const auto exact = std::ranges::find(runnable, name, &Candidate::fileName);
    if (exact != runnable.end())
        return exact->path;
    if (runnable.size() > 1)
        return ambiguous(runnable);
    return runnable.front().path;
}

/// The path of the launcher's program; empty if there is none.
QString programOf(const DesktopApp &launcher)
{
    const auto command = parseExecLine(launcher.text("Exec"), {});
    return command ? QStandardPaths::findExecutable(command->constFirst()) : QString();
}

std::optional<Error> reasonAgainstLauncher(const QString &path)
{
    const auto launcher = DesktopApp::fromFile(path);
    const QString program = launcher ? programOf(*launcher) : QString();
    if (!program.isEmpty() && !launcher->isTrue("Hidden"))
        return reasonForDistrust(program);
    return Error{u"The launcher starts no program, or one that is not installed."_s};
}

Result<QString> checked(const QString &path)
{
    // Thanks to this check, only this user and root can change the file before it is started.
    // Changes by programs of this user are not covered: they could as well change the Shortcut for
    // good.
    if (const auto reason = reasonForDistrust(path))
        return *reason;
    if (isLauncher(path)) {
        if (const auto reason = reasonAgainstLauncher(path))
            return *reason;
    }
    return path;
}

Result<QString> find(const QString &name, const std::vector<Folder> &folders)
{
    for (const Folder &folder : folders) {
        Folder candidates;
        std::ranges::copy_if(
            folder, std::back_inserter(candidates),
            [&name](const Candidate &candidate) { return candidate.isCalled(name); });
        if (candidates.empty())
            continue;
        const auto path = chosen(name, candidates);
        return path ? checked(*path) : path;
    }
    return Error{u"There is no Shortcut of this name in %1."_s.arg(
        shortened(onOneLine(personalFolder().replace(QDir::homePath() + u'/', u"~/"_s))))};
}

std::optional<Error> reasonAgainstName(const QString &name)
{
    const QByteArray fileName = QFile::encodeName(name);
    if (name.isEmpty())
        return Error{u"Please give the script a name."_s};
    if (fileName.size() > NAME_MAX)
        return Error{u"The name is too long."_s};
    if (name.startsWith(u'.'))
        return Error{u"The name must not begin with a full stop."_s};
    for (const QString &end : {u"~"_s, u".desktop"_s}) {
        if (name.endsWith(end))
            return Error{u"The name must not end with %1."_s.arg(quoted(end))};
    }
    // Text that is no valid Unicode does not survive the decoding.
    if (LinuxShortcutLibrary::canBeName(name) && QString::fromUtf8(fileName) == name)
        return std::nullopt;
    return Error{
        u"%1 cannot be the name of a Shortcut."_s.arg(quoted(withoutDirections(onOneLine(name))))};
}

/// Whether an entry could mean the candidate and a new file of that name alike. Names that only
/// differ in how their accents are encoded look the same.
bool isLike(const Candidate &candidate, const QString &fileName)
{
    const auto composed = [](const QString &text) {
        return text.normalized(QString::NormalizationForm_C);
    };
    const Candidate like{{}, composed(candidate.fileName), composed(candidate.name), true};
    const QString name = composed(fileName);
    return like.isCalled(name) || like.isCalled(withoutExtension(name));
}

/// The file that an entry with that name could run instead, or that would not run any more.
std::optional<Error> reasonAgainstTwin(const QString &name)
{
    for (const Folder &folder : contents()) {
        for (const Candidate &candidate : folder) {
            if (isLike(candidate, name))
                return Error{u"There is already a Shortcut %1."_s.arg(
                    quoted(onOneLine(candidate.fileName)))};
        }
    }
    return std::nullopt;
}

void sortAsPeopleDo(QStringList &names)
{
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    collator.setNumericMode(true);
    std::ranges::sort(names, [&collator](const QString &one, const QString &other) {
        const int order = collator.compare(one, other);
        return order ? order < 0 : one < other;
    });
}
} // namespace

QStringList LinuxShortcutLibrary::names()
{
    const auto folders = contents();
    const auto runs = [&folders](const QString &name, const Candidate &candidate) {
        const auto path = ::find(name, folders);
        return path && *path == candidate.path;
    };
    QStringList names;
    for (const Folder &folder : folders) {
        for (const Candidate &candidate : folder) {
            // Use the full file name if the short name belongs to another file.
            if (runs(candidate.name, candidate))
                names << candidate.name;
            else if (runs(candidate.fileName, candidate))
                names << candidate.fileName;
        }
    }
    names.removeDuplicates();
    sortAsPeopleDo(names);
    return names;
}

bool LinuxShortcutLibrary::canBeName(const QString &text)
{
    const auto isControl = [](QChar character) {
        return character.category() == QChar::Other_Control;
    };
    return !text.contains(u'/') && !text.contains(u".."_s) && std::ranges::none_of(text, isControl)
        && withoutDirections(text) == text;
}

Result<QString> LinuxShortcutLibrary::find(const QString &name)
{
    return ::find(name, contents());
}

Result<QString> LinuxShortcutLibrary::create(const QString &name)
{
    if (const auto error = reasonAgainstName(name))
        return *error;
    if (const auto error = reasonAgainstTwin(name))
        return *error;
    const auto place = folder();
    if (!place)
        return place.error();
    const QString path = *place + u'/' + name;
    if (const auto error = writeNewProgram(path, newScript))
        return Error{u"%1 could not be made: %2"_s.arg(quoted(name), error->description)};
    // Say at once, and not at each press, that a Shortcut in this folder is not run.
    auto runnable = find(name);
    if (!runnable)
        QFile::remove(path);
    return runnable;
}

Result<QString> LinuxShortcutLibrary::folder()
{
    const QString path = personalFolder();
    if (const auto error = makePrivateFolder(path))
        return *error;
    return path;
}
