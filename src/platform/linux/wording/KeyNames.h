// The names of keys that no keyboard layout changes.
#pragma once

#include <QString>
#include <QtGlobal>

/// The name of the key with a virtual key code, such as "Page Up"; "Key 123" if it has none.
QString keyName(qint64 keyCode);
