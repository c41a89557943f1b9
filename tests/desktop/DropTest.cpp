// What users drag from windows of other programs to the settings window, by the real mouse.

#include "support/Mouse.h"
#include "support/Screen.h"
#include "support/SettingsDesk.h"
#include "support/Windows.h"

#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace Role;

namespace
{
const QString addresses = u"text/uri-list"_s;
const QStringList everyAction{u"copy"_s, u"move"_s, u"link"_s};

/// A window of another program from which something can be dragged.
class Source
{
public:
    Source(const QString &type, const QByteArray &data, const QStringList &actions)
    {
        m_process.start(QCoreApplication::applicationDirPath() + u"/drag-source"_s,
                        QStringList(type) + actions);
        m_process.write(data);
        m_process.closeWriteChannel();
        [] { QTRY_COMPARE(activeTitle(), u"Source"_s); }();
        moveWindow(*windowOnScreen(u"Source"_s), {0, 20});
    }
    ~Source() { end(); }

    static QRect geometry() { return geometryOf(*windowOnScreen(u"Source"_s)); }

    /// What it has told so far: the actions that it was offered, and that of the drop.
    QByteArrayList told()
    {
        m_told += m_process.readAllStandardOutput();
        return m_told.trimmed().split('\n');
    }

    void end()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
    QByteArray m_told;
};

struct Desk : SettingsDesk {
    Desk()
    {
        addApp(storedControlAltJ);
        open();
    }

    QRect window() const { return geometryOf(*windowOnScreen(u"Corvane"_s)); }

    /// Presses the button on the source and moves to the middle of the window.
    void drag()
    {
        const QPoint from = Source::geometry().center();
        const QPoint to = window().center();
        mouse.moveTo(from);
        mouse.press();
        // Programs take only several steps for a drag.
        for (int step = 1; step <= 10; ++step)
            mouse.moveTo(from + (to - from) * step / 10);
    }

    bool hasRing() const
    {
        const QRect top(window().topLeft(), QSize(window().width(), 3));
        return contrast(screen.picture(top)) > 30;
    }

    Mouse mouse;
    Screen screen;
};
} // namespace

class DropTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void opensTheFilledEditor_data()
    {
        QTest::addColumn<QString>("type");
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QStringList>("actions");
        QTest::addColumn<QByteArray>("drop");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("target");
        QTest::newRow("a folder") << addresses << QByteArray("file:///usr/share\r\n") << everyAction
                                  << QByteArray("drop link") << u"share"_s << u"/usr/share"_s;
        QTest::newRow("several files")
            << addresses << QByteArray("file:///usr/share\r\nfile:///usr/bin\r\n")
            << QStringList{u"copy"_s} << QByteArray("drop copy") << u"share"_s << u"/usr/share"_s;
        QTest::newRow("text") << u"text/plain"_s << QByteArray(" https://example.org/a\n")
                              << everyAction << QByteArray("drop link") << u"example.org"_s
                              << u"https://example.org/a"_s;
    }
    void opensTheFilledEditor()
    {
        QFETCH(const QString, type);
        QFETCH(const QByteArray, data);
        QFETCH(const QStringList, actions);
        QFETCH(const QByteArray, drop);
        QFETCH(const QString, name);
        QFETCH(const QString, target);
        Desk desk;
        Source source(type, data, actions);
        desk.drag();
        QTRY_VERIFY(desk.hasRing());
        desk.mouse.release();
        // The editor is in front, so the user can type at once.
        const Accessible editor = desk.sheet(u"New shortcut"_s);
        QTRY_COMPARE(source.told().last(), drop);
        QVERIFY(!desk.hasRing());
        QCOMPARE(editor.await(field, u"Name"_s).text(), name);
        const bool isWebsite = target.startsWith(u"https"_s);
        QCOMPARE(isWebsite ? editor.find(field, u"Website"_s).text()
                           : editor.await(label, target).name(),
                 target);
        desk.press(editor, u"Cancel"_s);
        desk.awaitNoSheet();
    }

    void addsAnEntryWhoseKeysWork()
    {
        Desk desk;
        Source source(addresses, QUrl::fromLocalFile(desk.app.desktopFile()).toEncoded() + "\r\n",
                      everyAction);
        desk.drag();
        QTRY_VERIFY(desk.hasRing());
        desk.mouse.release();
        const Accessible editor = desk.sheet(u"New shortcut"_s);
        desk.press(editor, u"Record Shortcut"_s);
        QVERIFY(editor.await(button, u"Press the keys…"_s).isThere());
        desk.keyboard.type(controlAltK);
        QVERIFY(editor.await(button, u"Ctrl+Alt+K"_s).isThere());
        desk.press(editor, u"Add"_s);
        desk.awaitNoSheet();
        desk.verifyThatKeysRunTheApp(controlAltK);
    }

    void refusesTheRest_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QStringList>("actions");
        QTest::newRow("an address that no entry opens")
            << QByteArray("mailto:a@example.org\r\n") << everyAction;
        QTest::newRow("a file that would be moved")
            << QByteArray("file:///usr/share\r\n") << QStringList{u"move"_s};
    }
    void refusesTheRest()
    {
        QFETCH(const QByteArray, data);
        QFETCH(const QStringList, actions);
        Desk desk;
        Source source(addresses, data, actions);
        desk.drag();
        desk.mouse.release();
        QTRY_COMPARE(source.told().last(), QByteArray("drop none"));
        QVERIFY(!desk.hasSheet());
        QVERIFY(!desk.hasRing());
    }

    void survivesTheSource()
    {
        Desk desk;
        Source source(addresses, "file:///usr/share\r\n", everyAction);
        desk.drag();
        QTRY_VERIFY(desk.hasRing());
        source.end();
        desk.mouse.release();
        desk.mouse.moveTo(QPoint());
        desk.mouse.moveTo(desk.window().center());
        QTRY_VERIFY(!desk.hasRing());
        QVERIFY(!desk.hasSheet());
        desk.press(u"Add"_s);
        desk.press(desk.sheet(u"New shortcut"_s), u"Cancel"_s);
        desk.awaitNoSheet();
    }
};

QTEST_MAIN(DropTest)
#include "DropTest.moc"
