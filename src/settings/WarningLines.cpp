#include "settings/WarningLines.h"

#include <QFontMetrics>

using namespace Qt::StringLiterals;

namespace
{
/// In characters of the usual width; that is some three lines. Names can be very long.
constexpr int mostCharacters = 160;

QString shortened(const QString &warning, TextStyle style)
{
    const QFontMetrics metrics(font(style));
    return metrics.elidedText(warning, Qt::ElideMiddle,
                              mostCharacters * metrics.averageCharWidth());
}
} // namespace

Item warningLines(TextStyle style, std::function<QStringList()> warnings)
{
    return lines(2, std::move(warnings), [style](const QString &warning) {
        return Row{
            spacing(4),
            onTop(inked(Ink::warning, symbol(u"exclamationmark.triangle.fill"_s, style))),
            stretched(
                inked(Ink::warning, paragraph(style, [=] { return shortened(warning, style); }))),
        };
    });
}
