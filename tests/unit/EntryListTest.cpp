#include "settings/EntryList.h"
#include "support/CpuTime.h"
#include "support/Seen.h"
#include "support/StoreHome.h"

#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QPushButton>
#include <QRandomGenerator>
#include <QScrollBar>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
const QString noFault;
/// Above the first row and below the last one.
constexpr int edgePadding = 5;

QString numberedName(qsizetype index)
{
    return u"Entry %1"_s.arg(index, 5, 10, QChar(u'0'));
}

QList<LaunchEntry> numbered(qsizetype count)
{
    QList<LaunchEntry> list;
    for (qsizetype index = 0; index < count; ++index) {
        list << LaunchEntry{.name = numberedName(index),
                            .kind = ActionKind::website,
                            .target = u"https://example.org"_s};
    }
    return list;
}

/// Lets happen what has been put off.
void settle()
{
    for (int turn = 0; turn < 3; ++turn) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

/// A list between two buttons, kept in line with its store as in the settings window.
struct Window : StoreHome, View {
    explicit Window(const QList<LaunchEntry> &entries, QSize size = {600, 300})
        : StoreHome(entries)
        , list(new EntryList(
              *store, [this](const LaunchEntry &entry) { edited << entry.name; },
              [this](const LaunchEntry &entry) { store->deleteEntry(entry); }))
    {
        setBody(Column{
            button(u"Before"_s, [] {}),
            stretched(widget(list, [this] { list->refresh(store->entries()); })),
            button(u"After"_s, [] {}),
        });
        connect(&*store, &ShortcutStore::willChange, this, &View::invalidate);
        resize(size);
    }

    void open()
    {
        show();
        QVERIFY(QTest::qWaitForWindowActive(this));
    }

    const LaunchEntry &entry(qsizetype index) const { return store->entries().at(index); }

    /// Gives the entries the same keys, so that each warns of the others.
    void shareKeys(const QList<qsizetype> &indexes)
    {
        ++m_keys;
        for (const qsizetype index : indexes)
            setKeys(entry(index), {m_keys % 100, 256 << (m_keys / 100)});
        store->announceChange();
    }

    QScrollBar &bar() const { return *list->verticalScrollBar(); }
    int listHeight() const { return list->viewport()->height(); }

    /// Rows that are not hidden, from top to bottom, in sight or not. They are looked for among the
    /// children of the list only, since the tests ask for them thousands of times.
    QList<QWidget *> shownRows() const
    {
        auto found = list->widget()->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
        found.removeIf([](QWidget *child) {
            return !child->isVisible() || roleOf(child) != QAccessible::ListItem;
        });
        std::ranges::stable_sort(found, {}, &QWidget::y);
        return found;
    }

    /// Rows that the user sees at least a part of.
    QList<QWidget *> rows() const
    {
        auto found = shownRows();
        found.removeIf([this](QWidget *row) {
            return top(row) >= listHeight() || top(row) + row->height() <= 0;
        });
        return found;
    }
    int top(QWidget *row) const { return row->mapTo(list->viewport(), QPoint()).y(); }

    /// Each row's name and distance from the upper edge.
    QStringList picture() const
    {
        QStringList lines;
        for (QWidget *const row : rows())
            lines << nameOf(row) + u" at "_s + QString::number(top(row));
        return lines;
    }

    /// All rows that exist, in sight or not.
    qsizetype rowCount() const
    {
        const auto widgets = list->findChildren<QWidget *>();
        return std::ranges::count(widgets, QAccessible::ListItem, roleOf);
    }

    /// Null if it is not shown.
    QWidget *row(const QString &name) const
    {
        const auto all = shownRows();
        const auto found = std::ranges::find(all, name, nameOf);
        return found == all.end() ? nullptr : *found;
    }
    QWidget *row(qsizetype index) const { return row(entry(index).name); }
    QWidget *control(qsizetype index, const QString &name) const
    {
        return seenButton(*row(index), name);
    }

    /// "Edit of Entry 00001", or what else has the focus.
    QString focus() const
    {
        QWidget *const widget = focusWidget();
        if (!widget)
            return u"nothing"_s;
        for (QWidget *parent = widget; parent; parent = parent->parentWidget()) {
            if (roleOf(parent) == QAccessible::ListItem)
                return nameOf(widget) + u" of "_s + nameOf(parent);
        }
        return nameOf(widget);
    }

    void focusOn(qsizetype index, const QString &name) const
    {
        const auto role = name == u"Enabled" ? QAccessible::CheckBox : QAccessible::Button;
        seen(*row(index), role, name)->setFocus();
    }

    /// The same if the row is in sight from edge to edge, else nothing.
    QString wholeFocus() const
    {
        QWidget *const shown = row(focusedEntry());
        const bool isWhole = top(shown) >= 0 && top(shown) + shown->height() <= listHeight();
        return isWhole && fault() == noFault ? focus() : QString();
    }
    qsizetype focusedEntry() const { return focus().last(5).toLongLong(); }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(focusWidget(), key, modifiers);
        settle();
    }

    /// Brings a row into sight, from edge to edge.
    void scrollTo(qsizetype index) const
    {
        const auto isWhole = [&] {
            QWidget *const shown = row(index);
            return shown && top(shown) >= 0 && top(shown) + shown->height() <= listHeight();
        };
        bar().setValue(0);
        while (!isWhole() && bar().value() < bar().maximum())
            bar().setValue(bar().value() + listHeight() / 3);
    }

    /// What is wrong with the rows in sight, if anything: they are rows of the list that follow
    /// each other without gaps, as high as they want to be, and fill the list.
    QString fault() const
    {
        const auto all = rows();
        const auto &entries = store->entries();
        if (all.isEmpty())
            return entries.isEmpty() ? noFault : u"no row"_s;
        const auto first =
            std::ranges::find(entries, nameOf(all.first()), &LaunchEntry::name) - entries.begin();
        int edge = top(all.first());
        if (first == 0 ? edge != edgePadding - bar().value() : edge > 0)
            return u"the first row is at %1"_s.arg(edge);
        for (qsizetype place = 0; place < all.size(); ++place) {
            QWidget *const shown = all.at(place);
            if (first + place >= entries.size() || nameOf(shown) != entry(first + place).name)
                return nameOf(shown) + u" is out of order"_s;
            if (top(shown) != edge)
                return u"%1 is at %2 instead of %3"_s.arg(nameOf(shown)).arg(top(shown)).arg(edge);
            if (const int wanted = shown->heightForWidth(shown->width());
                wanted > 0 && shown->height() != wanted)
                return u"%1 is %2 high and wants %3"_s.arg(nameOf(shown))
                    .arg(shown->height())
                    .arg(wanted);
            edge += shown->height();
        }
        if (first + all.size() < entries.size() ? edge < listHeight()
                                                : bar().maximum() > 0
                    && edge + edgePadding != listHeight() + bar().maximum() - bar().value())
            return u"the last row ends at %1 of %2"_s.arg(edge).arg(listHeight());
        return noFault;
    }

    EntryList *list;
    QStringList edited;

private:
    int m_keys = 0;
};

/// Gives rows from place to place other heights.
void mixHeights(Window &window)
{
    const qsizetype count = window.store->entries().size();
    for (qsizetype index = 3; index + 40 < count; index += 11)
        window.shareKeys({index, index + 1, index + 5, index + 40});
}

/// Where each row begins, and where the last one ends, found by going through the list once.
/// Nothing is painted meanwhile, which would take most of the time.
std::vector<int> topsOf(const Window &window)
{
    std::vector<int> tops(size_t(window.store->entries().size()) + 1);
    tops.front() = edgePadding;
    for (int place = 0;; place += window.listHeight() * 3 / 4) {
        window.bar().setValue(place);
        const auto rows = window.rows();
        const auto first = nameOf(rows.first()).sliced(6).toULongLong();
        for (qsizetype row = 0; row < rows.size(); ++row)
            tops[first + size_t(row) + 1] = rows.at(row)->height();
        if (window.bar().value() == window.bar().maximum())
            break;
        place = window.bar().value();
    }
    for (size_t index = 1; index < tops.size(); ++index)
        tops[index] += tops[index - 1];
    settle();
    return tops;
}

QStringList expectedPicture(const std::vector<int> &tops, int place, int height)
{
    QStringList lines;
    for (size_t index = 0; index + 1 < tops.size(); ++index) {
        if (tops[index] < place + height && tops[index + 1] > place)
            lines << numberedName(qsizetype(index)) + u" at "_s
                    + QString::number(tops[index] - place);
    }
    return lines;
}
} // namespace

class EntryListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsTheEntriesInTheOrderOfTheStore()
    {
        Window window({{.name = u"Zebra"_s}, {.name = u"Ant"_s}, {.name = u"Mouse"_s}});
        window.open();
        QStringList names;
        for (QWidget *const row : window.rows())
            names << nameOf(row);
        QCOMPARE(names, QStringList({u"Zebra"_s, u"Ant"_s, u"Mouse"_s}));
        QCOMPARE(window.fault(), noFault);
    }

    void isAListForScreenReadersWithItsRowsInOrder()
    {
        Window window(numbered(30));
        window.open();
        window.bar().setValue(400);
        window.store->deleteEntry(window.entry(12));
        settle();
        const auto lists = seenAll(window, QAccessible::List);
        QCOMPARE(lists.size(), 1);
        QCOMPARE(nameOf(lists.first()), u"Shortcuts"_s);
        const auto *const list = QAccessible::queryAccessibleInterface(lists.first());
        QStringList names;
        for (int index = 0; index < list->childCount(); ++index) {
            if (!list->child(index)->state().invisible)
                names << list->child(index)->text(QAccessible::Name);
        }
        QVERIFY(names.size() >= window.rows().size());
        QVERIFY(std::ranges::is_sorted(names));
    }

    void makesFewRowsHoweverLongItIs_data()
    {
        QTest::addColumn<int>("count");
        QTest::newRow("of 10 entries") << 10;
        QTest::newRow("of 1,000 entries") << 1000;
        QTest::newRow("of 10,000 entries") << 10000;
    }

    void makesFewRowsHoweverLongItIs()
    {
        QFETCH(const int, count);
        Window window(numbered(count));
        window.open();
        QRandomGenerator random(1);
        for (int turn = 0; turn < 25; ++turn)
            window.bar().setValue(random.bounded(window.bar().maximum() + 1));
        QVERIFY(window.rowCount() < 2 * window.rows().size() + 8);
        QCOMPARE(window.fault(), noFault);
    }

    void showsTheRightRowsWhereverItIsScrolledTo()
    {
        Window window(numbered(150));
        mixHeights(window);
        window.open();
        const auto tops = topsOf(window);
        QCOMPARE(window.bar().maximum(), tops.back() + edgePadding - window.listHeight());
        QRandomGenerator random(2);
        for (int turn = 0; turn < 80; ++turn) {
            const int place = random.bounded(window.bar().maximum() + 1);
            window.bar().setValue(place);
            QCOMPARE(window.bar().value(), place);
            QCOMPARE(window.picture(), expectedPicture(tops, place, window.listHeight()));
        }
    }

    void showsTheRightRowsBeforeItKnowsTheirHeights()
    {
        QRandomGenerator random(3);
        for (int turn = 0; turn < 6; ++turn) {
            Window window(numbered(120));
            mixHeights(window);
            window.open();
            for (int jump = 0; jump < 12; ++jump) {
                window.bar().setValue(random.bounded(window.bar().maximum() + 1));
                QCOMPARE(window.fault(), noFault);
                settle();
                QCOMPARE(window.fault(), noFault);
            }
        }
    }

    void scrollsByTheDistanceThatIsAskedFor_data()
    {
        QTest::addColumn<int>("distance");
        QTest::newRow("a little down") << 10;
        QTest::newRow("a little up") << -10;
        QTest::newRow("several rows down") << 170;
        QTest::newRow("several rows up") << -170;
    }

    /// Also over rows whose heights show only then.
    void scrollsByTheDistanceThatIsAskedFor()
    {
        QFETCH(const int, distance);
        Window window(numbered(300), {600, 400});
        mixHeights(window);
        window.open();
        window.bar().setValue(window.bar().maximum() / 2);
        for (int turn = 0; turn < 900 / std::abs(distance); ++turn) {
            QWidget *const row = window.rows().at(window.rows().size() / 2);
            const QString name = nameOf(row);
            const int place = window.top(row);
            window.bar().setValue(window.bar().value() + distance);
            settle();
            QWidget *const same = window.row(name);
            QVERIFY(same);
            QCOMPARE(window.top(same), place - distance);
            QCOMPARE(window.fault(), noFault);
        }
    }

    void reachesTheWholeLastRow()
    {
        Window window(numbered(100));
        window.shareKeys({93, 95, 97, 98, 99});
        window.open();
        window.bar().setValue(window.bar().maximum());
        QCOMPARE(nameOf(window.rows().last()), numberedName(99));
        QCOMPARE(window.top(window.rows().last()) + window.rows().last()->height() + edgePadding,
                 window.listHeight());
        QCOMPARE(window.fault(), noFault);
    }

    void comesBackToTheWholeFirstRow()
    {
        Window window(numbered(100));
        window.open();
        window.bar().setValue(200);
        window.shareKeys({0, 1, 2, 3});
        settle();
        QVERIFY(!window.row(2));
        window.bar().setValue(0);
        QCOMPARE(window.picture().first(), numberedName(0) + u" at 5"_s);
        QCOMPARE(window.fault(), noFault);
    }

    /// Where a few entries fit only as long as their warnings are not counted.
    void findsOutWhetherItsRowsNeedAScrollBar()
    {
        const auto list = numbered(6);
        for (int height = 150; height < 600; height += 40) {
            Window window(list, {600, height});
            window.shareKeys({0, 1, 2, 3, 4, 5});
            window.open();
            window.bar().setValue(window.bar().maximum());
            QCOMPARE(window.fault(), noFault);
        }
    }

    void keepsThePlaceWhen_data()
    {
        using Change = std::function<void(Window &)>;
        QTest::addColumn<Change>("change");
        QTest::newRow("nothing has changed")
            << Change([](Window &w) { w.store->announceChange(); });
        QTest::newRow("an entry above goes")
            << Change([](Window &w) { w.store->deleteEntry(w.entry(3)); });
        QTest::newRow("an entry just above goes")
            << Change([](Window &w) { w.store->deleteEntry(w.entry(79)); });
        QTest::newRow("an entry below goes")
            << Change([](Window &w) { w.store->deleteEntry(w.entry(125)); });
        QTest::newRow("an entry is added")
            << Change([](Window &w) { w.store->upsert({.name = u"New"_s}); });
        QTest::newRow("an entry above changes its name") << Change([](Window &w) {
            LaunchEntry entry = w.entry(3);
            entry.name = u"Other"_s;
            w.store->upsert(entry);
        });
        QTest::newRow("entries above get warnings") << Change([](Window &w) {
            w.shareKeys({1, 3, 5, 7, 76, 77, 78, 79});
        });
        QTest::newRow("entries below get warnings") << Change([](Window &w) {
            w.shareKeys({130, 131, 132});
        });
        QTest::newRow("an entry in sight gets a warning") << Change([](Window &w) {
            w.shareKeys({82, 139});
        });
    }

    void keepsThePlaceWhen()
    {
        QFETCH(const std::function<void(Window &)>, change);
        Window window(numbered(140));
        mixHeights(window);
        window.open();
        // All heights are known then, so that none that is news brings the place back by itself.
        const auto tops = topsOf(window);
        window.bar().setValue(tops[81] - 5);
        QCOMPARE(nameOf(window.rows().first()), numberedName(80));
        const QString place = window.picture().first();
        change(window);
        settle();
        QCOMPARE(window.picture().first(), place);
        QCOMPARE(window.fault(), noFault);
    }

    void staysAtTheBeginningWhenTheFirstEntryGoes()
    {
        Window window(numbered(50));
        window.open();
        window.store->deleteEntry(window.entry(0));
        settle();
        QCOMPARE(window.picture().first(), numberedName(1) + u" at 5"_s);
    }

    void showsTheNextEntriesWhenTheUppermostInSightGoes()
    {
        Window window(numbered(100));
        window.open();
        window.bar().setValue(edgePadding + window.rows().first()->height() * 20 + 5);
        window.store->deleteEntry(window.entry(20));
        settle();
        QCOMPARE(window.picture().first(), numberedName(21) + u" at -5"_s);
        QCOMPARE(window.fault(), noFault);
    }

    void showsTheEndWhenTheListGetsShorterThanItsPlace()
    {
        Window window(numbered(100));
        window.open();
        window.bar().setValue(window.bar().maximum());
        for (int count = 0; count < 80; ++count)
            window.store->deleteEntry(window.entry(window.store->entries().size() - 1));
        settle();
        QCOMPARE(nameOf(window.rows().last()), numberedName(19));
        QCOMPARE(window.fault(), noFault);
    }

    void isRightAtOnceAfterARefresh()
    {
        Window window(numbered(50));
        window.shareKeys({2, 30});
        window.open();
        window.shareKeys({1, 4, 31, 32});
        window.setKeys(window.entry(33), {1, 256});
        window.refresh();
        QCOMPARE(window.fault(), noFault);
        const QStringList picture = window.picture();
        settle();
        QCOMPARE(window.picture(), picture);
        QCOMPARE(window.fault(), noFault);
    }

    void shiftsTheRowsBelowOneThatGetsAnotherWarning()
    {
        Window window(numbered(50));
        window.shareKeys({2, 30});
        window.open();
        const int before = window.top(window.row(3));
        const auto keys = *window.store->getShortcut(window.entry(2).shortcutName());
        window.setKeys(window.entry(31), keys);
        window.refresh();
        const int after = window.top(window.row(3));
        QVERIFY(after > before + 8);
        settle();
        QCOMPARE(window.top(window.row(3)), after);
    }

    void makesRoomForARowThatGetsHigherByItself()
    {
        Window window(numbered(50));
        window.open();
        window.control(2, u"Edit"_s)->setMinimumHeight(70);
        settle();
        QVERIFY(window.row(2)->height() >= 76);
        QCOMPARE(window.fault(), noFault);
    }

    void keepsTheFocusAtTheSameControlOfTheSameEntryWhen_data()
    {
        using Change = std::function<void(Window &)>;
        QTest::addColumn<Change>("change");
        QTest::newRow("one before it goes")
            << Change([](Window &w) { w.store->deleteEntry(w.entry(1)); });
        QTest::newRow("the one just before it goes")
            << Change([](Window &w) { w.store->deleteEntry(w.entry(4)); });
        QTest::newRow("one after it goes")
            << Change([](Window &w) { w.store->deleteEntry(w.entry(6)); });
        QTest::newRow("many before it go") << Change([](Window &w) {
            for (int count = 0; count < 5; ++count)
                w.store->deleteEntry(w.entry(0));
        });
        QTest::newRow("it changes")
            << Change([](Window &w) { w.store->setEnabled(false, w.entry(5).id); });
        QTest::newRow("it is scrolled out of sight and the list changes") << Change([](Window &w) {
            w.bar().setValue(w.bar().maximum());
            settle();
            w.store->deleteEntry(w.entry(1));
            w.store->upsert({.name = u"New"_s});
        });
    }

    void keepsTheFocusAtTheSameControlOfTheSameEntryWhen()
    {
        QFETCH(const std::function<void(Window &)>, change);
        Window window(numbered(100));
        window.open();
        QWidget *const edit = window.control(5, u"Edit"_s);
        edit->setFocus();
        change(window);
        settle();
        QCOMPARE(window.focus(), u"Edit of Entry 00005"_s);
        QCOMPARE(window.focusWidget(), edit);
    }

    void handsTheFocusToTheSameControlOfTheNextEntry()
    {
        Window window(numbered(50));
        window.open();
        window.control(4, u"Delete"_s)->setFocus();
        QTest::keyClick(window.focusWidget(), Qt::Key_Space);
        settle();
        QCOMPARE(window.store->entries().size(), 49);
        QCOMPARE(window.focus(), u"Delete of Entry 00005"_s);
        QCOMPARE(window.fault(), noFault);
    }

    void handsTheFocusOfTheLastEntryToThePreviousOne()
    {
        Window window(numbered(50));
        window.open();
        window.bar().setValue(window.bar().maximum());
        window.control(49, u"Delete"_s)->setFocus();
        QTest::keyClick(window.focusWidget(), Qt::Key_Space);
        settle();
        QCOMPARE(window.focus(), u"Delete of Entry 00048"_s);
        QCOMPARE(window.fault(), noFault);
    }

    void deletesTheWholeListBySpace()
    {
        Window window(numbered(30));
        window.open();
        window.control(7, u"Delete"_s)->setFocus();
        for (int count = 0; count < 30; ++count) {
            QTest::keyClick(window.focusWidget(), Qt::Key_Space);
            settle();
            QCOMPARE(window.fault(), noFault);
        }
        QVERIFY(window.store->entries().isEmpty());
        QCOMPARE(window.focus(), u"After"_s);
    }

    void walksThroughAllRowsByTheTabKey()
    {
        const qsizetype count = 60;
        Window window(numbered(count));
        mixHeights(window);
        window.open();
        seenButton(window, u"Before"_s)->setFocus();
        for (qsizetype index = 0; index < count; ++index) {
            for (const QString &control : {u"Enabled"_s, u"Edit"_s, u"Delete"_s}) {
                QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
                settle();
                QCOMPARE(window.focus(), control + u" of "_s + numberedName(index));
                QVERIFY(!window.focusWidget()->visibleRegion().isEmpty());
                QCOMPARE(window.fault(), noFault);
            }
        }
        QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
        QCOMPARE(window.focus(), u"After"_s);
    }

    void walksBackThroughAllRows()
    {
        const qsizetype count = 60;
        Window window(numbered(count));
        mixHeights(window);
        window.open();
        window.bar().setValue(window.bar().maximum());
        seenButton(window, u"After"_s)->setFocus();
        for (qsizetype index = count - 1; index >= 0; --index) {
            for (const QString &control : {u"Delete"_s, u"Edit"_s, u"Enabled"_s}) {
                QTest::keyClick(window.focusWidget(), Qt::Key_Backtab);
                settle();
                QCOMPARE(window.focus(), control + u" of "_s + numberedName(index));
                QVERIFY(!window.focusWidget()->visibleRegion().isEmpty());
                QCOMPARE(window.fault(), noFault);
            }
        }
        QTest::keyClick(window.focusWidget(), Qt::Key_Backtab);
        QCOMPARE(window.focus(), u"Before"_s);
    }

    void goesOnByTabFromAFocusThatWasScrolledOutOfSight_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<QString>("control");
        QTest::addColumn<QString>("next");
        QTest::newRow("to the next row")
            << Qt::Key_Tab << u"Delete"_s << u"Enabled of Entry 00151"_s;
        QTest::newRow("to the row before")
            << Qt::Key_Backtab << u"Enabled"_s << u"Delete of Entry 00149"_s;
    }

    void goesOnByTabFromAFocusThatWasScrolledOutOfSight()
    {
        QFETCH(const Qt::Key, key);
        QFETCH(const QString, control);
        QFETCH(const QString, next);
        for (const bool isAbove : {true, false}) {
            Window window(numbered(300));
            window.open();
            window.bar().setValue(window.bar().maximum() / 2);
            const auto role = control == u"Enabled" ? QAccessible::CheckBox : QAccessible::Button;
            seen(*window.row(150), role, control)->setFocus();
            window.bar().setValue(isAbove ? window.bar().maximum() : 0);
            settle();
            QTest::keyClick(window.focusWidget(), key);
            settle();
            QCOMPARE(window.focus(), next);
            QVERIFY(!window.focusWidget()->visibleRegion().isEmpty());
        }
    }

    void goesByTheArrowsToTheSameControlOfTheRowBelowAndAbove_data()
    {
        QTest::addColumn<QString>("control");
        QTest::newRow("from switch to switch") << u"Enabled"_s;
        QTest::newRow("from button to button") << u"Edit"_s;
        QTest::newRow("from bin to bin") << u"Delete"_s;
    }
    void goesByTheArrowsToTheSameControlOfTheRowBelowAndAbove()
    {
        QFETCH(const QString, control);
        const qsizetype count = 48;
        Window window(numbered(count));
        mixHeights(window);
        window.open();
        window.focusOn(0, control);
        for (qsizetype index = 1; index < count; ++index) {
            window.press(Qt::Key_Down);
            QCOMPARE(window.wholeFocus(), control + u" of "_s + numberedName(index));
        }
        for (qsizetype index = count - 2; index >= 0; --index) {
            window.press(Qt::Key_Up);
            QCOMPARE(window.wholeFocus(), control + u" of "_s + numberedName(index));
        }
    }

    void goesFarByAKey_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<int>("to");
        QTest::newRow("to the last row") << 5 << Qt::Key_End << 149;
        QTest::newRow("to the first row") << 75 << Qt::Key_Home << 0;
    }
    void goesFarByAKey()
    {
        QFETCH(const int, from);
        QFETCH(const Qt::Key, key);
        QFETCH(const int, to);
        for (const auto modifier : {Qt::NoModifier, Qt::KeypadModifier}) {
            Window window(numbered(150));
            mixHeights(window);
            window.shareKeys({0, 1, 2, 147, 148, 149});
            window.open();
            window.scrollTo(from);
            window.focusOn(from, u"Edit"_s);
            window.press(key, modifier);
            QCOMPARE(window.wholeFocus(), u"Edit of "_s + numberedName(to));
        }
    }

    void goesByAboutOnePage_data()
    {
        QTest::addColumn<int>("from");
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("down") << 0 << Qt::Key_PageDown;
        QTest::newRow("up") << 119 << Qt::Key_PageUp;
    }
    void goesByAboutOnePage()
    {
        QFETCH(const int, from);
        QFETCH(const Qt::Key, key);
        Window window(numbered(120));
        mixHeights(window);
        window.open();
        const auto tops = topsOf(window);
        window.scrollTo(from);
        window.focusOn(from, u"Edit"_s);
        const qsizetype end = 119 - from;
        for (qsizetype former = from; former != end; former = window.focusedEntry()) {
            window.press(key);
            QVERIFY(!window.wholeFocus().isEmpty());
            const int distance =
                std::abs(tops[size_t(window.focusedEntry())] - tops[size_t(former)]);
            QVERIFY(distance > 0 && distance <= window.listHeight());
            // The last step ends at the end.
            QVERIFY(distance > window.listHeight() * 2 / 3 || window.focusedEntry() == end);
        }
    }

    void goesByPagesBeforeItKnowsTheirHeights()
    {
        Window window(numbered(120));
        mixHeights(window);
        window.open();
        window.focusOn(0, u"Edit"_s);
        int presses = 0;
        for (qsizetype former = 0; former < 119; former = window.focusedEntry(), ++presses) {
            window.press(Qt::Key_PageDown);
            QVERIFY(!window.wholeFocus().isEmpty());
            QVERIFY(window.focusedEntry() > former);
        }
        const auto tops = topsOf(window);
        QVERIFY(std::abs(presses - tops.back() / window.listHeight()) < presses / 3);
    }

    void goesToTheNextRowByAPageThatIsLowerThanARow()
    {
        Window window(numbered(20), {600, 120});
        window.list->setFixedHeight(20);
        window.open();
        window.focusOn(0, u"Edit"_s);
        window.press(Qt::Key_PageDown);
        QCOMPARE(window.focus(), u"Edit of Entry 00001"_s);
        window.press(Qt::Key_PageUp);
        QCOMPARE(window.focus(), u"Edit of Entry 00000"_s);
    }

    void goesNowhereBeyondItsEnds()
    {
        Window window(numbered(60));
        window.open();
        for (const qsizetype end : {0, 59}) {
            window.scrollTo(end);
            window.focusOn(end, u"Edit"_s);
            const QStringList picture = window.picture();
            const QList<Qt::Key> keys = end == 0
                ? QList{Qt::Key_Up, Qt::Key_PageUp, Qt::Key_Home}
                : QList{Qt::Key_Down, Qt::Key_PageDown, Qt::Key_End};
            for (const Qt::Key key : keys) {
                window.press(key);
                QCOMPARE(window.wholeFocus(), u"Edit of "_s + numberedName(end));
                QCOMPARE(window.picture(), picture);
            }
        }
    }

    void takesNoKeyWithAModifier_data()
    {
        QTest::addColumn<Qt::KeyboardModifier>("modifier");
        QTest::newRow("Shift") << Qt::ShiftModifier;
        QTest::newRow("Control") << Qt::ControlModifier;
        QTest::newRow("Alt") << Qt::AltModifier;
        QTest::newRow("Meta") << Qt::MetaModifier;
    }
    void takesNoKeyWithAModifier()
    {
        QFETCH(const Qt::KeyboardModifier, modifier);
        Window window(numbered(60));
        window.open();
        window.focusOn(3, u"Edit"_s);
        for (const Qt::Key key : {Qt::Key_PageDown, Qt::Key_End, Qt::Key_PageUp, Qt::Key_Home}) {
            window.press(key, modifier);
            QCOMPARE(window.focus(), u"Edit of Entry 00003"_s);
        }
    }

    void goesOnByTheArrowsFromAFocusThatWasScrolledOutOfSight()
    {
        for (const bool isAbove : {true, false}) {
            Window window(numbered(300));
            window.open();
            window.scrollTo(150);
            window.focusOn(150, u"Edit"_s);
            window.bar().setValue(isAbove ? window.bar().maximum() : 0);
            settle();
            window.press(Qt::Key_Down);
            QCOMPARE(window.wholeFocus(), u"Edit of Entry 00151"_s);
        }
    }

    /// Whose change the list has not shown yet.
    void staysInTheListWhenItsEntriesGoMeanwhile()
    {
        for (const Qt::Key key : {Qt::Key_Down, Qt::Key_PageDown, Qt::Key_End, Qt::Key_Home}) {
            Window window(numbered(60));
            window.open();
            window.scrollTo(57);
            window.focusOn(57, u"Edit"_s);
            for (int count = 0; count < 58; ++count)
                window.store->deleteEntry(window.entry(0));
            QTest::keyClick(window.focusWidget(), key);
            settle();
            QVERIFY(window.focus().startsWith(u"Edit of Entry 0005"_s));
            QCOMPARE(window.fault(), noFault);
        }
    }

    void showsWhereAKeyHasLed_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::newRow("an arrow") << Qt::Key_Down;
        QTest::newRow("a key of pages") << Qt::Key_PageDown;
        QTest::newRow("the key for the end") << Qt::Key_End;
    }
    void showsWhereAKeyHasLed()
    {
        QFETCH(const Qt::Key, key);
        Window window(numbered(2));
        window.open();
        window.control(0, u"Edit"_s)->setFocus(Qt::MouseFocusReason);
        QWidget *const other = window.control(1, u"Edit"_s);
        settle();
        const QImage before = other->grab().toImage();
        window.press(key);
        QVERIFY(other->hasFocus());
        QVERIFY(other->grab().toImage() != before);
    }

    void followsAHeldKeyThroughTenThousandRows()
    {
        Window window(numbered(10000));
        mixHeights(window);
        window.open();
        window.focusOn(0, u"Delete"_s);
        constexpr int repeats = 100;
        const double seconds = cpuSeconds([&] {
            for (int count = 0; count < repeats; ++count) {
                QKeyEvent press(QEvent::KeyPress, Qt::Key_Down, Qt::NoModifier, {}, count > 0);
                QCoreApplication::sendEvent(window.focusWidget(), &press);
                QCoreApplication::processEvents();
            }
        });
        QCOMPARE(window.wholeFocus(), u"Delete of "_s + numberedName(repeats));
        QCOMPARE(window.store->entries().size(), 10000);
        // Keyboards repeat a key some thirty times a second.
        QVERIFY(seconds / repeats < 1. / 30);
    }

    void wrapsWarningsWhenItGetsNarrower()
    {
        auto list = numbered(40);
        list[20].name = u"a name that is long enough to take more than one line of a warning"_s;
        Window window(list, {900, 400});
        window.shareKeys({2, 4, 20});
        window.open();
        const int before = window.row(2)->height();
        window.resize(420, 400);
        settle();
        QVERIFY(window.row(2)->height() > before + 8);
        QCOMPARE(window.fault(), noFault);
        window.resize(900, 400);
        settle();
        QCOMPARE(window.row(2)->height(), before);
        QCOMPARE(window.fault(), noFault);
    }

    void keepsThePlaceWhenItGetsNarrower()
    {
        auto list = numbered(100);
        for (const qsizetype index : {2, 4, 6})
            list[index].name = u"a name that takes more than one line of a warning there is"_s;
        Window window(list, {900, 400});
        window.shareKeys({2, 4, 6, 8, 30, 31});
        window.open();
        topsOf(window);
        window.scrollTo(29);
        QWidget *const row = window.row(29);
        window.bar().setValue(window.bar().value() + window.top(row) + row->height() - 5);
        QCOMPARE(nameOf(window.rows().first()), numberedName(29));
        const QString place = window.picture().first();
        window.resize(420, 400);
        settle();
        QCOMPARE(window.picture().first(), place);
        QCOMPARE(window.fault(), noFault);
    }

    void showsMoreRowsWhenItGetsHigher()
    {
        Window window(numbered(100));
        window.open();
        window.bar().setValue(window.bar().maximum());
        window.resize(600, 900);
        settle();
        QCOMPARE(window.fault(), noFault);
        QCOMPARE(nameOf(window.rows().last()), numberedName(99));
    }

    void followsAnotherFont()
    {
        const QFont before = QApplication::font();
        const auto restored = qScopeGuard([&] { QApplication::setFont(before); });
        Window window(numbered(100));
        window.shareKeys({2, 30, 60});
        window.open();
        window.bar().setValue(300);
        const int height = window.row(10)->height();
        QFont larger = before;
        larger.setPointSizeF(before.pointSizeF() * 2);
        QApplication::setFont(larger);
        settle();
        QVERIFY(window.row(10)->height() > height * 3 / 2);
        QCOMPARE(window.fault(), noFault);
        window.bar().setValue(window.bar().maximum());
        QCOMPARE(window.fault(), noFault);
        QCOMPARE(nameOf(window.rows().last()), numberedName(99));
    }

    void asksTheDesktopOnceForEachRowInSight()
    {
        Window window(numbered(1000));
        for (qsizetype index = 0; index < 1000; ++index)
            window.setKeys(window.entry(index), {index % 50, 256 * (1 + index / 50)});
        window.invalidate();
        window.open();
        auto &desktop = window.platform.symbolicHotkeys;
        const auto inSight = window.rows().size();
        const auto expect = [&](auto change) {
            settle();
            desktop.copies = 0;
            change();
            settle();
            QVERIFY(desktop.copies >= inSight);
            // One more on each side, for the Tab key.
            QVERIFY(desktop.copies <= inSight + 3);
        };
        expect([&] { window.store->announceChange(); });
        expect([&] { window.bar().setValue(window.bar().maximum() / 2); });
    }

    void asksNobodyAboutARowThatStaysInSight()
    {
        Window window(numbered(100), {600, 400});
        for (qsizetype index = 0; index < 100; ++index)
            window.setKeys(window.entry(index), {index % 50, 256 * (1 + index / 50)});
        window.invalidate();
        window.open();
        settle();
        window.platform.symbolicHotkeys.copies = 0;
        window.platform.userDefaults.reads = 0;
        window.bar().setValue(3);
        window.resize(610, 400);
        settle();
        QVERIFY(window.platform.symbolicHotkeys.copies <= 1);
        QVERIFY(window.platform.userDefaults.reads <= 2);
    }

    void asksForNoWarningsOfRowsThatOthersPushOutOfSight()
    {
        Window window(numbered(100));
        QList<qsizetype> all;
        for (qsizetype index = 0; index < 100; ++index)
            all << index;
        window.shareKeys(all);
        window.platform.symbolicHotkeys.copies = 0;
        window.open();
        settle();
        QCOMPARE(window.fault(), noFault);
        QCOMPARE(window.rows().size(), 1);
        // That in sight and the next one, for the Tab key.
        QCOMPARE(window.platform.symbolicHotkeys.copies, 2);
    }

    void readsTheKeysOfRowsInSightOnly()
    {
        Window window(numbered(1000));
        window.open();
        settle();
        window.platform.userDefaults.reads = 0;
        window.store->announceChange();
        settle();
        // The combination, for its text, its warnings and the keys in its place, and whether it is
        // shown with signs.
        QVERIFY(window.platform.userDefaults.reads >= 4 * window.rows().size());
        QVERIFY(window.platform.userDefaults.reads <= 4 * (window.rows().size() + 3));
    }

    void noticesThatAFileHasGoneWithinSightAndOutOfIt()
    {
        QTemporaryDir folder;
        const auto path = [&](qsizetype index) { return folder.filePath(numberedName(index)); };
        auto list = numbered(60);
        for (qsizetype index = 0; index < list.size(); ++index) {
            list[index].kind = ActionKind::path;
            list[index].target = path(index);
            QVERIFY(QFile(path(index)).open(QFile::WriteOnly));
        }
        Window window(list);
        window.open();
        topsOf(window);
        window.bar().setValue(0);
        QVERIFY(!seenText(*window.row(1), u"Not found"_s));
        QFile::remove(path(1));
        QFile::remove(path(59));
        window.refresh();
        QVERIFY(seenText(*window.row(1), u"Not found"_s));
        window.bar().setValue(window.bar().maximum());
        QVERIFY(seenText(*window.row(59), u"Not found"_s));
        QVERIFY(!seenText(*window.row(58), u"Not found"_s));
    }

    void showsEachEntryOfAnIdThatIsThereTwice()
    {
        auto list = numbered(60);
        for (const qsizetype index : {3, 4, 9, 40})
            list[index].id = list[2].id;
        // With most fonts, of another height.
        list[4].name = u"हिन्दी"_s;
        Window window(list);
        window.open();
        const auto isInOrder = [&] {
            const auto rows = window.rows();
            auto entry = std::ranges::find(list, nameOf(rows.first()), &LaunchEntry::name);
            return std::ranges::all_of(
                rows, [&](QWidget *row) { return nameOf(row) == (entry++)->name; });
        };
        for (const int place : {0, 110, 50, 200, window.bar().maximum(), 100, 20, 0}) {
            window.bar().setValue(place);
            settle();
            QVERIFY(isInOrder());
            window.refresh();
            QVERIFY(isInOrder());
        }
        QTest::keyClick(window.control(4, u"Delete"_s), Qt::Key_Space);
        settle();
        QCOMPARE(window.store->entries().size(), 55);
        QCOMPARE(window.fault(), noFault);
    }

    void editsTheEntryOfTheRow()
    {
        Window window(numbered(500));
        window.open();
        window.bar().setValue(window.bar().maximum());
        QTest::mouseClick(window.control(499, u"Edit"_s), Qt::LeftButton);
        QCOMPARE(window.edited, QStringList({numberedName(499)}));
    }
};

QTEST_MAIN(EntryListTest)
#include "EntryListTest.moc"
