// The line of the settings window that offers to undo a deletion or a reset.

#include "support/SettingsWindow.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
const QString undo = u"Undo"_s;
const QString newsDeleted = u"“News” was deleted."_s;
const QString keysRemoved = u"The keys of all entries were removed."_s;
const QString question = u"Remove the keys from every shortcut?"_s;
const KeyboardShortcuts::Shortcut commandK{40, 256};

LaunchEntry website(const QString &name)
{
    return SettingsWindow::website(name);
}

/// Notes what appears of what screen readers say by themselves.
class Announcements : public QObject
{
public:
    Announcements() { qApp->installEventFilter(this); }

    QStringList taken() { return std::exchange(m_texts, {}); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *const part = qobject_cast<QWidget *>(watched);
        if (event->type() == QEvent::Show && part && roleOf(part) == QAccessible::Notification)
            m_texts << nameOf(part);
        return false;
    }

private:
    QStringList m_texts;
};

/// The window of a user with two entries, whose keys are ⌘K and ⌘L.
struct Window : SettingsWindow {
    Window()
        : SettingsWindow({website(u"News"_s), website(u"Weather"_s)})
    {
        setKeys(entries[0], commandK);
        setKeys(entries[1], {37, 256});
        store->announceChange();
        settle();
    }

    bool hasLine() { return seenButton(*view, undo) != nullptr; }
    QList<QWidget *> dividers() { return seenAll(*view, QAccessible::Separator); }

    void reset()
    {
        click(u"Reset all shortcuts…"_s);
        sheet(question);
        clickInSheet(u"Reset all shortcuts"_s);
    }
    void pressUndoKeys()
    {
        // The focus comes back by itself only in the program.
        view->activateWindow();
        QTRY_VERIFY(view->isActiveWindow());
        QTest::keyClick(view->window()->focusWidget(), Qt::Key_Z, Qt::ControlModifier);
        settle();
    }
    void verifyThatAllIsBack()
    {
        QCOMPARE(store->entries(), entries);
        QCOMPARE(store->getShortcut(entries[0].shortcutName()), commandK);
        QVERIFY(!hasLine());
    }

    const QList<LaunchEntry> entries = store->entries();
};

using Act = std::function<void(Window &window)>;
} // namespace

Q_DECLARE_METATYPE(Act)

class UndoLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isNotThereBeforeItIsNeeded()
    {
        Window window;
        QVERIFY(!window.hasLine());
        QCOMPARE(window.dividers().size(), 2);
    }

    void saysWhatCanBeUndone_data()
    {
        QTest::addColumn<Act>("change");
        QTest::addColumn<QString>("text");
        QTest::newRow("a deletion")
            << Act([](Window &it) { it.click(u"Delete"_s); }) << newsDeleted;
        QTest::newRow("a reset") << Act([](Window &it) { it.reset(); }) << keysRemoved;
        QTest::newRow("the deletion of an entry without a name") << Act([](Window &it) {
            LaunchEntry entry = it.entries[0];
            entry.name.clear();
            it.store->upsert(entry);
            it.store->deleteEntry(entry);
            settle();
        }) << u"An entry was deleted."_s;
        QTest::newRow("the deletion of an entry whose name is read from right to left")
            << Act([](Window &it) {
                   LaunchEntry entry = it.entries[0];
                   entry.name = u"صور"_s;
                   it.store->upsert(entry);
                   it.store->deleteEntry(entry);
                   settle();
               })
            << u"\u200E“صور” was deleted."_s;
        QTest::newRow("a second deletion") << Act([](Window &it) {
            it.click(u"Delete"_s);
            it.click(u"Delete"_s);
        }) << u"“Weather” was deleted."_s;
    }
    void saysWhatCanBeUndone()
    {
        QFETCH(const Act, change);
        QFETCH(const QString, text);
        Window window;
        change(window);
        QVERIFY(window.shows(text));
        QCOMPARE(seenButton(*window.view, undo)->accessibleDescription(), text);
    }

    void standsAboveTheFooter()
    {
        Window window;
        window.click(u"Delete"_s);
        const auto top = [&](const QWidget *part) {
            return part->mapTo(&*window.view, QPoint()).y();
        };
        const auto dividers = window.dividers();
        QCOMPARE(dividers.size(), 3);
        QWidget *const text = seenText(*window.view, newsDeleted);
        QVERIFY(top(dividers[1]) < top(text) && top(text) < top(dividers[2]));
        QVERIFY(top(dividers[2]) < top(window.checkBox(u"Launch at login"_s)));
    }

    void goesOnceSomethingElseHasChanged()
    {
        Window window;
        window.click(u"Delete"_s);
        window.store->upsert(website(u"Maps"_s));
        settle();
        QVERIFY(!window.hasLine());
        QVERIFY(!window.shows(newsDeleted));
    }

    void isThereAgainWhenTheWindowIsOpenedAgain()
    {
        Window window;
        window.click(u"Delete"_s);
        window.view->hide();
        settle();
        window.view->show();
        QVERIFY(window.shows(newsDeleted));
        window.view->hide();
        window.store->upsert(website(u"Maps"_s));
        window.view->show();
        QVERIFY(!window.hasLine());
    }

    void undoes_data()
    {
        QTest::addColumn<Act>("change");
        QTest::addColumn<Act>("undoIt");
        const Act deletion([](Window &it) { it.click(u"Delete"_s); });
        const Act reset([](Window &it) { it.reset(); });
        const Act byButton([](Window &it) { it.click(undo); });
        const Act byKeys([](Window &it) { it.pressUndoKeys(); });
        QTest::newRow("a deletion by the button") << deletion << byButton;
        QTest::newRow("a deletion by Ctrl+Z") << deletion << byKeys;
        QTest::newRow("a reset by the button") << reset << byButton;
        QTest::newRow("a reset by Ctrl+Z") << reset << byKeys;
        QTest::newRow("by the space bar") << deletion << Act([](Window &it) {
            QWidget *const button = seenButton(*it.view, undo);
            button->setFocus(Qt::TabFocusReason);
            QTest::keyClick(button, Qt::Key_Space);
            settle();
        });
        QTest::newRow("by two presses at once") << deletion << Act([](Window &it) {
            auto *const button = qobject_cast<QPushButton *>(seenButton(*it.view, undo));
            button->click();
            button->click();
            settle();
        });
        QTest::newRow("by a double click") << deletion << Act([](Window &it) {
            QWidget *const button = seenButton(*it.view, undo);
            QTest::mouseClick(button, Qt::LeftButton);
            QTest::mouseDClick(button, Qt::LeftButton);
            QTest::mouseRelease(button, Qt::LeftButton);
            settle();
        });
        QTest::newRow("while it is hidden") << deletion << Act([](Window &it) {
            auto *const button = qobject_cast<QPushButton *>(seenButton(*it.view, undo));
            it.view->hide();
            button->click();
            it.view->show();
            settle();
        });
    }
    void undoes()
    {
        QFETCH(const Act, change);
        QFETCH(const Act, undoIt);
        Window window;
        change(window);
        undoIt(window);
        window.verifyThatAllIsBack();
    }

    void isNotPressedByTheSecondHalfOfADoubleClick()
    {
        Window window;
        window.click(u"Delete"_s);
        QWidget *const button = seenButton(*window.view, undo);
        QTest::mouseDClick(button, Qt::LeftButton);
        QTest::mouseRelease(button, Qt::LeftButton);
        settle();
        QVERIFY(window.shows(newsDeleted));
    }

    void waitsWhileASheetIsOpen_data()
    {
        QTest::addColumn<QString>("button");
        QTest::addColumn<QString>("title");
        QTest::newRow("the editor") << u"Edit"_s << u"Edit shortcut"_s;
        QTest::newRow("About") << u"About"_s << u"Corvane"_s;
        QTest::newRow("a panel") << u"Import…"_s << u"Import"_s;
    }
    void waitsWhileASheetIsOpen()
    {
        QFETCH(const QString, button);
        QFETCH(const QString, title);
        Window window;
        window.reset();
        window.click(button);
        QWidget &sheet = SettingsWindow::sheet(title);
        // As assistive programs can.
        qobject_cast<QPushButton *>(seenButton(*window.view, undo))->click();
        QTest::keyClick(&*window.view, Qt::Key_Z, Qt::ControlModifier);
        QTest::keyClick(sheet.focusWidget(), Qt::Key_Z, Qt::ControlModifier);
        settle();
        QVERIFY(!window.store->getShortcut(window.entries[0].shortcutName()));
        QTest::keyClick(sheet.focusWidget(), Qt::Key_Escape);
        QTRY_VERIFY(sheets().isEmpty());
        window.click(undo);
        window.verifyThatAllIsBack();
    }

    void leavesCtrlZToATextField()
    {
        Window window;
        window.click(u"Delete"_s);
        window.click(u"Edit"_s);
        QWidget &sheet = SettingsWindow::sheet(u"Edit shortcut"_s);
        auto *const field = sheet.findChild<QLineEdit *>();
        field->setFocus();
        QTest::keyClick(field, Qt::Key_X);
        QTest::keyClick(field, Qt::Key_Z, Qt::ControlModifier);
        settle();
        QCOMPARE(field->text(), u"Weather"_s);
        QCOMPARE(window.store->entries().size(), 1);
    }

    void givesTheFocusToWhatIsBack_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<int>("count");
        QTest::newRow("the first entry") << 0 << 2;
        QTest::newRow("the last entry") << 1 << 2;
        QTest::newRow("the only entry") << 0 << 1;
        QTest::newRow("an entry out of sight") << 150 << 200;
        // One of them is cut by the lower edge.
        for (int index = 3; index < 12; ++index)
            QTest::addRow("entry %d of many", index) << index << 200;
    }
    void givesTheFocusToWhatIsBack()
    {
        QFETCH(const int, index);
        QFETCH(const int, count);
        QList<LaunchEntry> entries;
        for (int number = 0; number < count; ++number)
            entries << website(QString::number(number));
        SettingsWindow window(entries);
        window.store->deleteEntry(entries[index]);
        settle();
        window.click(undo);
        QWidget *const focus = window.view->window()->focusWidget();
        QCOMPARE(nameOf(focus), u"Edit"_s);
        QWidget *const row = focus->parentWidget()->parentWidget();
        QVERIFY(row->isAncestorOf(focus));
        QCOMPARE(nameOf(row), QString::number(index));
        QCOMPARE(row->visibleRegion().boundingRect(), row->rect());
    }

    void doesNotGiveTheFocusToWhatFollowsWhenItGoes_data()
    {
        QTest::addColumn<Act>("end");
        QTest::newRow("with the undo of a reset") << Act([](Window &it) { it.click(undo); });
        QTest::newRow("with a change") << Act([](Window &it) {
            it.store->upsert(website(u"Maps"_s));
            settle();
        });
    }
    void doesNotGiveTheFocusToWhatFollowsWhenItGoes()
    {
        QFETCH(const Act, end);
        Window window;
        window.reset();
        seenButton(*window.view, undo)->setFocus();
        end(window);
        QVERIFY(!window.hasLine());
        QCOMPARE(nameOf(window.view->window()->focusWidget()), u"Add"_s);
    }

    void leavesTheFocusAloneWhenItGoesWithoutIt()
    {
        Window window;
        window.reset();
        window.checkBox(u"Launch at login"_s)->setFocus();
        window.pressUndoKeys();
        QVERIFY(!window.hasLine());
        QVERIFY(window.checkBox(u"Launch at login"_s)->hasFocus());
    }

    void isSaidWheneverItSaysSomethingNew()
    {
        Announcements announcements;
        Window window;
        window.store->upsert({.name = u"News"_s, .kind = ActionKind::website});
        settle();
        announcements.taken();
        window.store->deleteEntry(window.store->entries()[0]);
        settle();
        QCOMPARE(announcements.taken(), QStringList(newsDeleted));
        // Another entry of that name.
        window.store->deleteEntry(window.store->entries()[1]);
        settle();
        QCOMPARE(announcements.taken(), QStringList(newsDeleted));
        window.store->report(u"It failed."_s, Error{u"Why"_s});
        settle();
        QCOMPARE(announcements.taken(), QStringList());
    }
};

QTEST_MAIN(UndoLineTest)
#include "UndoLineTest.moc"
