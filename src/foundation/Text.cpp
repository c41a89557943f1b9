#include "foundation/Text.h"

QString quoted(const QString &text)
{
    return QChar(u'“') + text + QChar(u'”');
}
