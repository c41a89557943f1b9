// How tests tell of a key event that is not the expected one.
#pragma once

#include "platform/EventMonitor.h"

#include <QTest>

namespace QTest
{
template <>
inline char *toString(const KeyEvent &event)
{
    const QString text = QStringLiteral("key %1, flags %2");
    return qstrdup(qPrintable(text.arg(event.keyCode).arg(event.modifierFlags, 0, 16)));
}
} // namespace QTest
