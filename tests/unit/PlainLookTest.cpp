#include "app/PlainLook.h"
#include "fakes/FakeAppearance.h"
#include "support/Contrast.h"
#include "viewkit/DarkPalette.h"
#include "viewkit/PlainStyle.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QIcon>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QToolTip>
#include <algorithm>
#include <array>
#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
constexpr std::array groups{QPalette::Active, QPalette::Inactive, QPalette::Disabled};

QColor windowColor()
{
    return QApplication::palette().color(QPalette::Window);
}

bool isDarkNow()
{
    return windowColor() == darkPalette().color(QPalette::Window);
}

/// The colours of a tool tip that is shown now.
std::pair<QColor, QColor> toolTipColors()
{
    QToolTip::showText({10, 10}, u"tip"_s);
    const auto windows = QApplication::topLevelWidgets();
    const auto tip = std::ranges::find_if(windows, [](const QWidget *window) {
        return window->isVisible() && window->inherits("QTipLabel");
    });
    if (tip == windows.end())
        return {};
    const QPalette palette = (*tip)->palette();
    const std::pair colors(palette.color((*tip)->foregroundRole()),
                           palette.color((*tip)->backgroundRole()));
    (*tip)->close();
    return colors;
}

QString fileOfIcon(const QString &theme)
{
    return theme + u"/16x16/apps/only-in-"_s + theme.toLower() + u".png"_s;
}

/// Icon themes with one icon each.
struct IconThemes {
    explicit IconThemes(const QStringList &names)
    {
        for (const QString &name : names)
            add(name);
        QIcon::setThemeSearchPaths({folder.path()});
        QIcon::setFallbackThemeName({});
    }

    void add(const QString &name) const
    {
        QVERIFY(QDir(folder.path()).mkpath(name + u"/16x16/apps"_s));
        QFile index(folder.filePath(name + u"/index.theme"_s));
        QVERIFY(index.open(QIODevice::WriteOnly));
        index.write("[Icon Theme]\nName=Test\nDirectories=16x16/apps\n\n"
                    "[16x16/apps]\nSize=16\nType=Fixed\n");
        QImage image(16, 16, QImage::Format_ARGB32);
        image.fill(Qt::red);
        QVERIFY(image.save(folder.filePath(fileOfIcon(name))));
    }

    static bool has(const QString &theme)
    {
        return !QIcon::fromTheme(u"only-in-"_s + theme.toLower()).isNull();
    }

    QTemporaryDir folder;
};

using Make = std::function<QWidget *()>;

/// The highest contrast to what is around it in the frame of the picture.
double contrastOfFrame(const QImage &picture, const QColor &around)
{
    constexpr int width = 3;
    double most = 1;
    for (int x = 0; x < width; ++x)
        most = std::max(most, contrast(picture.pixelColor(x, picture.height() / 2), around));
    return most;
}

QPalette highContrast(const QColor &text, const QColor &ground)
{
    QPalette palette = darkPalette();
    for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button})
        palette.setColor(role, ground);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, text);
    return palette;
}
} // namespace

Q_DECLARE_METATYPE(Make)

class PlainLookTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        QApplication::setStyle(u"fusion"_s);
        QApplication::setPalette(QPalette());
    }

    void isLightWhereTheDesktopIs()
    {
        FakeAppearance desktop;
        const QColor before = windowColor();
        const PlainLook look(desktop);
        QCOMPARE(windowColor(), before);
        QVERIFY(!isDarkNow());
    }

    void isDarkFromTheStartWhereTheDesktopIs()
    {
        FakeAppearance desktop;
        desktop.setPrefersDark(true);
        const PlainLook look(desktop);
        QVERIFY(isDarkNow());
    }

    void followsTheDesktop()
    {
        FakeAppearance desktop;
        const PlainLook look(desktop);
        const QPalette light = QApplication::palette();
        for (int time = 0; time < 2; ++time) {
            desktop.setPrefersDark(true);
            QVERIFY(isDarkNow());
            desktop.setPrefersDark(false);
            QCOMPARE(QApplication::palette(), light);
        }
    }

    void staysDarkWhenItIsToldSoAgain()
    {
        FakeAppearance desktop;
        const PlainLook look(desktop);
        desktop.setPrefersDark(true);
        desktop.setPrefersDark(true);
        QVERIFY(isDarkNow());
    }

    void isDarkThoughQtHasMixedThePalette()
    {
        PlainStyle style;
        style.setDark(true);
        QPalette mixed = style.standardPalette();
        mixed.setColor(QPalette::Link, QColor(0x30, 0x8c, 0xc6));
        style.polish(mixed);
        QCOMPARE(mixed.color(QPalette::Window), darkPalette().color(QPalette::Window));
    }

    void hasDarkToolTips()
    {
        FakeAppearance desktop;
        const PlainLook look(desktop);
        const auto light = toolTipColors();
        desktop.setPrefersDark(true);
        const auto dark = toolTipColors();
        QCOMPARE(dark.first, darkPalette().color(QPalette::ToolTipText));
        QCOMPARE(dark.second, darkPalette().color(QPalette::ToolTipBase));
        desktop.setPrefersDark(false);
        QCOMPARE(toolTipColors(), light);
    }

    void leavesTheDesktopsOwnStyleAlone()
    {
        auto *const own = new QProxyStyle(u"windows"_s);
        QApplication::setStyle(own);
        FakeAppearance desktop;
        const PlainLook look(desktop);
        desktop.setPrefersDark(true);
        QCOMPARE(QApplication::style(), own);
        QVERIFY(!isDarkNow());
    }

    void survivesAnotherStyle()
    {
        FakeAppearance desktop;
        const PlainLook look(desktop);
        QApplication::setStyle(u"windows"_s);
        desktop.setPrefersDark(true);
        QVERIFY(!isDarkNow());
    }

    void findsIconsWhereTheDesktopsThemeIsMissing_data()
    {
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QString>("found");
        QTest::newRow("GNOME's") << QStringList{u"hicolor"_s, u"breeze"_s, u"Adwaita"_s}
                                 << u"Adwaita"_s;
        QTest::newRow("Plasma's") << QStringList{u"hicolor"_s, u"breeze"_s} << u"breeze"_s;
        QTest::newRow("those of all programs") << QStringList{u"hicolor"_s} << u"hicolor"_s;
    }
    void findsIconsWhereTheDesktopsThemeIsMissing()
    {
        QFETCH(const QStringList, installed);
        QFETCH(const QString, found);
        const IconThemes themes(installed);
        // Qt remembers themes by their names.
        QIcon::setThemeName(u"missing-where-"_s + found + u"-is"_s);
        FakeAppearance desktop;
        const PlainLook look(desktop);
        QVERIFY(IconThemes::has(found));
    }

    void takesTheDesktopsIcons()
    {
        const IconThemes themes({u"hicolor"_s, u"Own"_s});
        QIcon::setThemeName(u"missing"_s);
        FakeAppearance desktop;
        const PlainLook look(desktop);
        QVERIFY(!IconThemes::has(u"Own"_s));
        desktop.ownIconTheme = u"Own"_s;
        Q_EMIT desktop.changed();
        QVERIFY(IconThemes::has(u"Own"_s));
    }

    void takesTheDesktopsColours()
    {
        FakeAppearance desktop;
        const PlainLook look(desktop);
        const QPalette before = QApplication::palette();
        desktop.ownPalette = QPalette(QColor(0x23, 0x24, 0x25));
        Q_EMIT desktop.changed();
        QCOMPARE(windowColor(), QColor(0x23, 0x24, 0x25));
        desktop.ownPalette.reset();
        Q_EMIT desktop.changed();
        QCOMPARE(QApplication::palette(), before);
    }

    void takesTheDesktopsFont()
    {
        const QFont before = QApplication::font();
        FakeAppearance desktop;
        const PlainLook look(desktop);
        QCOMPARE(QApplication::font(), before);
        desktop.ownFont = QFont(u"Sans"_s, 17);
        Q_EMIT desktop.changed();
        QCOMPARE(QApplication::font().pointSize(), 17);
        QApplication::setFont(before);
    }

    void hasADarkColourForEverything()
    {
        const QPalette palette = darkPalette();
        for (const auto group : groups) {
            for (int role = 0; role < QPalette::NColorRoles; ++role)
                QCOMPARE(palette.isBrushSet(group, QPalette::ColorRole(role)),
                         role != QPalette::NoRole);
        }
    }

    void writesInLegibleColours_data()
    {
        QTest::addColumn<QPalette::ColorRole>("text");
        QTest::addColumn<QPalette::ColorRole>("ground");
        QTest::newRow("in windows") << QPalette::WindowText << QPalette::Window;
        QTest::newRow("in fields") << QPalette::Text << QPalette::Base;
        QTest::newRow("in every other line") << QPalette::Text << QPalette::AlternateBase;
        QTest::newRow("on buttons") << QPalette::ButtonText << QPalette::Button;
        QTest::newRow("in a selection") << QPalette::HighlightedText << QPalette::Highlight;
        QTest::newRow("of links") << QPalette::Link << QPalette::Window;
        QTest::newRow("in tool tips") << QPalette::ToolTipText << QPalette::ToolTipBase;
    }
    void writesInLegibleColours()
    {
        QFETCH(const QPalette::ColorRole, text);
        QFETCH(const QPalette::ColorRole, ground);
        for (const bool isDark : {false, true}) {
            FakeAppearance desktop;
            desktop.setPrefersDark(isDark);
            const PlainLook look(desktop);
            const QPalette palette = QApplication::palette();
            for (const auto group : groups) {
                // What is disabled is not selected, and has no links.
                if (group == QPalette::Disabled && ground != QPalette::Window)
                    continue;
                const double ratio =
                    contrast(palette.color(group, text), palette.color(group, ground));
                QVERIFY2(ratio >= 4.5, qPrintable(u"group %1: %2"_s.arg(group).arg(ratio)));
            }
        }
    }

    void makesTheDesktopsOwnColoursLegible_data()
    {
        QTest::addColumn<QPalette>("own");
        QTest::newRow("white on black") << highContrast(Qt::white, Qt::black);
        QTest::newRow("black on white") << highContrast(Qt::black, Qt::white);
        QTest::newRow("black on grey") << highContrast(Qt::black, QColor(0xd0, 0xd0, 0xd0));
    }
    void makesTheDesktopsOwnColoursLegible()
    {
        QFETCH(const QPalette, own);
        QPalette palette = own;
        palette.setColor(QPalette::Highlight, QColor(0x80, 0x90, 0xa0));
        palette.setColor(QPalette::HighlightedText, Qt::white);
        for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
            palette.setColor(QPalette::Disabled, role, palette.color(QPalette::Window));
        PlainStyle style;
        style.polish(palette);
        const auto ratio = [&palette](QPalette::ColorGroup group, QPalette::ColorRole text,
                                      QPalette::ColorRole ground) {
            return contrast(palette.color(group, text), palette.color(group, ground));
        };
        QVERIFY(ratio(QPalette::Active, QPalette::HighlightedText, QPalette::Highlight) >= 4.5);
        QVERIFY(ratio(QPalette::Disabled, QPalette::WindowText, QPalette::Window) >= 4.5);
        QVERIFY(ratio(QPalette::Disabled, QPalette::Text, QPalette::Base) >= 4.5);
        QVERIFY(ratio(QPalette::Disabled, QPalette::ButtonText, QPalette::Button) >= 4.5);
        // It still can be told from what is enabled.
        QVERIFY(contrast(palette.color(QPalette::Disabled, QPalette::ButtonText),
                         palette.color(QPalette::Active, QPalette::ButtonText))
                >= 1.5);
    }

    void framesControlsOnDarkGrounds_data()
    {
        QTest::addColumn<Make>("make");
        QTest::newRow("a button") << Make([] { return new QPushButton(u"Button"_s); });
        QTest::newRow("a check box") << Make([] { return new QCheckBox(u"Box"_s); });
        QTest::newRow("a field") << Make([] { return new QLineEdit; });
        QTest::newRow("a picker") << Make([] { return new QComboBox; });
        QTest::newRow("a text area") << Make([] { return new QPlainTextEdit; });
    }
    void framesControlsOnDarkGrounds()
    {
        QFETCH(const Make, make);
        QApplication::setStyle(new PlainStyle);
        for (const QPalette &palette : {darkPalette(), highContrast(Qt::white, Qt::black)}) {
            QApplication::setPalette(palette);
            const std::unique_ptr<QWidget> control(make());
            control->resize(100, 24);
            const QColor around = palette.color(QPalette::Window);
            const double ratio = contrastOfFrame(control->grab().toImage(), around);
            QVERIFY2(ratio >= 2.5, QByteArray::number(ratio).constData());
        }
    }

    void leavesTheFrameThatMarksTheDefaultButton()
    {
        QApplication::setPalette(darkPalette());
        QApplication::setStyle(new PlainStyle);
        QWidget window;
        QPushButton button(u"OK"_s, &window);
        button.setDefault(true);
        const QImage image = button.grab().toImage();
        QApplication::setStyle(u"fusion"_s);
        QCOMPARE(image, button.grab().toImage());
    }
};

QTEST_MAIN(PlainLookTest)
#include "PlainLookTest.moc"
