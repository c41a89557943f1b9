#include "app/AppDelegate.h"
#include "fakes/FakePlatform.h"
#include "hotkeys/HotkeyCenter.h"
#include "store/ShortcutStore.h"
#include "viewkit/ScrolledContent.h"

#include <QLabel>
#include <QScreen>
#include <QScrollBar>
#include <QTest>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace
{
const QString paused = u"pauseAll"_s;
const QString hasSeenWelcome = u"hasSeenWelcome"_s;

/// A program that has started, of a user who knows it.
struct Program {
    explicit Program(const QVariant &welcome = true)
    {
        platform.userDefaults.values.insert(hasSeenWelcome, welcome);
        appDelegate.applicationDidFinishLaunching();
    }

    FakePlatform platform;
    HotkeyCenter center{platform.hotkeys, platform.userDefaults};
    ShortcutStore store{platform.services, center};
    AppDelegate appDelegate{platform.services, store};

    StatusItemDelegate &shown() const { return *platform.statusBar.delegate; }

    LaunchEntry add(LaunchEntry entry)
    {
        store.upsert(entry);
        return entry;
    }
    void storeKeys(const LaunchEntry &entry)
    {
        KeyboardShortcuts::setShortcut(KeyboardShortcuts::Shortcut{40, 0x1800},
                                       entry.shortcutName(), platform.userDefaults, center);
    }

    /// The menu, a line of text for each item.
    QStringList menu() const
    {
        QStringList lines;
        for (const MenuItem &item : shown().menuNeedsUpdate())
            lines << text(item);
        return lines;
    }
    MenuItem item(qsizetype index) const { return shown().menuNeedsUpdate().at(index); }

    static QString text(const MenuItem &item)
    {
        if (item.isSeparator())
            return u"---"_s;
        QString line = item.title;
        if (!item.isEnabled)
            line += u" [disabled]"_s;
        if (item.isChecked)
            line += *item.isChecked ? u" [x]"_s : u" [ ]"_s;
        if (!item.keyEquivalent.isEmpty())
            line += u" Command-"_s + item.keyEquivalent;
        return line;
    }
};

void choose(const MenuItem &item)
{
    item.action(item);
}
} // namespace

class AppDelegateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasAnItemInTheStatusBarOnceItIsLaunched()
    {
        const Program program;
        const StatusButton button = program.shown().statusButton();
        QCOMPARE(button.image, u"command.square"_s);
        QCOMPARE(button.accessibilityDescription, u"Corvane"_s);
        QVERIFY(!button.isDimmed);
    }

    void showsInTheStatusBarThatItIsPaused()
    {
        Program program;
        program.store.setPaused(true);
        const StatusButton button = program.shown().statusButton();
        QCOMPARE(button.accessibilityDescription, u"Corvane (paused)"_s);
        QVERIFY(button.isDimmed);
    }

    void listsNothingButItsOwnItemsWhileThereAreNoEntries()
    {
        const Program program;
        QCOMPARE(
            program.menu(),
            QStringList({u"No shortcuts yet [disabled]"_s, u"---"_s, u"Pause all shortcuts [ ]"_s,
                         u"Open Settings Command-,"_s, u"---"_s, u"Quit Command-q"_s}));
        QVERIFY(!program.item(0).canBeChosen());
    }

    void listsTheEntriesInTheirOrderWithTheirKeys()
    {
        Program program;
        program.storeKeys(program.add({.name = u"Notes"_s}));
        program.add({.name = u"Mail"_s});
        program.add({.name = u"Off"_s, .isEnabled = false});
        QCOMPARE(
            program.menu(),
            QStringList({u"Notes    ⌃⌥K"_s, u"Mail    No keys"_s, u"Off    No keys [disabled]"_s,
                         u"---"_s, u"Pause all shortcuts [ ]"_s, u"Open Settings Command-,"_s,
                         u"---"_s, u"Quit Command-q"_s}));
    }

    void showsEveryNameOnOneLine_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("title");
        const QString keys = u"    No keys"_s;
        QTest::newRow("none") << QString() << keys;
        QTest::newRow("an ampersand and an underscore") << u"A & b_c"_s << u"A & b_c"_s + keys;
        QTest::newRow("an emoji") << u"🗒️ Notes"_s << u"🗒️ Notes"_s + keys;
        QTest::newRow("right to left") << u"מכתבים"_s << u"מכתבים"_s + keys;
        QTest::newRow("300 characters") << QString(300, u'x') << QString(300, u'x') + keys;
        QTest::newRow("line breaks") << u"a\nb\r\nc\rd"_s << u"a b c d"_s + keys;
        QTest::newRow("line breaks of other kinds")
            << u"a\u2028b\u2029c\vd\fe\u0085f"_s << u"a b c d e f"_s + keys;
        QTest::newRow("a tab") << u"a\tb"_s << u"a b"_s + keys;
    }
    void showsEveryNameOnOneLine()
    {
        QFETCH(const QString, name);
        QFETCH(const QString, title);
        Program program;
        program.add({.name = name});
        QCOMPARE(program.item(0).title, title);
    }

    void runsTheChosenEntryAlsoWhenItIsDisabledOrAllArePaused()
    {
        Program program;
        program.store.setPaused(true);
        program.add({.name = u"Site"_s,
                     .kind = ActionKind::website,
                     .target = u"https://example.com/"_s,
                     .isEnabled = false});
        choose(program.item(0));
        QTRY_COMPARE(program.platform.workspace.opened, QStringList(u"https://example.com/"_s));
    }

    void runsTheEntryAsItIsWhenItIsChosen()
    {
        Program program;
        LaunchEntry entry = program.add({.name = u"Site"_s, .kind = ActionKind::website});
        const MenuItem shownBefore = program.item(0);
        entry.target = u"https://example.com/"_s;
        program.store.upsert(entry);
        choose(shownBefore);
        QTRY_COMPARE(program.platform.workspace.opened, QStringList(u"https://example.com/"_s));
    }

    void runsNothingWhenTheChosenEntryIsThereNoMore_data()
    {
        QTest::addColumn<QString>("representedObject");
        QTest::newRow("deleted") << QUuid::createUuid().toString(QUuid::WithoutBraces);
        QTest::newRow("none") << QString();
        QTest::newRow("no id") << u"Notes"_s;
    }
    void runsNothingWhenTheChosenEntryIsThereNoMore()
    {
        QFETCH(const QString, representedObject);
        Program program;
        // What is no id must not be taken for this one either.
        program.add(
            {.id = QUuid(), .kind = ActionKind::website, .target = u"https://example.com/"_s});
        MenuItem item = program.item(0);
        item.representedObject = representedObject;
        choose(item);
        QCoreApplication::processEvents();
        QVERIFY(program.platform.workspace.opened.isEmpty());
    }

    void pausesAndResumesAllShortcuts()
    {
        Program program;
        choose(program.item(2));
        QVERIFY(program.store.paused());
        QCOMPARE(program.platform.userDefaults.values.value(paused), QVariant(true));
        QCOMPARE(program.menu().at(2), u"Pause all shortcuts [x]"_s);
        choose(program.item(2));
        QVERIFY(!program.store.paused());
        QCOMPARE(program.menu().at(2), u"Pause all shortcuts [ ]"_s);
    }

    void quits()
    {
        const Program program;
        choose(program.item(5));
        QCOMPARE(program.platform.application.terminations, 1);
    }

    void opensTheOneSettingsWindow()
    {
        const Program program;
        QVERIFY(program.platform.application.activated.isEmpty());
        choose(program.item(3));
        choose(program.item(3));
        const QList<QWidget *> &windows = program.platform.application.activated;
        QCOMPARE(windows.size(), 2);
        QCOMPARE(windows.at(0), windows.at(1));
        QCOMPARE(windows.at(0)->windowTitle(), u"Corvane"_s);
        QVERIFY(!windows.at(0)->windowIcon().isNull());
    }

    void opensTheSettingsWhereNoMenuCanBeOpened()
    {
        const Program program;
        program.shown().statusButtonClicked();
        QCOMPARE(program.platform.application.activated.size(), 1);
    }

    void centresTheWindowOnlyWhenItIsMade()
    {
        Program program;
        program.appDelegate.openSettings();
        QWidget &window = *program.platform.application.activated.constFirst();
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        QVERIFY((window.frameGeometry().center() - screen.center()).manhattanLength() <= 2);
        window.move(7, 8);
        program.appDelegate.openSettings();
        QCOMPARE(window.pos(), QPoint(7, 8));
    }

    void makesTheFirstWindowAsHighAsItsContentNeedsAndTheScreenPermits_data()
    {
        QTest::addColumn<int>("points");
        QTest::addColumn<bool>("hasRoom");
        QTest::newRow("usual font") << 10 << true;
        QTest::newRow("larger font") << 13 << true;
        QTest::newRow("font for which the screen is too low") << 18 << false;
    }
    void makesTheFirstWindowAsHighAsItsContentNeedsAndTheScreenPermits()
    {
        QFETCH(const int, points);
        QFETCH(const bool, hasRoom);
        const auto restored =
            qScopeGuard([before = QApplication::font()] { QApplication::setFont(before); });
        QFont font = QApplication::font();
        font.setPointSize(points);
        QApplication::setFont(font);
        Program program{false};
        QWidget *const window = program.platform.application.activated.constFirst();
        const QRect placed = window->geometry();
        QVERIFY(QGuiApplication::primaryScreen()->availableGeometry().contains(placed));
        window->show();
        QCoreApplication::processEvents();
        QCOMPARE(window->geometry(), placed);
        auto *const scrolled = window->findChild<viewkit::ScrolledContent *>();
        QCOMPARE(scrolled->verticalScrollBar()->maximum() == 0, hasRoom);
        for (QLabel *const label : window->findChildren<QLabel *>()) {
            if (label->isVisible())
                QVERIFY2(label->height() >= label->heightForWidth(label->width()),
                         qPrintable(label->text()));
        }
    }

    void opensTheSettingsAtItsStartUntilTheWelcomeIsSeen_data()
    {
        QTest::addColumn<QVariant>("welcome");
        QTest::addColumn<qsizetype>("windows");
        QTest::newRow("never started") << QVariant() << qsizetype(1);
        QTest::newRow("not seen") << QVariant(false) << qsizetype(1);
        QTest::newRow("seen") << QVariant(true) << qsizetype(0);
    }
    void opensTheSettingsAtItsStartUntilTheWelcomeIsSeen()
    {
        QFETCH(const QVariant, welcome);
        QFETCH(const qsizetype, windows);
        const Program program(welcome);
        QCOMPARE(program.platform.application.activated.size(), windows);
        QCOMPARE(program.platform.userDefaults.values.value(hasSeenWelcome), welcome);
    }

    void updatesItsItemOnceAfterSeveralChangesInARow()
    {
        Program program;
        program.add({.name = u"A"_s});
        program.add({.name = u"B"_s});
        program.store.setPaused(true);
        QCOMPARE(program.platform.statusBar.updates, 0);
        QTRY_COMPARE(program.platform.statusBar.updates, 1);
        program.store.setPaused(false);
        QTRY_COMPARE(program.platform.statusBar.updates, 2);
        QCoreApplication::processEvents();
        QCOMPARE(program.platform.statusBar.updates, 2);
    }
};

QTEST_MAIN(AppDelegateTest)
#include "AppDelegateTest.moc"
