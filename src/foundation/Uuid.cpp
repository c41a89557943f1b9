#include "foundation/Uuid.h"

#include <QRegularExpression>

using namespace Qt::StringLiterals;

std::optional<QUuid> uuidFromText(const QString &text)
{
    // Validate the form here: QUuid ignores trailing junk and reports errors as the null id.
    static const QRegularExpression form(
        uR"(\A[0-9A-Fa-f]{8}(-[0-9A-Fa-f]{4}){3}-[0-9A-Fa-f]{12}\z)"_s);
    if (!form.match(text).hasMatch())
        return std::nullopt;
    return QUuid::fromString(text);
}
