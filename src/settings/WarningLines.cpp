#include "settings/WarningLines.h"

#include <QFontMetrics>

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
/// The maximum length in average characters, about three lines. Names can be very long.
constexpr int maxCharacters = 160;

QString shortened(const QString &warning, TextStyle style)
{
    const QFontMetrics metrics(font(style));
    return metrics.elidedText(warning, Qt::ElideMiddle, maxCharacters * metrics.averageCharWidth());
}

Item sentence(TextStyle style, const QString &warning)
{
    return tinted(TextColor::warning, paragraph(style, [=] { return shortened(warning, style); }));
}

Item warningLine(TextStyle style, const Item &sentence)
{
    return Row{
        spacing(4),
        alignTop(tinted(TextColor::warning, symbol(u"exclamationmark.triangle.fill"_s, style))),
        stretched(sentence),
    };
}
} // namespace

Item warningLines(TextStyle style, std::function<QStringList()> warnings)
{
    return forEachText(2, std::move(warnings), [style](const QString &warning) {
        return warningLine(style, sentence(style, warning));
    });
}

Item announcedWarningLines(TextStyle style, std::function<QStringList()> warnings)
{
    return forEachText(2, std::move(warnings), [style](const QString &warning) {
        return warningLine(style, announced(sentence(style, warning)));
    });
}
