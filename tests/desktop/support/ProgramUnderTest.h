// The built program, with a home folder of its own and a list that a test writes.
#pragma once

#include <QByteArray>
#include <QList>
#include <QProcess>
#include <QProcessEnvironment>
#include <QString>
#include <QTemporaryDir>
#include <sys/types.h>

/// Key combinations in the stored form, for the tests' lists.
struct StoredKeys {
    int keyCode;
    int modifiers;
};

class ProgramUnderTest
{
public:
    ProgramUnderTest();
    /// Kills it if it still runs.
    ~ProgramUnderTest();
    Q_DISABLE_COPY_MOVE(ProgramUnderTest)

    /// Adds an entry, named App, to the list that the program will find, with keys or without; the
    /// text of its id.
    QString addEntry(const QByteArray &kind, const QString &target);
    QString addEntry(const QByteArray &kind, const QString &target, StoredKeys keys);
    QString addApp(const QString &target, StoredKeys keys) { return addEntry("app", target, keys); }

    /// Of an entry that somebody else adds.
    void addKeys(const QByteArray &id, StoredKeys keys);

    /// Of entries that are added from now on.
    bool entriesAreEnabled = true;

    /// Adds a line to the user defaults that the program will find.
    void addDefault(const QByteArray &line) { m_defaults << line; }

    /// Whether the welcome is still to be seen; to be set before the start.
    bool isUserNew = false;

    /// Whether its windows can be used as an Accessible; to be set before the start.
    bool isAccessible = false;

    /// What it runs in; to be changed before the start.
    QProcessEnvironment environment;
    QTemporaryDir home;
    QString dataHome() const { return home.filePath(QStringLiteral("data")); }
    QString configHome() const { return home.filePath(QStringLiteral("config")); }

    /// The program's file, to be set before the start. By default that which the variable
    /// CORVANE_PROGRAM names, or else the one that is built beside the tests.
    QString program;

    /// A program, and its arguments, that starts the program; to be set before the start.
    QStringList starter;

    void start();

    /// Starts it once more, on what it has left behind.
    void startAgain();

    /// Writes what the program will find; to be called only where somebody else starts it.
    void writeFiles() const;

    bool isRunning() const { return m_process.state() != QProcess::NotRunning; }

    /// Whether one of its threads has that name.
    bool hasThread(const QByteArray &name) const;

    pid_t processId() const { return pid_t(m_process.processId()); }

    /// Processor time since its start, of all its threads.
    double cpuMilliseconds() const;

    /// What it has started that has not ended, or that it has not taken notice of.
    QList<pid_t> children() const;

    /// Ends it with SIGTERM and returns its exit status; -1 if it crashed or did not end.
    int end();

    /// The same, and awaits the end of all that it started.
    int stop();

    /// Awaits its end; the status as of end().
    int exitStatus();

    /// All that it has written to standard error so far.
    QByteArray errorOutput();

private:
    QProcess m_process;
    QByteArray m_errorOutput;
    QList<QByteArray> m_records;
    QList<QByteArray> m_defaults;
};
