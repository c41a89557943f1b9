#include "platform/linux/appearance/XSettings.h"
#include "fakes/XSettingsContent.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
QByteArray settings(QDataStream::ByteOrder order = QDataStream::LittleEndian)
{
    return XSettingsContent(order)
        .addNumber("Xft/DPI", 98304)
        .addColor("Gtk/Colour")
        .addText("Net/IconThemeName", "Own icons")
        .addText("Net/ThemeName", "Own-Theme")
        .addText("Gtk/FontName", "Sans 10")
        .bytes();
}
} // namespace

class XSettingsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsTheTheme_data()
    {
        QTest::addColumn<QByteArray>("content");
        QTest::addColumn<QString>("theme");
        QTest::newRow("of a small machine") << settings() << u"Own-Theme"_s;
        QTest::newRow("of a big machine") << settings(QDataStream::BigEndian) << u"Own-Theme"_s;
        QTest::newRow("where it is the first setting")
            << XSettingsContent().addText("Net/ThemeName", "A").bytes() << u"A"_s;
        QTest::newRow("where it is not announced")
            << XSettingsContent().addText("Gtk/FontName", "Sans 10").bytes() << QString();
        QTest::newRow("where it is not a text")
            << XSettingsContent().addNumber("Net/ThemeName", 7).bytes() << QString();
        QTest::newRow("where nothing is announced") << XSettingsContent().bytes() << QString();
        QTest::newRow("without content") << QByteArray() << QString();
    }
    void findsTheTheme()
    {
        QFETCH(const QByteArray, content);
        QTEST(gtkThemeName(content), "theme");
    }

    void survivesContentThatIsCutOff()
    {
        const QByteArray content = settings();
        const qsizetype endOfTheme = content.indexOf("Own-Theme") + 9;
        for (qsizetype length = 0; length < endOfTheme; ++length)
            QCOMPARE(gtkThemeName(content.first(length)), QString());
    }

    void survivesContentThatIsDamaged()
    {
        const QByteArray content = settings();
        for (qsizetype place = 0; place < content.size(); ++place) {
            for (const char byte : {'\x7f', '\xff'}) {
                QByteArray damaged = content;
                damaged[place] = byte;
                QVERIFY(gtkThemeName(damaged).size() < content.size());
            }
        }
    }
};

QTEST_GUILESS_MAIN(XSettingsTest)
#include "XSettingsTest.moc"
