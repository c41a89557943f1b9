#include "support/SettingsWindow.h"
#include "viewkit/Card.h"

#include <QFile>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QString notFound = u"Not found"_s;
const QString welcome = u"Welcome to Corvane"_s;
const QString seenKey = u"hasSeenWelcome"_s;

LaunchEntry website(const QString &name)
{
    return SettingsWindow::website(name);
}

QStringList rows(SettingsWindow &window)
{
    QStringList names;
    for (QWidget *const row : seenAll(*window.view, QAccessible::ListItem))
        names << nameOf(row);
    return names;
}

bool showsList(SettingsWindow &window)
{
    return !seenAll(*window.view, QAccessible::List).isEmpty();
}
} // namespace

class SettingsViewTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void standsInThisOrder()
    {
        SettingsWindow window({website(u"News"_s)}, {});
        QStringList names;
        for (QWidget *const part : window.view->findChildren<QWidget *>()) {
            const bool isNamed = roleOf(part) == QAccessible::Button
                || roleOf(part) == QAccessible::StaticText || roleOf(part) == QAccessible::CheckBox
                || roleOf(part) == QAccessible::List || roleOf(part) == QAccessible::Separator;
            if (part->isVisible() && isNamed)
                names << nameOf(part);
        }
        const QStringList expected{
            u"Add"_s,
            u"Import…"_s,
            u"Export…"_s,
            u""_s,
            welcome,
            u"Each shortcut is a key combination that opens an app, a folder, a file or a "
            "website, or runs a Shortcut, from anywhere on your Mac."_s,
            u"The one thing that can go wrong: if another app or macOS already uses the same "
            "combination, one of them may win and the other will not fire. The app warns you "
            "when it can tell."_s,
            u"Got it"_s,
            u"Shortcuts"_s,
            u"Enabled"_s,
            u"News"_s,
            u"https://example.org"_s,
            u"No keys"_s,
            u"Edit"_s,
            u"Delete"_s,
            u""_s,
            u"Launch at login"_s,
            u"Show a small notification when a shortcut runs"_s,
            u"Open Notification Settings"_s,
            u"About"_s,
            u"Reset all shortcuts…"_s,
        };
        QCOMPARE(names, expected);
    }

    void cutsNothingWhenItIsMadeNarrower()
    {
        const auto restored =
            qScopeGuard([before = QApplication::font()] { QApplication::setFont(before); });
        QFont large = QApplication::font();
        large.setPointSizeF(large.pointSizeF() * 2);
        QApplication::setFont(large);
        SettingsWindow window({}, {});
        window.view->resize(1500, 1100);
        settle();
        QEvent relayout(QEvent::LayoutRequest);
        QCoreApplication::sendEvent(&*window.view, &relayout);
        window.view->resize(window.view->minimumSize());
        settle();
        for (QWidget *const label : seenAll(*window.view, QAccessible::StaticText))
            QVERIFY2(label->height() >= label->heightForWidth(label->width()),
                     qPrintable(nameOf(label)));
    }

    void canBeUsedByAssistiveProgramsWhileItIsHidden()
    {
        SettingsWindow window({website(u"News"_s)});
        auto *const button = qobject_cast<QPushButton *>(seenButton(*window.view, u"Delete"_s));
        window.view->hide();
        button->click();
        settle();
        QVERIFY(window.store->entries().isEmpty());
        window.view->show();
        QVERIFY(window.shows(u"No shortcuts yet"_s));
    }

    void keepsItsDistances()
    {
        SettingsWindow window({}, {});
        const auto place = [&](QWidget *part) {
            return QRect(part->mapTo(&*window.view, QPoint()), part->size());
        };
        const auto dividers = seenAll(*window.view, QAccessible::Separator);
        QCOMPARE(dividers.size(), 2);
        const QRect add = place(seenButton(*window.view, u"Add"_s));
        QCOMPARE(add.topLeft(), QPoint(10, 10));
        QCOMPARE(place(dividers.at(0)).top() - add.bottom() - 1, 10);
        QCOMPARE(place(dividers.at(0)).width(), window.view->width());
        QCOMPARE(window.view->width() - place(seenButton(*window.view, u"Export…"_s)).right() - 1,
                 10);

        const auto *const card = window.view->findChild<Card *>();
        const QRect cardPlace(card->mapTo(&*window.view, QPoint()), card->size());
        QCOMPARE(cardPlace.top() - place(dividers.at(0)).bottom() - 1, 12);
        QCOMPARE(cardPlace.left(), 12);
        QCOMPARE(window.view->width() - cardPlace.right() - 1, 12);
        const QRect gotIt = place(seenButton(*window.view, u"Got it"_s));
        QCOMPARE(cardPlace.bottomRight() - gotIt.bottomRight(), QPoint(12, 12));
        const auto texts = seenAll(*window.view, QAccessible::StaticText);
        QCOMPARE(place(texts.at(2)).top() - place(texts.at(1)).bottom() - 1, 6);
        QCOMPARE(place(texts.at(1)).left() - cardPlace.left(), 12);

        const QRect login = place(window.checkBox(u"Launch at login"_s));
        QCOMPARE(login.top() - place(dividers.at(1)).bottom() - 1, 12);
        QCOMPARE(login.left(), 12);
        const QRect notification =
            place(window.checkBox(u"Show a small notification when a shortcut runs"_s));
        QCOMPARE(notification.top() - login.bottom() - 1, 8);
        const QRect reset = place(seenButton(*window.view, u"Reset all shortcuts…"_s));
        QCOMPARE(reset.top() - notification.bottom() - 1, 8);
        QCOMPARE(window.view->rect().bottomRight() - reset.bottomRight(), QPoint(12, 12));
    }

    void saysThatThereAreNoShortcutsYet()
    {
        SettingsWindow window;
        QCOMPARE(seenTexts(*window.view),
                 QStringList({u"No shortcuts yet"_s,
                              u"Add a shortcut to open an app, folder, file or website, or run a "
                              "Shortcut, with one key combination."_s}));
        QVERIFY(!showsList(window));
        QVERIFY(!seenButton(*window.view, u"Export…"_s)->isEnabled());
        QVERIFY(!seenButton(*window.view, u"Reset all shortcuts…"_s)->isEnabled());
    }

    void centresTheEmptyStateBetweenItsDividers()
    {
        SettingsWindow window;
        const auto place = [&](QWidget *part) {
            return QRect(part->mapTo(&*window.view, QPoint()), part->size());
        };
        QWidget *const explanation = seenAll(*window.view, QAccessible::StaticText).last();
        QWidget *const add = seenAll(*window.view, QAccessible::Button).at(3);
        QCOMPARE(nameOf(add), u"Add"_s);
        for (QWidget *const part :
             {add, seenText(*window.view, u"No shortcuts yet"_s), explanation})
            QVERIFY(std::abs(place(part).center().x() - window.view->width() / 2) <= 1);
        QVERIFY(explanation->width() <= 360);
        const auto dividers = seenAll(*window.view, QAccessible::Separator);
        // The drawing above is 40 pixels high, and 10 away.
        const int above = place(seenText(*window.view, u"No shortcuts yet"_s)).top() - 50
            - place(dividers.at(0)).bottom();
        const int below = place(dividers.at(1)).top() - place(add).bottom();
        QVERIFY(std::abs(above - below) < 5);
    }

    void welcomesUntilItIsDismissed_data()
    {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<bool>("isWelcomed");
        QTest::newRow("a user of whom nothing is known") << QVariant() << true;
        QTest::newRow("a user who has not dismissed it") << QVariant(false) << true;
        QTest::newRow("a user who has") << QVariant(true) << false;
    }
    void welcomesUntilItIsDismissed()
    {
        QFETCH(const QVariant, stored);
        QFETCH(const bool, isWelcomed);
        SettingsWindow window({}, {{seenKey, stored}});
        QCOMPARE(window.shows(welcome), isWelcomed);
    }

    void remembersThatTheWelcomeWasDismissed()
    {
        SettingsWindow window({}, {});
        window.click(u"Got it"_s);
        QCOMPARE(window.platform.userDefaults.values.value(seenKey), QVariant(true));
        QTRY_VERIFY(!window.shows(welcome));
        SettingsView again(*window.store);
        again.show();
        QVERIFY(!seenText(again, welcome));
    }

    void welcomesAgainWhenThatIsForgotten()
    {
        SettingsWindow window;
        window.platform.userDefaults.remove(seenKey);
        QTRY_VERIFY(window.shows(welcome));
    }

    void growsIfItsContentNeedsMore()
    {
        const auto restored =
            qScopeGuard([before = QApplication::font()] { QApplication::setFont(before); });
        QFont large = QApplication::font();
        large.setPointSizeF(large.pointSizeF() * 2);
        QApplication::setFont(large);
        SettingsWindow window({}, {});
        QTRY_VERIFY(window.view->height() > 480);
        for (QWidget *const label : seenAll(*window.view, QAccessible::StaticText))
            QVERIFY2(label->height() >= label->heightForWidth(label->width()),
                     qPrintable(nameOf(label)));
        const int before = window.view->minimumHeight();
        window.click(u"Got it"_s);
        QTRY_VERIFY(window.view->minimumHeight() < before);
    }

    void showsTheListInsteadOnceThereIsAnEntry()
    {
        SettingsWindow window;
        window.store->upsert(website(u"News"_s));
        QTRY_COMPARE(rows(window), QStringList(u"News"_s));
        QVERIFY(showsList(window));
        QVERIFY(!seenText(*window.view, u"No shortcuts yet"_s));
    }

    void givesTheListAllTheRoomBetweenItsDividers()
    {
        SettingsWindow window({website(u"News"_s)});
        QWidget *const list = seenAll(*window.view, QAccessible::List).first()->parentWidget();
        const QRect place(list->mapTo(&*window.view, QPoint()), list->size());
        const auto dividers = seenAll(*window.view, QAccessible::Separator);
        QCOMPARE(place.left(), 0);
        QCOMPARE(place.width(), window.view->width());
        QCOMPARE(place.top(), dividers.at(0)->geometry().bottom() + 1);
        QCOMPARE(place.bottom() + 1, dividers.at(1)->geometry().top());
        window.view->resize(700, 700);
        QTRY_COMPARE(list->height(), place.height() + 220);
    }

    void showsTheEmptyStateAgainWhenTheLastEntryGoes()
    {
        SettingsWindow window({website(u"News"_s)});
        QVERIFY(!seenText(*window.view, u"No shortcuts yet"_s));
        window.click(u"Delete"_s);
        QVERIFY(window.store->entries().isEmpty());
        QTRY_VERIFY(seenText(*window.view, u"No shortcuts yet"_s));
        QVERIFY(!showsList(window));
        QCOMPARE(nameOf(window.view->focusWidget()), u"Add"_s);
    }

    void addsInASheetAnEntryThatIsNotInTheListYet_data()
    {
        QTest::addColumn<QList<LaunchEntry>>("entries");
        QTest::addColumn<qsizetype>("button");
        const QList<LaunchEntry> none;
        QTest::newRow("by the button above the list") << QList{website(u"News"_s)} << qsizetype(0);
        QTest::newRow("by the button above no list") << none << qsizetype(0);
        QTest::newRow("by the button in place of the list") << none << qsizetype(3);
    }

    void addsInASheetAnEntryThatIsNotInTheListYet()
    {
        QFETCH(const QList<LaunchEntry>, entries);
        QFETCH(const qsizetype, button);
        SettingsWindow window(entries);
        QTest::mouseClick(seenAll(*window.view, QAccessible::Button).at(button), Qt::LeftButton);
        QTRY_COMPARE(sheetTitles(), QStringList(u"New shortcut"_s));
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
        SettingsWindow window;
        window.click(u"Add"_s);
        QTRY_COMPARE(sheetTitles(), QStringList(u"New shortcut"_s));
        QTest::keyClick(sheets().first(), Qt::Key_Escape);
        QTRY_COMPARE(sheetTitles(), QStringList());
        window.click(u"Add"_s);
        QTRY_COMPARE(sheetTitles(), QStringList(u"New shortcut"_s));
    }

    void editsTheEntryOfTheRow()
    {
        SettingsWindow window({website(u"News"_s), website(u"Weather"_s)});
        QWidget *const row = seen(*window.view, QAccessible::ListItem, u"Weather"_s);
        QTest::mouseClick(seenButton(*row, u"Edit"_s), Qt::LeftButton);
        QTRY_COMPARE(sheetTitles(), QStringList(u"Edit shortcut"_s));
        const auto *const name = qobject_cast<QLineEdit *>(
            seen(*sheets().first(), QAccessible::EditableText, u"Name"_s));
        QVERIFY(name);
        QCOMPARE(name->text(), u"Weather"_s);
    }

    void opensOneSheetAtATime()
    {
        SettingsWindow window({website(u"News"_s)});
        window.click(u"Add"_s);
        SettingsWindow::sheet(u"New shortcut"_s);
        // As assistive programs can, past the sheet.
        for (const QString &name :
             {u"Edit"_s, u"About"_s, u"Reset all shortcuts…"_s, u"Import…"_s, u"Export…"_s})
            qobject_cast<QPushButton *>(seenButton(*window.view, name))->click();
        settle();
        QCOMPARE(sheetTitles(), QStringList(u"New shortcut"_s));
        QTest::keyClick(sheets().first(), Qt::Key_Escape);
        QTRY_COMPARE(sheetTitles(), QStringList());
        settle();
        QCOMPARE(sheetTitles(), QStringList());
    }

    void deletesWithoutAsking()
    {
        SettingsWindow window({website(u"News"_s), website(u"Weather"_s)});
        window.click(u"Delete"_s);
        QCOMPARE(window.store->entries().size(), 1);
        QTRY_COMPARE(rows(window), QStringList(u"Weather"_s));
        QVERIFY(sheets().isEmpty());
    }

    void refreshesOnceForManyNotices()
    {
        SettingsWindow window({website(u"News"_s)});
        window.setKeys(window.store->entries().first(), {40, 256});
        settle();
        window.platform.symbolicHotkeys.copies = 0;
        for (int count = 0; count < 20; ++count)
            window.store->announceChange();
        QCOMPARE(window.platform.symbolicHotkeys.copies, 0);
        QTRY_VERIFY(seenText(*window.view, u"⌘K"_s));
        settle();
        QCOMPARE(window.platform.symbolicHotkeys.copies, 1);
    }

    void asksNobodyWhileItIsHidden()
    {
        SettingsWindow window({website(u"News"_s)});
        window.setKeys(window.store->entries().first(), {40, 256});
        window.view->hide();
        settle();
        window.platform.symbolicHotkeys.copies = 0;
        window.store->announceChange();
        settle();
        QCOMPARE(window.platform.symbolicHotkeys.copies, 0);
        window.view->show();
        QVERIFY(seenText(*window.view, u"⌘K"_s));
    }

    void looksForFilesAgainWhenTheUserComesBack()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(u"file"_s);
        SettingsWindow window({{.name = u"File"_s, .kind = ActionKind::path, .target = path}});
        QVERIFY(seenText(*window.view, notFound));
        QWidget other;
        other.show();
        other.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&other));
        QVERIFY(QFile(path).open(QFile::WriteOnly));
        window.view->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&*window.view));
        QTRY_VERIFY(!seenText(*window.view, notFound));
    }

    void looksForFilesAgainWhenItIsShownAgain()
    {
        QTemporaryDir folder;
        const QString path = folder.filePath(u"file"_s);
        SettingsWindow window({{.name = u"File"_s, .kind = ActionKind::path, .target = path}});
        QVERIFY(seenText(*window.view, notFound));
        window.view->hide();
        QVERIFY(QFile(path).open(QFile::WriteOnly));
        window.view->show();
        QTRY_VERIFY(!seenText(*window.view, notFound));
    }

    void isNeverTooSmall()
    {
        SettingsWindow window;
        window.view->resize(10, 10);
        QCOMPARE(window.view->size(), QSize(580, 480));
    }

    void canStayAsSmallWithAnyEntry()
    {
        SettingsWindow window({website(u"a name that is long "_s.repeated(30))});
        window.view->resize(580, 480);
        settle();
        QCOMPARE(window.view->size(), QSize(580, 480));
        QVERIFY(window.view->layout()->totalMinimumSize().width() <= 580);
    }

    void endsARecordingInTheMomentInWhichTheSheetIsClosed()
    {
        SettingsWindow window;
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
