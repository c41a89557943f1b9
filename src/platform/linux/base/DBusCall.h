// Calls over the session bus that nobody waits for.
#pragma once

#include <functional>

class QDBusMessage;
class QObject;

/// Handles the answer to a call, which may be an error.
using DBusAnswerHandler = std::function<void(const QDBusMessage &answer)>;

/// Calls a method. The answer is dropped if the receiver has been destroyed by then. Without a
/// timeout, in milliseconds, no answer for 25 s is an error.
void callAsynchronously(const QDBusMessage &call, QObject *receiver, DBusAnswerHandler handler,
                        int timeout = -1);
