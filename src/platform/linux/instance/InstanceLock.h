// The session's one place for the program where there is no session bus: a locked file, through
// which a second instance also hands over what it was started for.
#pragma once

#include "platform/linux/StartupTokens.h"
#include "platform/linux/instance/InstanceClaim.h"

#include <QSocketNotifier>
#include <QStringList>
#include <functional>
#include <optional>

/// The kernel lets go of the lock when the program ends, however it ends. What a second instance
/// writes into the file is a request; the first one takes it out, which is the answer. Both watch
/// the file for changes. There is one lock in a program, until it ends.
class InstanceLock
{
public:
    /// The first of the files that can be opened, or made, serves; impossible if none does. Waits
    /// for another instance to take over our tokens. Needs no QApplication yet.
    InstanceClaim claim(const QStringList &paths, const StartupTokens &tokens);

    /// Calls the handler with the tokens of each request, also of one that came before. To be
    /// called once, by the first instance, when QApplication exists.
    void attachToEventLoop(std::function<void(const StartupTokens &)> handler);

private:
    bool open(const QString &path);
    bool tryLock() const;
    InstanceClaim takePlace() const;
    bool request(const StartupTokens &tokens) const;
    std::optional<StartupTokens> takeRequest() const;
    void handleChange() const;

    // Never closed, because closing any descriptor of the file would give up the lock.
    int m_file = -1;
    int m_changes = -1;
    std::optional<QSocketNotifier> m_notifier;
    std::function<void(const StartupTokens &)> m_handler;
};

/// Where the session's lock file is to be: in its runtime folder, or else in the one for temporary
/// files. Each display has one of its own.
QStringList instanceLockPaths();
