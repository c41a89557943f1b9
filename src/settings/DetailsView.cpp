#include "settings/DetailsView.h"

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
/// The design's sizes.
constexpr int detailsWidth = 440;
constexpr int detailsHeight = 140;
} // namespace

DetailsView::DetailsView(const QString &details, Action onClose)
{
    setFixedWidth(detailsWidth);
    setBody(Column{
        padding(20),
        spacing(10),
        text(TextStyle::headline, u"Details"_s),
        scrolledText(u"Details"_s, TextStyle::captionMonospaced, detailsHeight, details),
        Row{Spacer{}, defaultButton(u"Close"_s, std::move(onClose))},
    });
}
