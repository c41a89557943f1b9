#include "platform/linux/launch/Spawn.h"

#include "foundation/Files.h"
#include "foundation/Text.h"
#include "platform/linux/base/SessionBus.h"
#include "platform/linux/launch/ExecError.h"

#include <QByteArrayList>
#include <QFile>
#include <QStandardPaths>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <sched.h>
#include <string_view>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

using namespace Qt::StringLiterals;

namespace
{
/// A null-terminated pointer array for C functions. The texts must outlive it.
std::vector<char *> pointersTo(QByteArrayList &texts)
{
    std::vector<char *> pointers;
    for (QByteArray &text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// The environment variables for the session bus and the startup tokens.
QByteArrayList variablesWith(const StartupTokens &tokens)
{
    QByteArrayList variables;
    if (const QByteArray bus = sessionBusAddressForPrograms(); !bus.isEmpty())
        variables << "DBUS_SESSION_BUS_ADDRESS=" + bus;
    if (!tokens.startupId.isEmpty())
        variables << "DESKTOP_STARTUP_ID=" + tokens.startupId;
    if (!tokens.activationToken.isEmpty())
        variables << "XDG_ACTIVATION_TOKEN=" + tokens.activationToken;
    return variables;
}

/// Our environment plus the given variables, without the tokens and the bus address meant for us
/// alone.
std::vector<char *> environmentWith(QByteArrayList &more)
{
    std::vector<char *> pointers;
    for (char **variable = environ; *variable; ++variable) {
        const std::string_view text(*variable);
        if (!text.starts_with("DESKTOP_STARTUP_ID=") && !text.starts_with("XDG_ACTIVATION_TOKEN=")
            && !text.starts_with("DBUS_SESSION_BUS_ADDRESS="))
            pointers.push_back(*variable);
    }
    for (QByteArray &variable : more)
        pointers.push_back(variable.data());
    pointers.push_back(nullptr);
    return pointers;
}

/// Everything the child needs, prepared before it is created.
struct Plan {
    const char *program;
    char *const *arguments;
    char *const *environment;
    /// Null for the home folder, or for the root folder if that cannot be entered.
    const char *folder;
    const char *home;
};

/// The step of the child that failed; different steps can fail with the same error number.
enum class Step {
    start,
    enterFolder,
    execute,
};

struct Failure {
    Step step = Step::start;
    int error = 0;
};

bool enterFolder(const Plan &plan)
{
    if (plan.folder)
        return chdir(plan.folder) == 0;
    return chdir(plan.home) == 0 || chdir("/") == 0;
}

/// Runs in the child, which shares our memory until it executes the program: it may only call
/// async-signal-safe functions. Returns the step that failed.
Step becomeProgram(const Plan &plan)
{
    resetSignals();
    setsid();
    const int nothing = open("/dev/null", O_RDONLY);
    if (nothing < 0 || dup2(nothing, STDIN_FILENO) < 0)
        return Step::start;
    if (!enterFolder(plan))
        return Step::enterFolder;
    // Our own descriptors are close-on-exec; this closes what libraries may have left open.
    close_range(STDERR_FILENO + 1, ~0U, 0);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    execve(plan.program, plan.arguments, plan.environment);
    return Step::execute;
}

/// Returns the child's process id if nothing failed. Uses vfork, because posix_spawn makes the
/// whole time from the press to the program a tenth longer. The analyzer follows POSIX; Linux
/// allows async-signal-safe calls after vfork.
pid_t start(const Plan &plan, Failure &failure)
{
    sigset_t all;
    sigfillset(&all);
    sigset_t before;
    // Prevents our signal handlers from running in the child.
    pthread_sigmask(SIG_BLOCK, &all, &before);
    volatile int error = 0;
    volatile Step step = Step::start;
    // NOLINTBEGIN(clang-analyzer-security.insecureAPI.vfork,clang-analyzer-unix.Vfork)
    const pid_t child = vfork();
    if (child == 0) {
        step = becomeProgram(plan);
        error = errno;
        _exit(EXIT_FAILURE);
    }
    // NOLINTEND(clang-analyzer-security.insecureAPI.vfork,clang-analyzer-unix.Vfork)
    if (child < 0)
        error = errno;
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    failure = {step, error};
    if (error != 0 && child > 0)
        waitpid(child, nullptr, 0);
    return child;
}

Error inWords(const Failure &failure, const SpawnRequest &request, const QString &program)
{
    const QString name = request.arguments.constFirst();
    if (failure.step == Step::execute)
        return execError(failure.error, program, name);
    if (failure.step == Step::enterFolder)
        return {u"The folder %1, in which %2 should run, cannot be opened."_s.arg(
            quoted(request.workingFolder), quoted(name.section(u'/', -1)))};
    if (failure.error == EAGAIN)
        return {u"Too many programs are running."_s};
    return systemError(failure.error);
}
} // namespace

void resetSignals()
{
    struct sigaction byDefault = {};
    byDefault.sa_handler = SIG_DFL;
    for (int signal = 1; signal < NSIG; ++signal)
        sigaction(signal, &byDefault, nullptr);
}

Result<pid_t> spawn(const SpawnRequest &request)
{
    // Look up names here, because execvp would pass files that are not programs to a shell.
    const QString name = request.arguments.constFirst();
    const QString program = name.contains(u'/') ? name : QStandardPaths::findExecutable(name);
    if (program.isEmpty())
        return notInstalled(name);
    const QByteArray path = QFile::encodeName(program);
    const QByteArray folder = QFile::encodeName(request.workingFolder);
    const QByteArray home = qgetenv("HOME");
    QByteArrayList arguments;
    for (const QString &argument : request.arguments)
        arguments.append(QFile::encodeName(argument));
    QByteArrayList variables = variablesWith(request.tokens);

    Failure failure;
    const pid_t child = start(
        {
            .program = path.constData(),
            .arguments = pointersTo(arguments).data(),
            .environment = environmentWith(variables).data(),
            .folder = folder.isEmpty() ? nullptr : folder.constData(),
            .home = home.constData(),
        },
        failure);
    if (failure.error != 0)
        return inWords(failure, request, program);
    // Lets the child run first if it shares our processor.
    sched_yield();
    return child;
}
