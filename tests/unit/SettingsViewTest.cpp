#include "settings/SettingsView.h"
#include "support/Seen.h"
#include "support/StoreHome.h"

#include <QApplication>
#include <QFile>
#include <QLayout>
#include <QLineEdit>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString notFound = u"Not found"_s;

LaunchEntry website(const QString &name)
{
    return {.name = name, .kind = ActionKind::website, .target = u"https://example.org"_s};
}

/// The settings window on the screen.
struct Window : StoreHome {
    explicit Window(const QList<LaunchEntry> &entries = {})
        : StoreHome(entries)
        , view(*store)
    {
        view.show();
        if (!QTest::qWaitForWindowActive(&view))
            qFatal("the window did not become active");
    }

    QStringList rows()
    {
        QStringList names;
        for (QWidget *const row : seenAll(view, QAccessible::ListItem))
            names << nameOf(row);
        return names;
    }
    bool showsList() { return !seenAll(view, QAccessible::List).isEmpty(); }

    /// By the mouse, the first of that name.
    void click(const QString &button)
    {
        QTest::mouseClick(seenButton(view, button), Qt::LeftButton);
        QCoreApplication::processEvents();
    }

    SettingsView view;
};

/// The sheets on the screen.
QList<QWidget *> sheets()
{
    QList<QWidget *> found;
    for (QWidget *const window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->isModal())
            found << window;
    }
    return found;
}

QStringList titles()
{
    QStringList all;
    for (const QWidget *const sheet : sheets())
        all << sheet->windowTitle();
    return all;
}
} // namespace

class SettingsViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void saysThatThereAreNoShortcutsYet()
    {
        Window window;
        QCOMPARE(seenTexts(window.view),
                 QStringList({u"No shortcuts yet"_s,
                              u"Add a shortcut to open an app, folder, file or website, or run a "
                              "Shortcut, with one key combination."_s}));
        QVERIFY(!window.showsList());
        const auto buttons = seenAll(window.view, QAccessible::Button);
        QCOMPARE(buttons.size(), 2);
        QCOMPARE(nameOf(buttons.at(0)), u"Add"_s);
        QCOMPARE(nameOf(buttons.at(1)), u"Add"_s);
    }

    void centresTheEmptyStateBelowItsTools()
    {
        Window window;
        const auto buttons = seenAll(window.view, QAccessible::Button);
        const auto place = [&](QWidget *part) {
            return QRect(part->mapTo(&window.view, QPoint()), part->size());
        };
        QCOMPARE(place(buttons.at(0)).topLeft(), QPoint(10, 10));
        for (QWidget *const part : {buttons.at(1), seenText(window.view, u"No shortcuts yet"_s),
                                    seenAll(window.view, QAccessible::StaticText).last()})
            QVERIFY(std::abs(place(part).center().x() - window.view.width() / 2) <= 1);
        QVERIFY(seenAll(window.view, QAccessible::StaticText).last()->width() <= 360);
        const int top = place(buttons.at(0)).bottom();
        const int above = place(seenText(window.view, u"No shortcuts yet"_s)).top() - top;
        const int below = window.view.height() - place(buttons.at(1)).bottom();
        // The drawing above is 40 pixels high, and 10 away.
        QVERIFY(std::abs(above - 50 - below) < 30);
    }

    void showsTheListInsteadOnceThereIsAnEntry()
    {
        Window window;
        window.store->upsert(website(u"News"_s));
        QTRY_COMPARE(window.rows(), QStringList(u"News"_s));
        QVERIFY(window.showsList());
        QVERIFY(!seenText(window.view, u"No shortcuts yet"_s));
    }

    void givesTheListAllTheRoomBelowItsTools()
    {
        Window window({website(u"News"_s)});
        QWidget *const list = seenAll(window.view, QAccessible::List).first()->parentWidget();
        QCOMPARE(list->mapTo(&window.view, list->rect().bottomRight()),
                 window.view.rect().bottomRight());
        QCOMPARE(list->mapTo(&window.view, QPoint()).x(), 0);
        QVERIFY(list->height() > window.view.height() - 80);
    }

    void showsTheEmptyStateAgainWhenTheLastEntryGoes()
    {
        Window window({website(u"News"_s)});
        QVERIFY(!seenText(window.view, u"No shortcuts yet"_s));
        window.click(u"Delete"_s);
        QVERIFY(window.store->entries().isEmpty());
        QTRY_VERIFY(seenText(window.view, u"No shortcuts yet"_s));
        QVERIFY(!window.showsList());
        QCOMPARE(nameOf(window.view.focusWidget()), u"Add"_s);
    }

    void addsInASheetAnEntryThatIsNotInTheListYet_data()
    {
        QTest::addColumn<QList<LaunchEntry>>("entries");
        QTest::addColumn<qsizetype>("button");
        const QList<LaunchEntry> none;
        QTest::newRow("by the button above the list") << QList{website(u"News"_s)} << qsizetype(0);
        QTest::newRow("by the button above no list") << none << qsizetype(0);
        QTest::newRow("by the button in place of the list") << none << qsizetype(1);
    }

    void addsInASheetAnEntryThatIsNotInTheListYet()
    {
        QFETCH(const QList<LaunchEntry>, entries);
        QFETCH(const qsizetype, button);
        Window window(entries);
        QTest::mouseClick(seenAll(window.view, QAccessible::Button).at(button), Qt::LeftButton);
        QTRY_COMPARE(titles(), QStringList(u"New shortcut"_s));
        QCOMPARE(window.store->entries(), entries);
        QWidget &sheet = *sheets().first();
        QCOMPARE(sheet.windowModality(), Qt::WindowModal);
        const auto *const name =
            qobject_cast<QLineEdit *>(seen(sheet, QAccessible::EditableText, u"Name"_s));
        QVERIFY(name);
        QCOMPARE(name->text(), QString());
    }

    void addsTwoEntriesOneAfterTheOther()
    {
        Window window;
        window.click(u"Add"_s);
        QTRY_COMPARE(titles(), QStringList(u"New shortcut"_s));
        QTest::keyClick(sheets().first(), Qt::Key_Escape);
        QTRY_COMPARE(titles(), QStringList());
        window.click(u"Add"_s);
        QTRY_COMPARE(titles(), QStringList(u"New shortcut"_s));
    }

    void editsTheEntryOfTheRow()
    {
        Window window({website(u"News"_s), website(u"Weather"_s)});
        QWidget *const row = seen(window.view, QAccessible::ListItem, u"Weather"_s);
        QTest::mouseClick(seenButton(*row, u"Edit"_s), Qt::LeftButton);
        QTRY_COMPARE(titles(), QStringList(u"Edit shortcut"_s));
        const auto *const name = qobject_cast<QLineEdit *>(
            seen(*sheets().first(), QAccessible::EditableText, u"Name"_s));
        QVERIFY(name);
        QCOMPARE(name->text(), u"Weather"_s);
    }

    void deletesWithoutAsking()
    {
        Window window({website(u"News"_s), website(u"Weather"_s)});
        window.click(u"Delete"_s);
        QCOMPARE(window.store->entries().size(), 1);
        QTRY_COMPARE(window.rows(), QStringList(u"Weather"_s));
        QVERIFY(sheets().isEmpty());
    }

    void refreshesOnceForManyNotices()
    {
        Window window({website(u"News"_s)});
        window.setKeys(window.store->entries().first(), {40, 256});
        QCoreApplication::processEvents();
        window.platform.symbolicHotkeys.copies = 0;
        for (int count = 0; count < 20; ++count)
            window.store->announceChange();
        QCOMPARE(window.platform.symbolicHotkeys.copies, 0);
        QTRY_VERIFY(seenText(window.view, u"⌘K"_s));
        QCoreApplication::processEvents();
        QCOMPARE(window.platform.symbolicHotkeys.copies, 1);
    }

    void asksNobodyWhileItIsHidden()
    {
        Window window({website(u"News"_s)});
        window.setKeys(window.store->entries().first(), {40, 256});
        window.view.hide();
        QCoreApplication::processEvents();
        window.platform.symbolicHotkeys.copies = 0;
        window.store->announceChange();
        QCoreApplication::processEvents();
        QCOMPARE(window.platform.symbolicHotkeys.copies, 0);
        window.view.show();
        QVERIFY(seenText(window.view, u"⌘K"_s));
    }

    void looksForFilesAgainWhenTheUserComesBack()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(u"file"_s);
        Window window({{.name = u"File"_s, .kind = ActionKind::path, .target = path}});
        QVERIFY(seenText(window.view, notFound));
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QVERIFY(QFile(path).open(QFile::WriteOnly));
        window.view.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window.view));
        QTRY_VERIFY(!seenText(window.view, notFound));
    }

    void looksForFilesAgainWhenItIsShownAgain()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(u"file"_s);
        Window window({{.name = u"File"_s, .kind = ActionKind::path, .target = path}});
        QVERIFY(seenText(window.view, notFound));
        window.view.hide();
        QVERIFY(QFile(path).open(QFile::WriteOnly));
        window.view.show();
        QTRY_VERIFY(!seenText(window.view, notFound));
    }

    void isNeverTooSmall()
    {
        Window window;
        window.view.resize(10, 10);
        QCOMPARE(window.view.size(), QSize(580, 480));
    }

    void canStayAsSmallWithAnyEntry()
    {
        Window window({website(u"a name that is long "_s.repeated(30))});
        window.view.resize(580, 480);
        QCoreApplication::processEvents();
        QCOMPARE(window.view.size(), QSize(580, 480));
        QVERIFY(window.view.layout()->totalMinimumSize().width() <= 580);
    }

    void endsARecordingInTheMomentInWhichTheSheetIsClosed()
    {
        Window window;
        window.click(u"Add"_s);
        QTRY_COMPARE(sheets().size(), 1);
        QWidget &sheet = *sheets().constFirst();
        QTest::mouseClick(seenButton(sheet, u"Record Shortcut"_s), Qt::LeftButton);
        QVERIFY(window.platform.eventMonitor.monitored);
        QTest::mouseClick(seenButton(sheet, u"Cancel"_s), Qt::LeftButton);
        QVERIFY(!window.platform.eventMonitor.monitored);
        QVERIFY(sheets().isEmpty());
    }
};

QTEST_MAIN(SettingsViewTest)
#include "SettingsViewTest.moc"
