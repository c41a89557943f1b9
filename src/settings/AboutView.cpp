#include "settings/AboutView.h"

#include "platform/Wording.h"

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

AboutView::AboutView(const Wording &wording, Action onClose)
{
    setFixedWidth(aboutWidth);
    const std::optional<QString> version = wording.version();
    setBody(Column{
        padding(24),
        spacing(10),
        centred(symbol(u"command.square"_s, 42)),
        centred(text(TextStyle::title2, u"Corvane"_s)),
        shownWhen(
            [version] { return version.has_value(); },
            centred(tinted(TextColor::secondary,
                           text(TextStyle::caption, u"Version "_s + version.value_or(QString()))))),
        centredParagraph(
            TextStyle::body,
            u"Your own global shortcuts for apps, folders, files, websites and Shortcuts."_s),
        divider(),
        centredParagraph(
            TextStyle::callout,
            u"Privacy: the app records no keystrokes except the key combinations you set, and it "
            "sends nothing anywhere. It contains no network code. Your list stays on this %1."_s
                .arg(wording.computer())),
        tinted(TextColor::secondary, centredParagraph(TextStyle::caption, wording.credits())),
        centred(defaultButton(u"Close"_s, std::move(onClose))),
    });
}
