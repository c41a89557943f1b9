// The four modifiers that combinations are made of, in the forms that their sources have.
#pragma once

#include <Qt>
#include <QtGlobal>

namespace Modifiers
{

/// As EventFlag bits; other modifiers are dropped.
quint32 eventFlags(Qt::KeyboardModifiers modifiers);

} // namespace Modifiers
