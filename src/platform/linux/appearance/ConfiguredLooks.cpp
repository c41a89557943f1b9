#include "platform/linux/appearance/ConfiguredLooks.h"

#include "platform/linux/base/FileWatch.h"
#include "platform/linux/base/IniFile.h"

#include <QStandardPaths>
#include <span>

using namespace Qt::StringLiterals;

namespace
{
struct ColorName {
    QPalette::ColorRole role;
    const char *setting;
};

constexpr const char *lxqtWindow = "Palette/window_color";
constexpr ColorName lxqtColors[] = {
    {QPalette::WindowText, "Palette/window_text_color"},
    {QPalette::ButtonText, "Palette/window_text_color"},
    {QPalette::Base, "Palette/base_color"},
    {QPalette::Text, "Palette/text_color"},
    {QPalette::Highlight, "Palette/highlight_color"},
    {QPalette::HighlightedText, "Palette/highlighted_text_color"},
    {QPalette::Link, "Palette/link_color"},
    {QPalette::LinkVisited, "Palette/link_visited_color"},
};

constexpr const char *plasmaWindow = "Colors:Window/BackgroundNormal";
constexpr ColorName plasmaColors[] = {
    {QPalette::WindowText, "Colors:Window/ForegroundNormal"},
    {QPalette::Button, "Colors:Button/BackgroundNormal"},
    {QPalette::ButtonText, "Colors:Button/ForegroundNormal"},
    {QPalette::Base, "Colors:View/BackgroundNormal"},
    {QPalette::AlternateBase, "Colors:View/BackgroundAlternate"},
    {QPalette::Text, "Colors:View/ForegroundNormal"},
    {QPalette::PlaceholderText, "Colors:View/ForegroundInactive"},
    {QPalette::Link, "Colors:View/ForegroundLink"},
    {QPalette::LinkVisited, "Colors:View/ForegroundVisited"},
    {QPalette::Highlight, "Colors:Selection/BackgroundNormal"},
    {QPalette::HighlightedText, "Colors:Selection/ForegroundNormal"},
    {QPalette::ToolTipBase, "Colors:Tooltip/BackgroundNormal"},
    {QPalette::ToolTipText, "Colors:Tooltip/ForegroundNormal"},
};

QString text(const IniSettings &settings, const char *name)
{
    return QString::fromUtf8(settings[name]).remove(u'"');
}

/// From the forms #efefef and 239,239,239. Invalid if there is none.
QColor color(const IniSettings &settings, const char *name)
{
    const QByteArray value = settings[name];
    const QByteArrayList numbers = value.split(',');
    if (numbers.size() < 3)
        return QColor(QString::fromLatin1(value));
    return QColor(numbers[0].toInt(), numbers[1].toInt(), numbers[2].toInt());
}

/// Nothing if not even the background of windows is there; Qt derives other missing colours from
/// it.
std::optional<QPalette> palette(const IniSettings &settings, const char *window,
                                std::span<const ColorName> others)
{
    const QColor background = color(settings, window);
    if (!background.isValid())
        return {};
    QPalette palette(background);
    for (const auto &[role, setting] : others) {
        if (const QColor found = color(settings, setting); found.isValid())
            palette.setColor(role, found);
    }
    return palette;
}

std::optional<QFont> font(const QString &description)
{
    QFont font;
    return !description.isEmpty() && font.fromString(description) ? std::optional(font)
                                                                  : std::nullopt;
}
} // namespace

QStringList looksFiles(LooksSource source)
{
    if (source == LooksSource::plasma)
        return configFiles(u"kdeglobals"_s);
    const QString file = u"lxqt/lxqt.conf"_s;
    return configFiles(file) + QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, file);
}

ConfiguredLooks readLooks(LooksSource source)
{
    const IniSettings settings = readIniFiles(looksFiles(source));
    switch (source) {
    case LooksSource::lxqt:
        return {
            .palette = palette(settings, lxqtWindow, lxqtColors),
            .font = font(text(settings, "Qt/font")),
            .iconTheme = text(settings, "General/icon_theme"),
        };
    case LooksSource::plasma:
        return {.palette = palette(settings, plasmaWindow, plasmaColors)};
    }
    Q_UNREACHABLE();
}
