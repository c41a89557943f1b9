#include "platform/linux/appearance/GtkTheme.h"
#include "support/TemporaryFiles.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
using Files = QMap<QString, QByteArray>;

/// A home folder and the system's folder of themes.
struct Folders : TemporaryFiles {
    Folders()
    {
        qputenv("HOME", QFile::encodeName(folder.filePath(u"home"_s)));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.filePath(u"config"_s)));
        qputenv("XDG_CONFIG_DIRS", QFile::encodeName(folder.filePath(u"xdg"_s)));
        qputenv("XDG_DATA_HOME", QFile::encodeName(folder.filePath(u"data"_s)));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(folder.filePath(u"share"_s)));
    }

    using TemporaryFiles::write;
    void write(const Files &files) const
    {
        for (auto file = files.begin(); file != files.end(); ++file)
            write(file.key(), file.value());
    }
};

const QString own = u"share/themes/Own/"_s;
const QString css = own + u"gtk-3.0/gtk.css"_s;

Files onlyCss(const QByteArray &content)
{
    return {{css, content}};
}
} // namespace

Q_DECLARE_METATYPE(GtkTheme)

class GtkThemeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsADarkThemeByItsColours_data()
    {
        QTest::addColumn<Files>("files");
        QTest::addColumn<bool>("isDark");
        QTest::newRow("dark") << onlyCss("@define-color theme_bg_color #3b3b3e;") << true;
        QTest::newRow("light") << onlyCss("@define-color theme_bg_color #f0f0f0;") << false;
        QTest::newRow("short") << onlyCss("@define-color theme_bg_color #222;") << true;
        QTest::newRow("numbers") << onlyCss("@define-color theme_bg_color rgb(24, 25, 26);")
                                 << true;
        QTest::newRow("numbers of a light one")
            << onlyCss("@define-color theme_bg_color rgba( 240,241 , 242, 0.95 );") << false;
        QTest::newRow("a name") << onlyCss("@define-color theme_bg_color black;") << true;
        QTest::newRow("a name that is empty") << onlyCss("@define-color theme_bg_color ;") << false;
        QTest::newRow("another colour's name")
            << onlyCss("@define-color dusk #102030;\n@define-color theme_bg_color @dusk;") << true;
        QTest::newRow("a colour that is defined later")
            << onlyCss("@define-color theme_bg_color @night;\n@define-color night #102030;")
            << true;
        QTest::newRow("a shade of a colour")
            << onlyCss("@define-color night #102030;\n"
                       "@define-color theme_bg_color shade(@night, 1.1);")
            << true;
        QTest::newRow("other spaces")
            << onlyCss("button{color:red}@define-color\ttheme_bg_color\n  #111111 ;") << true;
        QTest::newRow("the later of two definitions")
            << onlyCss("@define-color theme_bg_color #eeeeee;\n"
                       "@define-color theme_bg_color #111111;")
            << true;
        QTest::newRow("not what is commented out")
            << onlyCss("@define-color theme_bg_color #eeeeee;\n"
                       "/* @define-color theme_bg_color #111111; */")
            << false;
        QTest::newRow("the base of others") << onlyCss("@define-color bg_color #111111;") << true;
        QTest::newRow("the name in newer themes")
            << onlyCss("@define-color window_bg_color #111111;") << true;
        QTest::newRow("the end of a large file")
            << onlyCss(QByteArray("button { color: @fg; }\n").repeated(30'000)
                       + "@define-color theme_bg_color #111111;")
            << true;
        QTest::newRow("an imported file")
            << Files{{css, "@import url(\"gtk-main.css\");\n"},
                     {own + u"gtk-3.0/gtk-main.css"_s, "@define-color theme_bg_color #111111;"}}
            << true;
        QTest::newRow("an imported file of another folder")
            << Files{{css, "@import '../common/colors.css';\n"},
                     {own + u"common/colors.css"_s, "@define-color theme_bg_color #111111;"}}
            << true;
        QTest::newRow("an imported file that is overridden")
            << Files{{css, "@import url(main.css);\n@define-color theme_bg_color #eeeeee;"},
                     {own + u"gtk-3.0/main.css"_s, "@define-color theme_bg_color #111111;"}}
            << false;
        QTest::newRow("the file for newer versions of GTK")
            << Files{{css, "@define-color theme_bg_color #eeeeee;"},
                     {own + u"gtk-3.20/gtk.css"_s, "@define-color theme_bg_color #111111;"}}
            << true;
    }
    void knowsADarkThemeByItsColours()
    {
        QFETCH(const Files, files);
        const Folders folders;
        folders.write(files);
        QTEST(isDark({.name = u"Own"_s}), "isDark");
    }

    void findsThemes_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::newRow("of the user") << u"home/.themes"_s;
        QTest::newRow("of the user, elsewhere") << u"data/themes"_s;
        QTest::newRow("of the system") << u"share/themes"_s;
    }
    void findsThemes()
    {
        QFETCH(const QString, folder);
        const Folders folders;
        folders.write(folder + u"/Own/gtk-3.0/gtk.css"_s, "@define-color theme_bg_color #111111;");
        QVERIFY(isDark({.name = u"Own"_s}));
    }

    void knowsThemesWithoutColoursByTheirNames_data()
    {
        QTest::addColumn<GtkTheme>("theme");
        QTest::addColumn<bool>("isDark");
        const auto dark = GtkVariant::dark;
        QTest::newRow("GTK's own") << GtkTheme{u"Adwaita"_s} << false;
        QTest::newRow("GTK's own, dark") << GtkTheme{u"Adwaita-dark"_s} << true;
        QTest::newRow("GTK's own, in its dark variant") << GtkTheme{u"Adwaita"_s, dark} << true;
        QTest::newRow("high contrast") << GtkTheme{u"HighContrast"_s} << false;
        QTest::newRow("high contrast, inverse") << GtkTheme{u"HighContrastInverse"_s} << true;
        QTest::newRow("another dark one") << GtkTheme{u"Arc-Dark"_s} << true;
        QTest::newRow("one with dark title bars") << GtkTheme{u"Arc-Darker"_s} << false;
        QTest::newRow("none") << GtkTheme{} << false;
        QTest::newRow("none, but in the dark") << GtkTheme{{}, dark} << true;
    }
    void knowsThemesWithoutColoursByTheirNames()
    {
        QFETCH(const GtkTheme, theme);
        const Folders folders;
        QTEST(isDark(theme), "isDark");
    }

    void takesTheDarkVariantWhereThereIsOne()
    {
        const Folders folders;
        folders.write(css, "@define-color theme_bg_color #eeeeee;");
        const GtkTheme dark{u"Own"_s, GtkVariant::dark};
        QVERIFY(!isDark(dark));
        folders.write(own + u"gtk-3.0/gtk-dark.css"_s, "@define-color theme_bg_color #111111;");
        QVERIFY(isDark(dark));
        QVERIFY(!isDark({.name = u"Own"_s}));
    }

    void survivesStrangeThemes_data()
    {
        QTest::addColumn<Files>("files");
        QTest::newRow("nothing") << onlyCss({});
        QTest::newRow("a colour that refers to itself")
            << onlyCss("@define-color theme_bg_color @bg_color;\n"
                       "@define-color bg_color @theme_bg_color;");
        QTest::newRow("files that import each other")
            << Files{{css, "@import 'a.css';@import 'a.css';@import 'a.css';@import 'a.css';"},
                     {own + u"gtk-3.0/a.css"_s,
                      "@import 'gtk.css';@import 'gtk.css';@import 'gtk.css';@import 'gtk.css';"}};
        QTest::newRow("a file outside of the theme") << Files{
            {css, "@import '../../Other/gtk-3.0/gtk.css';"},
            {u"share/themes/Other/gtk-3.0/gtk.css"_s, "@define-color theme_bg_color #111111;"}};
        QTest::newRow("a missing file") << onlyCss("@import 'missing.css';@import ;@import url();");
        QTest::newRow("a file of GTK's") << onlyCss("@import url(\"resource:///org/gtk/a.css\");");
        QTest::newRow("a statement without an end") << onlyCss("@define-color theme_bg_color #111");
        QTest::newRow("a comment without an end") << onlyCss("/* @define-color bg_color #111;");
        QTest::newRow("signs only") << onlyCss(QByteArray(1'000'000, '@') + ';');
        QTest::newRow("too much") << onlyCss(QByteArray(5'000'000, ' ')
                                             + "@define-color theme_bg_color #111111;");
        QTest::newRow("a folder") << Files{{css + u"/file"_s, {}}};
    }
    void survivesStrangeThemes()
    {
        QFETCH(const Files, files);
        const Folders folders;
        folders.write(files);
        QVERIFY(!isDark({.name = u"Own"_s}));
    }

    void readsTheUsersChoice_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<GtkTheme>("theme");
        QTest::newRow("nothing") << QByteArray() << GtkTheme();
        QTest::newRow("a theme") << QByteArray("[Settings]\ngtk-theme-name=Own\n")
                                 << GtkTheme{u"Own"_s};
        QTest::newRow("the dark variant")
            << QByteArray("[Settings]\ngtk-application-prefer-dark-theme=1\n")
            << GtkTheme{{}, GtkVariant::dark};
        QTest::newRow("the dark variant, as a word")
            << QByteArray("[Settings]\ngtk-application-prefer-dark-theme = true\n")
            << GtkTheme{{}, GtkVariant::dark};
        QTest::newRow("the standard variant")
            << QByteArray("[Settings]\ngtk-application-prefer-dark-theme=0\n") << GtkTheme();
    }
    void readsTheUsersChoice()
    {
        QFETCH(const QByteArray, content);
        QFETCH(const GtkTheme, theme);
        const Folders folders;
        folders.write(u"config/gtk-3.0/settings.ini"_s, content);
        QVERIFY(readGtkTheme() == theme);
    }
};

QTEST_GUILESS_MAIN(GtkThemeTest)
#include "GtkThemeTest.moc"
