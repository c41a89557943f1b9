#include "platform/linux/appearance/ConfiguredLooks.h"
#include "support/TemporaryFiles.h"

#include <QFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
/// The folders of a user's and of the system's configuration.
struct Folders : TemporaryFiles {
    Folders()
    {
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(folder.filePath(u"user"_s)));
        qputenv("XDG_CONFIG_DIRS", QFile::encodeName(folder.filePath(u"system"_s)));
        qputenv("XDG_DATA_HOME", QFile::encodeName(folder.filePath(u"user-data"_s)));
        qputenv("XDG_DATA_DIRS", QFile::encodeName(folder.filePath(u"share"_s)));
    }
};

const QByteArray ofTheDistribution = "[General]\n"
                                     "theme=Clearlooks\n"
                                     "icon_theme=breeze\n"
                                     "\n"
                                     "[Qt]\n"
                                     "font=\"Sans,11,-1,5,50,0,0,0,0,0\"\n"
                                     "style=Fusion\n";
} // namespace

class ConfiguredLooksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsTheFileOfLxqt_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("the user's") << u"user/lxqt/lxqt.conf"_s;
        QTest::newRow("the system's") << u"system/lxqt/lxqt.conf"_s;
        QTest::newRow("the distribution's") << u"share/lxqt/lxqt.conf"_s;
    }
    void readsTheFileOfLxqt()
    {
        QFETCH(const QString, path);
        const Folders folders;
        folders.write(path, ofTheDistribution);
        const ConfiguredLooks looks = readLooks(LooksSource::lxqt);
        QCOMPARE(looks.iconTheme, u"breeze"_s);
        QVERIFY(looks.font);
        QCOMPARE(looks.font->family(), u"Sans"_s);
        QCOMPARE(looks.font->pointSize(), 11);
        QCOMPARE(looks.font->weight(), QFont::Normal);
    }

    void readsFromTheSystemWhatTheUserHasNotChosen()
    {
        const Folders folders;
        folders.write(u"share/lxqt/lxqt.conf"_s, ofTheDistribution);
        folders.write(u"user/lxqt/lxqt.conf"_s, "[General]\nicon_theme=oxygen\n");
        const ConfiguredLooks looks = readLooks(LooksSource::lxqt);
        QCOMPARE(looks.iconTheme, u"oxygen"_s);
        QCOMPARE(looks.font->pointSize(), 11);
    }

    void readsTheColoursOfLxqt()
    {
        const Folders folders;
        folders.write(u"user/lxqt/lxqt.conf"_s,
                      "[Palette]\n"
                      "base_color=#282828\n"
                      "highlight_color=#640b0c\n"
                      "highlighted_text_color=#ebfdff\n"
                      "link_color=#8c9bff\n"
                      "text_color=#b8b8b8\n"
                      "window_color=#232323\n"
                      "window_text_color=#e1e6e6\n");
        const auto palette = readLooks(LooksSource::lxqt).palette;
        QVERIFY(palette);
        QCOMPARE(palette->color(QPalette::Window), QColor(0x23, 0x23, 0x23));
        QCOMPARE(palette->color(QPalette::Button), QColor(0x23, 0x23, 0x23));
        QCOMPARE(palette->color(QPalette::ButtonText), QColor(0xe1, 0xe6, 0xe6));
        QCOMPARE(palette->color(QPalette::Text), QColor(0xb8, 0xb8, 0xb8));
        QCOMPARE(palette->color(QPalette::Highlight), QColor(0x64, 0x0b, 0x0c));
    }

    void readsTheColoursOfPlasma()
    {
        const Folders folders;
        folders.write(u"system/kdeglobals"_s,
                      "[Colors:Window]\nBackgroundNormal=1,1,1\n"
                      "[Colors:Button]\nBackgroundNormal=49,54,59\n");
        folders.write(u"user/kdeglobals"_s,
                      "[Colors:Window]\nBackgroundNormal=42,46,50\nForegroundNormal=#fcfcfc\n"
                      "[Colors:Window][Inactive]\nBackgroundNormal=2,2,2\n"
                      "[Colors:View]\nBackgroundNormal=27,30,32\nForegroundNormal=nonsense\n");
        const auto palette = readLooks(LooksSource::plasma).palette;
        QVERIFY(palette);
        QCOMPARE(palette->color(QPalette::Window), QColor(42, 46, 50));
        QCOMPARE(palette->color(QPalette::WindowText), QColor(252, 252, 252));
        QCOMPARE(palette->color(QPalette::Button), QColor(49, 54, 59));
        QCOMPARE(palette->color(QPalette::Base), QColor(27, 30, 32));
        // Light on dark, though it is not told.
        QVERIFY(palette->color(QPalette::Text).lightness() > 200);
    }

    void knowsNoColoursWithoutThatOfWindows()
    {
        const Folders folders;
        folders.write(u"user/kdeglobals"_s, "[Colors:View]\nBackgroundNormal=27,30,32\n");
        QVERIFY(!readLooks(LooksSource::plasma).palette);
    }

    void knowsNothingWithoutAUsefulFile_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("an empty one") << QByteArray();
        QTest::newRow("of another kind") << QByteArray("\x7f"
                                                       "ELF\0\0[[=]=[=",
                                                       12);
        QTest::newRow("without groups") << QByteArray("icon_theme=breeze\nfont=Sans\n");
        QTest::newRow("an enormous one") << ofTheDistribution + QByteArray(2'000'000, '\n');
    }
    void knowsNothingWithoutAUsefulFile()
    {
        QFETCH(const QByteArray, content);
        const Folders folders;
        folders.write(u"user/lxqt/lxqt.conf"_s, content);
        const ConfiguredLooks looks = readLooks(LooksSource::lxqt);
        QVERIFY(looks.iconTheme.isEmpty());
        QVERIFY(!looks.font);
    }
};

QTEST_MAIN(ConfiguredLooksTest)
#include "ConfiguredLooksTest.moc"
