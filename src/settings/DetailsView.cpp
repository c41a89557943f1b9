#include "settings/DetailsView.h"

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
constexpr int viewWidth = 440;
constexpr int textHeight = 140;
} // namespace

DetailsView::DetailsView(const QString &details, Action onClose)
{
    setFixedWidth(viewWidth);
    setBody(Column{
        padding(20),
        spacing(10),
        text(TextStyle::headline, u"Details"_s),
        scrolledText(u"Details"_s, TextStyle::captionMonospaced, textHeight, details),
        Row{Spacer{}, defaultButton(u"Close"_s, std::move(onClose))},
    });
}
