// The search field of the settings window.

#include "model/DefaultsKeys.h"
#include "settings/EntryList.h"
#include "support/SettingsWindow.h"

#include <QDir>
#include <QLineEdit>
#include <QScrollBar>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString nothingFound = u"No shortcuts found"_s;
constexpr qsizetype enough = 12;
constexpr KeyboardShortcuts::Shortcut commandShiftF5{96, 256 | 512};

/// "Site 1" and so on.
QList<LaunchEntry> sites(qsizetype count)
{
    QList<LaunchEntry> entries;
    for (qsizetype number = 1; number <= count; ++number)
        entries << SettingsWindow::website(u"Site %1"_s.arg(number));
    return entries;
}

/// The window of a user who has some things besides the sites.
struct Window : SettingsWindow {
    explicit Window(const QList<LaunchEntry> &entries = list())
        : SettingsWindow(entries)
    {
        settle();
    }

    static QList<LaunchEntry> list()
    {
        return sites(enough)
            + QList<LaunchEntry>{
                {.name = u"Papers"_s, .kind = ActionKind::path, .target = u"/home/me/Büro"_s},
                {.name = u"Paper shop"_s, .kind = ActionKind::shortcut, .target = u"Shop"_s}};
    }

    QLineEdit *field()
    {
        return qobject_cast<QLineEdit *>(seen(*view, QAccessible::EditableText, u"Search"_s));
    }
    QWidget *focus() { return view->window()->focusWidget(); }
    QString focusName() { return nameOf(focus()); }

    void type(const QString &text)
    {
        field()->setFocus();
        for (const QChar letter : text) {
            QTest::sendKeyEvent(QTest::Click, field(), Qt::Key_unknown, QString(letter), {});
            settle();
        }
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(focus(), key, modifiers);
        settle();
    }

    QString focusedRow()
    {
        for (QWidget *const row : seenAll(*view, QAccessible::ListItem)) {
            if (row->isAncestorOf(focus()))
                return nameOf(row);
        }
        return {};
    }

    QStringList rows()
    {
        QStringList names;
        for (QWidget *const row : seenAll(*view, QAccessible::ListItem))
            names << nameOf(row);
        return names;
    }

    void clickInRow(const QString &row, const QString &button)
    {
        QTest::mouseClick(seenButton(*seen(*view, QAccessible::ListItem, row), button),
                          Qt::LeftButton);
        settle();
    }

    /// As screen readers say it after the field's name.
    QString result() { return field()->accessibleDescription(); }
};
} // namespace

class EntrySearchTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isOfferedForLongLists()
    {
        Window window(sites(enough - 1));
        QVERIFY(!window.field());
        QWidget *const focus = window.focus();
        window.press(Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(window.focus(), focus);
        window.store->upsert(SettingsWindow::website(u"One more"_s));
        settle();
        QVERIFY(window.field());
        QCOMPARE(window.focus(), focus);
        QCOMPARE(seenButton(*window.view, u"Add"_s)->nextInFocusChain(), window.field());
    }

    void finds_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<QStringList>("rows");
        QTest::newRow("by name") << u"papers"_s << QStringList(u"Papers"_s);
        QTest::newRow("two by name") << u"PAPER"_s << QStringList{u"Papers"_s, u"Paper shop"_s};
        QTest::newRow("by target") << u"buro"_s << QStringList(u"Papers"_s);
        QTest::newRow("by keys") << u"⇧⌘F5"_s << QStringList(u"Site 3"_s);
        QTest::newRow("by words of different texts") << u"me paper"_s << QStringList(u"Papers"_s);
        QTest::newRow("none") << u"nothing of this"_s << QStringList();
        QTest::newRow("not across texts") << u"papers/home"_s << QStringList();
    }
    void finds()
    {
        QFETCH(const QString, words);
        QFETCH(const QStringList, rows);
        Window window;
        window.setKeys(window.store->entries()[2], commandShiftF5);
        window.store->announceChange();
        settle();
        window.type(words);
        QCOMPARE(window.rows(), rows);
        QCOMPARE(window.shows(nothingFound), rows.isEmpty());
        QCOMPARE(window.result(), u"%1 of 14 shortcuts"_s.arg(rows.size()));
        QCOMPARE(window.focus(), window.field());
    }

    void findsBySignsAndByWords()
    {
        Window window;
        window.platform.wording.isMadeUp = true;
        window.platform.userDefaults.values.insert(DefaultsKeys::showMacKeySigns, true);
        window.setKeys(window.store->entries().at(2), commandShiftF5);
        window.store->announceChange();
        settle();
        for (const QString &words : {u"⇧⌘F5"_s, u"96 768"_s}) {
            window.type(words);
            QCOMPARE(window.rows(), QStringList(u"Site 3"_s));
            window.press(Qt::Key_Escape);
        }
    }

    void isEmptiedByEscape()
    {
        Window window;
        window.type(u"papers"_s);
        window.press(Qt::Key_Escape);
        QVERIFY(window.field()->text().isEmpty());
        QVERIFY(window.rows().contains(u"Site 1"_s));
        QCOMPARE(window.result(), QString());
        QCOMPARE(window.focus(), window.field());
        window.press(Qt::Key_Escape);
        QVERIFY(window.view->isVisible());
    }

    void staysWhereItIsWhenEscapeEmptiesNothing()
    {
        Window window(sites(60));
        window.field()->setFocus();
        QScrollBar &bar = *window.view->findChild<EntryList *>()->verticalScrollBar();
        bar.setValue(bar.maximum() / 2);
        settle();
        const int place = bar.value();
        QVERIFY(place > 0);
        window.press(Qt::Key_Escape);
        QCOMPARE(bar.value(), place);
    }

    void startsAtTheTop()
    {
        Window window(sites(60));
        window.view->window()->resize(600, 400);
        auto *const list = window.view->findChild<EntryList *>();
        list->verticalScrollBar()->setValue(list->verticalScrollBar()->maximum());
        settle();
        QVERIFY(!window.rows().contains(u"Site 1"_s));
        window.type(u"site"_s);
        QCOMPARE(window.rows().value(0), u"Site 1"_s);
        QCOMPARE(list->verticalScrollBar()->value(), 0);
    }

    void isReachedByKeys()
    {
        Window window;
        window.type(u"paper"_s);
        window.press(Qt::Key_Down);
        QCOMPARE(window.focusName(), u"Edit"_s);
        QCOMPARE(window.focusedRow(), u"Papers"_s);
        window.press(Qt::Key_Down);
        QCOMPARE(window.focusedRow(), u"Paper shop"_s);
        window.press(Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(window.focus(), window.field());
        QCOMPARE(window.field()->selectedText(), u"paper"_s);
        // From within, too.
        window.press(Qt::Key_End);
        window.press(Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(window.field()->selectedText(), u"paper"_s);
        window.type(u"nothing of this"_s);
        window.press(Qt::Key_Down);
        QCOMPARE(window.focus(), window.field());
    }

    void leadsToTheRowOfTheLastLetter()
    {
        Window window;
        window.type(u"paper"_s);
        QTest::keyClick(window.field(), Qt::Key_Space);
        QTest::keyClick(window.field(), Qt::Key_S);
        QTest::keyClick(window.field(), Qt::Key_H);
        QTest::keyClick(window.field(), Qt::Key_Down);
        QCOMPARE(window.focusedRow(), u"Paper shop"_s);
    }

    void endsWhenSomethingIsAdded_data()
    {
        QTest::addColumn<std::function<void(Window &)>>("add");
        const auto add = [](const char *row, const std::function<void(Window &)> &change) {
            QTest::newRow(row) << change;
        };
        add("an entry",
            [](Window &window) { window.store->upsert(SettingsWindow::website(u"Weather"_s)); });
        add("an import",
            [](Window &window) { QVERIFY(window.store->importData(window.store->exportData())); });
        add("an undone deletion", [](Window &window) {
            window.clickInRow(u"Papers"_s, u"Delete"_s);
            QVERIFY(!window.field()->text().isEmpty());
            window.click(u"Undo"_s);
        });
    }
    void endsWhenSomethingIsAdded()
    {
        QFETCH(const std::function<void(Window &)>, add);
        Window window;
        window.type(u"paper"_s);
        add(window);
        settle();
        QVERIFY(window.field()->text().isEmpty());
        QVERIFY(window.rows().size() > 2);
    }

    void staysAfterOtherChanges()
    {
        Window window;
        window.type(u"paper"_s);
        window.store->setEnabled(false, window.store->entries().at(12).id);
        window.store->resetAllShortcuts();
        window.clickInRow(u"Papers"_s, u"Delete"_s);
        QCOMPARE(window.rows(), QStringList(u"Paper shop"_s));
        QCOMPARE(window.result(), u"1 of 13 shortcuts"_s);
    }

    void exportsAll()
    {
        Window window;
        window.type(u"papers"_s);
        QVERIFY(window.store->exportData().contains("Site 7"));
        QVERIFY(seenButton(*window.view, u"Export…"_s)->isEnabled());
        window.type(u"x"_s);
        QVERIFY(window.shows(nothingFound));
        QVERIFY(seenButton(*window.view, u"Export…"_s)->isEnabled());
        QVERIFY(seenButton(*window.view, u"Reset all shortcuts…"_s)->isEnabled());
    }

    void keepsTheFocusWhereItWas()
    {
        Window window;
        window.type(u"paper"_s);
        window.press(Qt::Key_Down);
        window.press(Qt::Key_Tab);
        QCOMPARE(window.focusName(), u"Delete"_s);
        window.press(Qt::Key_Space);
        // The next entry's.
        QCOMPARE(window.focusName(), u"Delete"_s);
        QCOMPARE(window.focusedRow(), u"Paper shop"_s);
        window.press(Qt::Key_Space);
        QVERIFY(window.shows(nothingFound));
        QCOMPARE(window.focus(), window.field());
    }

    void leavesUndoToTheList()
    {
        Window window;
        window.type(u"papers"_s);
        window.press(Qt::Key_Down);
        window.press(Qt::Key_Tab);
        window.press(Qt::Key_Space);
        QCOMPARE(window.focus(), window.field());
        // The focus comes back by itself only in the program.
        window.view->activateWindow();
        QTRY_VERIFY(window.view->isActiveWindow());
        window.press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(window.focusedRow(), u"Papers"_s);
        window.type(u"x"_s);
        window.press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(window.field()->text(), QString());
    }

    void endsWithTheLastEntry()
    {
        Window window(sites(enough));
        window.type(u"site"_s);
        const QList<LaunchEntry> all = window.store->entries();
        for (const LaunchEntry &entry : all)
            window.store->deleteEntry(entry);
        settle();
        QVERIFY(!window.field());
    }

    void findsFoldersAsTheListShowsThem()
    {
        Window window(Window::list() << LaunchEntry{.name = u"Letters"_s,
                                                    .kind = ActionKind::path,
                                                    .target = QDir::homePath() + u"/Mail"_s});
        window.type(u"~/mail"_s);
        QCOMPARE(window.rows(), QStringList(u"Letters"_s));
        window.field()->setText(QDir::homePath() + u"/mail"_s);
        settle();
        QCOMPARE(window.rows(), QStringList(u"Letters"_s));
    }

    void isOfferedAsLongAsItHidesSomething()
    {
        Window window(sites(enough));
        window.type(u"site 7"_s);
        window.clickInRow(u"Site 7"_s, u"Delete"_s);
        QVERIFY(window.shows(nothingFound));
        QVERIFY(window.field());
        window.field()->setFocus();
        window.press(Qt::Key_Escape);
        QVERIFY(!window.field());
        QVERIFY(window.rows().contains(u"Site 1"_s));
        QCOMPARE(window.focusName(), u"Add"_s);
    }

    void keepsTheFocusAfterAnEditThatItHides_data()
    {
        QTest::addColumn<QString>("words");
        QTest::addColumn<QString>("focus");
        QTest::newRow("the only one found") << u"papers"_s << u"Search"_s;
        QTest::newRow("one of several") << u"paper"_s << u"Edit"_s;
    }
    void keepsTheFocusAfterAnEditThatItHides()
    {
        QFETCH(const QString, words);
        Window window;
        window.type(words);
        window.press(Qt::Key_Down);
        window.press(Qt::Key_Space);
        SettingsWindow::sheet(u"Edit shortcut"_s);
        // As the editor does, whose checks do not matter here.
        LaunchEntry entry = window.store->entries().at(12);
        entry.name = u"Documents"_s;
        window.store->upsert(entry);
        SettingsWindow::clickInSheet(u"Cancel"_s);
        QVERIFY(!window.rows().contains(u"Documents"_s));
        QTEST(window.focusName(), "focus");
    }

    void isEmptyWhenTheWindowIsOpenedAgain()
    {
        Window window;
        window.type(u"papers"_s);
        window.view->window()->hide();
        window.view->window()->show();
        settle();
        QVERIFY(window.field()->text().isEmpty());
        QVERIFY(window.rows().contains(u"Site 1"_s));
    }

    void leavesDropsToTheWindow()
    {
        Window window;
        QVERIFY(!window.field()->acceptDrops());
    }
};

QTEST_MAIN(EntrySearchTest)
#include "EntrySearchTest.moc"
