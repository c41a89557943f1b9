#include "platform/linux/launch/ExecError.h"

#include "foundation/Files.h"
#include "foundation/Text.h"

#include <QByteArray>
#include <QFile>
#include <QFileInfo>
#include <cerrno>
#include <cstring>
#include <elf.h>

using namespace Qt::StringLiterals;

namespace
{
/// How much of a file to read: a page, which holds the headers that linkers write. The kernel reads
/// 256 bytes of a script.
constexpr qint64 startSize = 4096;

QByteArray startOf(const QString &path)
{
    // Open regular files only: opening a pipe would wait for its writer.
    QFile file(path);
    const bool isOpen = QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly);
    return isOpen ? file.read(startSize) : QByteArray();
}

bool isElf(const QByteArray &start)
{
    return start.startsWith(ELFMAG);
}

/// The loader that a dynamically linked program names; empty if there is none.
template <typename FileHeader, typename ProgramHeader>
QByteArray loaderOf(const QByteArray &start)
{
    FileHeader file;
    if (start.size() < qsizetype(sizeof file))
        return {};
    std::memcpy(&file, start.constData(), sizeof file);
    for (int index = 0; index < file.e_phnum; ++index) {
        ProgramHeader header;
        const quint64 place = file.e_phoff + quint64(index) * sizeof header;
        if (place > quint64(start.size()) - sizeof header)
            return {};
        std::memcpy(&header, start.constData() + place, sizeof header);
        if (header.p_type == PT_INTERP && header.p_offset < quint64(start.size()))
            return start.constData() + header.p_offset;
    }
    return {};
}

QByteArray firstLineOf(const QByteArray &start)
{
    return start.split('\n').constFirst();
}

/// The interpreter of the program: the one in a script's first line, or the loader. Empty if there
/// is none.
QString interpreterOf(const QByteArray &start)
{
    QByteArray interpreter;
    if (start.startsWith("#!"))
        interpreter = firstLineOf(start).sliced(2).simplified().split(' ').constFirst();
    else if (isElf(start))
        interpreter = start.mid(EI_CLASS, 1) == QByteArray(1, ELFCLASS32)
            ? loaderOf<Elf32_Ehdr, Elf32_Phdr>(start)
            : loaderOf<Elf64_Ehdr, Elf64_Phdr>(start);
    return QFile::decodeName(interpreter);
}

bool isExecutableFile(const QString &path)
{
    const QFileInfo file(path);
    return file.isFile() && file.isExecutable();
}
} // namespace

Error notInstalled(const QString &program)
{
    return {u"The program %1 is not installed."_s.arg(quoted(program))};
}

Error execError(int number, const QString &path, const QString &name)
{
    const QString file = quoted(name.section(u'/', -1));
    const QByteArray start = startOf(path);
    const QString interpreter = interpreterOf(start);
    const QString quotedInterpreter = quoted(onOneLine(interpreter));
    switch (number) {
    case ENOENT:
        if (!QFileInfo::exists(path))
            return notInstalled(name);
        if (firstLineOf(start).endsWith('\r'))
            return {u"The lines of the script end as on Windows. Save it with the line ends of "
                    "Linux."_s};
        if (interpreter.isEmpty() || QFileInfo::exists(interpreter))
            return systemError(number);
        return {
            u"The program %1, which %2 needs, is not installed."_s.arg(quotedInterpreter, file)};
    case EACCES:
        if (!isExecutableFile(path))
            return {u"%1 is not an executable program."_s.arg(quoted(name))};
        if (interpreter.isEmpty() || isExecutableFile(interpreter))
            return systemError(number);
        return {
            u"%1, which %2 needs, is not an executable program."_s.arg(quotedInterpreter, file)};
    case ENOEXEC:
        if (isElf(start))
            return {u"%1 is not a program for this kind of computer."_s.arg(file)};
        return {u"%1 is not a program, or a script without a first line such as #!/bin/sh."_s.arg(
            file)};
    default:
        return systemError(number);
    }
}
