#include "platform/linux/launch/Spawn.h"

#include "foundation/Text.h"

#include <QFile>
#include <QStandardPaths>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
class FileActions
{
public:
    explicit FileActions(const QByteArray &workingFolder)
    {
        posix_spawn_file_actions_init(&m_actions);
        posix_spawn_file_actions_addopen(&m_actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addclosefrom_np(&m_actions, STDERR_FILENO + 1);
        posix_spawn_file_actions_addchdir_np(&m_actions, workingFolder.constData());
    }
    ~FileActions() { posix_spawn_file_actions_destroy(&m_actions); }
    Q_DISABLE_COPY_MOVE(FileActions)

    const posix_spawn_file_actions_t *get() const { return &m_actions; }

private:
    posix_spawn_file_actions_t m_actions;
};

class Attributes
{
public:
    Attributes()
    {
        posix_spawnattr_init(&m_attributes);
        sigset_t all;
        sigfillset(&all);
        posix_spawnattr_setsigdefault(&m_attributes, &all);
        sigset_t none;
        sigemptyset(&none);
        posix_spawnattr_setsigmask(&m_attributes, &none);
        posix_spawnattr_setflags(
            &m_attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    }
    ~Attributes() { posix_spawnattr_destroy(&m_attributes); }
    Q_DISABLE_COPY_MOVE(Attributes)

    const posix_spawnattr_t *get() const { return &m_attributes; }

private:
    posix_spawnattr_t m_attributes;
};
} // namespace

Result<pid_t> spawn(const QStringList &arguments, const QString &workingFolder)
{
    // By absolute path: posix_spawnp would hand a file that is no program to a shell.
    const QString program = QStandardPaths::findExecutable(arguments.constFirst());
    if (program.isEmpty())
        return Error{u"%1 is not an executable program."_s.arg(quoted(arguments.constFirst()))};

    std::vector<QByteArray> texts;
    for (const QString &argument : arguments)
        texts.push_back(QFile::encodeName(argument));
    std::vector<char *> pointers;
    for (QByteArray &text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);

    pid_t child = 0;
    const int status = posix_spawn(&child, QFile::encodeName(program).constData(),
                                   FileActions(QFile::encodeName(workingFolder)).get(),
                                   Attributes().get(), pointers.data(), environ);
    if (status != 0)
        return Error{QString::fromLocal8Bit(std::strerror(status))};
    return child;
}
