#include "support/DesktopLook.h"

#include "support/ProgramUnderTest.h"
#include "support/SettingsDesk.h"

using namespace Qt::StringLiterals;

namespace
{
const QByteArray breezeDark = R"(
[Colors:Button]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
[Colors:Selection]
BackgroundNormal=61,174,233
ForegroundNormal=252,252,252
[Colors:Tooltip]
BackgroundNormal=49,54,59
ForegroundNormal=252,252,252
[Colors:View]
BackgroundAlternate=35,38,41
BackgroundNormal=27,30,32
ForegroundNormal=252,252,252
ForegroundInactive=161,169,177
ForegroundLink=29,153,243
ForegroundVisited=155,89,182
[Colors:Window]
BackgroundNormal=42,46,50
ForegroundNormal=252,252,252
)";

const QByteArray whiteOnBlack = R"(
[Colors:Button]
BackgroundNormal=0,0,0
ForegroundNormal=255,255,255
[Colors:Selection]
BackgroundNormal=255,255,0
ForegroundNormal=0,0,0
[Colors:Tooltip]
BackgroundNormal=0,0,0
ForegroundNormal=255,255,255
[Colors:View]
BackgroundAlternate=0,0,0
BackgroundNormal=0,0,0
ForegroundNormal=255,255,255
ForegroundInactive=255,255,255
ForegroundLink=255,255,0
ForegroundVisited=255,255,0
[Colors:Window]
BackgroundNormal=0,0,0
ForegroundNormal=255,255,255
)";

const QByteArray blackOnWhite = R"(
[Colors:Button]
BackgroundNormal=255,255,255
ForegroundNormal=0,0,0
[Colors:Selection]
BackgroundNormal=0,0,128
ForegroundNormal=255,255,255
[Colors:Tooltip]
BackgroundNormal=255,255,255
ForegroundNormal=0,0,0
[Colors:View]
BackgroundAlternate=255,255,255
BackgroundNormal=255,255,255
ForegroundNormal=0,0,0
ForegroundInactive=0,0,0
ForegroundLink=0,0,255
ForegroundVisited=0,0,128
[Colors:Window]
BackgroundNormal=255,255,255
ForegroundNormal=0,0,0
)";

const QByteArray largeFont = "font=Sans Serif,13.5,-1,5,50,0,0,0,0,0\n";

const QByteArray hardEdges = R"(<?xml version="1.0"?>
<!DOCTYPE fontconfig SYSTEM "fonts.dtd">
<fontconfig>
  <include>/etc/fonts/fonts.conf</include>
  <match target="font">
    <edit name="antialias" mode="assign"><bool>false</bool></edit>
  </match>
</fontconfig>
)";
} // namespace

void DesktopLook::setUp(ProgramUnderTest &program) const
{
    program.environment.insert(u"QT_SCALE_FACTOR"_s, QString::fromLatin1(scale));
    if (colors.isEmpty() && font.isEmpty())
        return;
    program.environment.insert(u"XDG_CURRENT_DESKTOP"_s, u"KDE"_s);
    program.environment.insert(u"KDE_SESSION_VERSION"_s, u"5"_s);
    SettingsDesk::write(program.configHome() + u"/kdeglobals"_s, "[General]\n" + font + colors);
}

QList<DesktopLook> DesktopLook::measured()
{
    return {
        {.name = u"light"_s},
        {.name = u"dark"_s, .prefersDark = true},
        {.name = u"white on black"_s, .colors = whiteOnBlack},
    };
}

QList<DesktopLook> DesktopLook::others()
{
    return {
        {.name = u"black on white"_s, .colors = blackOnWhite},
        {.name = u"dark, of KDE"_s, .colors = breezeDark},
        {.name = u"large font"_s, .font = largeFont},
        {.name = u"150 %"_s, .scale = "1.5"},
        {.name = u"200 %, dark"_s, .scale = "2", .prefersDark = true},
        {.name = u"200 %, large font"_s, .font = largeFont, .scale = "2"},
    };
}

void setHardEdges(ProgramUnderTest &program)
{
    const QString fonts = program.home.filePath(u"fonts.conf"_s);
    SettingsDesk::write(fonts, hardEdges);
    program.environment.insert(u"FONTCONFIG_FILE"_s, fonts);
}
