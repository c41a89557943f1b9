// Asynchronous calls over the session bus.
#pragma once

#include <functional>

class QDBusMessage;
class QObject;

/// Handles the answer to a call, which may be an error.
using DBusAnswerHandler = std::function<void(const QDBusMessage &answer)>;

/// Calls a method. The answer is dropped if the receiver has been destroyed by then. The timeout is
/// in milliseconds; by default a call without an answer fails after 25 s.
void callAsynchronously(const QDBusMessage &call, QObject *receiver, DBusAnswerHandler handler,
                        int timeout = -1);
