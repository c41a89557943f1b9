#include "settings/AboutView.h"

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
/// The design's width.
constexpr int aboutWidth = 400;

Item centredParagraph(TextStyle style, const QString &text)
{
    return centredLines(paragraph(style, text));
}
} // namespace

AboutView::AboutView(Action onClose)
{
    setFixedWidth(aboutWidth);
    setBody(Column{
        padding(24),
        spacing(10),
        centred(symbol(u"command.square"_s, 42)),
        centred(text(TextStyle::title2, u"Corvane"_s)),
        centredParagraph(
            TextStyle::body,
            u"Your own global shortcuts for apps, folders, files, websites and Shortcuts."_s),
        divider(),
        centredParagraph(
            TextStyle::callout,
            u"Privacy: the app records no keystrokes except the key combinations you set, and it "
            "sends nothing anywhere. It contains no network code. Your list stays on this Mac."_s),
        tinted(TextColor::secondary,
               centredParagraph(TextStyle::caption,
                                u"Global hotkeys use Apple's Carbon hot key API. No third-party "
                                "code is included."_s)),
        centred(defaultButton(u"Close"_s, std::move(onClose))),
    });
}
