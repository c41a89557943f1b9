#include "settings/WelcomeCard.h"

#include "model/DefaultsKeys.h"
#include "platform/UserDefaults.h"
#include "platform/Wording.h"

using namespace Qt::StringLiterals;
using namespace viewkit;

Item welcomeCard(UserDefaults &defaults, const Wording &wording)
{
    const auto isNewUser = [&defaults] {
        return !defaults.boolean(DefaultsKeys::hasSeenWelcome).value_or(false);
    };
    const auto dismiss = [&defaults] { defaults.setBoolean(DefaultsKeys::hasSeenWelcome, true); };
    const Item welcome = card(Column{
        padding(12),
        spacing(6),
        Row{
            spacing(6),
            symbol(u"hand.wave"_s, TextStyle::headline),
            text(TextStyle::headline, u"Welcome to Corvane"_s),
            Spacer{},
        },
        paragraph(
            TextStyle::body,
            u"Each shortcut is a key combination that opens an app, a folder, a file or "
            "a website, or runs a Shortcut, from anywhere on your %1."_s.arg(wording.computer())),
        paragraph(TextStyle::body,
                  u"The one thing that can go wrong: if another app or %1 already uses the "
                  "same combination, one of them may win and the other will not fire. The app "
                  "warns you when it can tell."_s.arg(wording.system())),
        Row{Spacer{}, button(u"Got it"_s, dismiss)},
    });
    return shownWhen(isNewUser, Column{padding(12), welcome});
}
