#include "platform/EventFlag.h"
#include "support/SettingsWindow.h"
#include "viewkit/Card.h"
#include "viewkit/DarkPalette.h"
#include "viewkit/PlainStyle.h"

#include <QComboBox>
#include <QFile>
#include <QLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QScopeGuard>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace viewkit;

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

/// What of the window the Tab key goes to.
QList<QWidget *> controls(QWidget &window)
{
    QList<QWidget *> found;
    for (QWidget *const part : window.findChildren<QWidget *>()) {
        if (part->isVisible() && part->isEnabled() && part->window() == window.window()
            && (part->focusPolicy() & Qt::TabFocus) == Qt::TabFocus)
            found << part;
    }
    return found;
}

QRect placeIn(QWidget &window, const QWidget *part)
{
    return {part->mapTo(&window, QPoint()), part->size()};
}

/// What the Tab key does not go to in the order of the screen, from top to bottom and in a line
/// from left to right; empty if all is well.
QString disorder(QWidget &window)
{
    const auto all = controls(window);
    all.first()->setFocus(Qt::TabFocusReason);
    QList<QWidget *> met;
    while (met.size() < all.size()) {
        QWidget *const control = window.window()->focusWidget();
        if (!all.contains(control) || met.contains(control))
            break;
        const QRect place = placeIn(window, control);
        const QRect former = met.isEmpty() ? QRect() : placeIn(window, met.last());
        if (!met.isEmpty() && place.top() <= former.bottom() && place.left() <= former.right())
            return nameOf(control) + u" comes after "_s + nameOf(met.last());
        met << control;
        QTest::keyClick(control, Qt::Key_Tab);
    }
    const bool isRound = window.window()->focusWidget() == all.first();
    return isRound && met.size() == all.size()
        ? QString()
        : u"%1 of %2 are met"_s.arg(met.size()).arg(all.size());
}

/// Names of what looks the same with the focus as without.
QStringList withoutVisibleFocus(QWidget &window)
{
    // By so much a part of it is lighter or darker, over most of its width.
    constexpr int difference = 24;
    QStringList names;
    // Some styles show the focus to users of the keyboard only.
    QTest::keyClick(window.focusWidget(), Qt::Key_Tab);
    for (QWidget *const control : controls(window)) {
        const auto picture = [&] {
            settle();
            return window.grab(placeIn(window, control)).toImage();
        };
        control->setFocus(Qt::TabFocusReason);
        const QImage with = picture();
        control->clearFocus();
        const QImage without = picture();
        QRect changed;
        for (int x = 0; x < with.width(); ++x) {
            for (int y = 0; y < with.height(); ++y) {
                if (std::abs(qGray(with.pixel(x, y)) - qGray(without.pixel(x, y))) >= difference)
                    changed |= QRect(x, y, 1, 1);
            }
        }
        // Of a check box only the box.
        const bool isBox = roleOf(control) == QAccessible::CheckBox;
        if (changed.width() < (isBox ? 12 : with.width() * 2 / 3))
            names << nameOf(control);
    }
    return names;
}

/// Opens a window to be looked at.
using Open = std::function<QWidget &(SettingsWindow &window)>;

Open pressed(const QString &button, const QString &title)
{
    return [=](SettingsWindow &window) -> QWidget & {
        window.click(button);
        return SettingsWindow::sheet(title);
    };
}

void addAlerts()
{
    QTest::newRow("the question before a reset")
        << pressed(u"Reset all shortcuts…"_s, u"Remove the keys from every shortcut?"_s);
    QTest::newRow("an error") << Open([](SettingsWindow &window) -> QWidget & {
        window.store->report(u"It failed."_s, Error{u"Why"_s});
        return SettingsWindow::sheet(u"Something went wrong"_s);
    });
}

void addWindows()
{
    QTest::addColumn<Open>("open");
    QTest::newRow("the window") << Open(
        [](SettingsWindow &window) -> QWidget & { return *window.view; });
    QTest::newRow("the window after a deletion") << Open([](SettingsWindow &window) -> QWidget & {
        window.click(u"Delete"_s);
        return *window.view;
    });
    QTest::newRow("the window without entries") << Open([](SettingsWindow &window) -> QWidget & {
        while (!window.store->entries().isEmpty())
            window.store->deleteEntry(window.store->entries().first());
        settle();
        return *window.view;
    });
    QTest::newRow("the editor of a new entry") << pressed(u"Add"_s, u"New shortcut"_s);
    QTest::newRow("the editor of a website with keys") << pressed(u"Edit"_s, u"Edit shortcut"_s);
    QTest::newRow("About") << pressed(u"About"_s, u"Corvane"_s);
    QTest::newRow("details") << Open([](SettingsWindow &window) -> QWidget & {
        window.store->report(u"It failed."_s, Error{u"Why"_s});
        SettingsWindow::sheet(u"Something went wrong"_s);
        SettingsWindow::clickInSheet(u"Show Details"_s);
        return SettingsWindow::sheet(u"Details"_s);
    });
    QTest::newRow("the choice of an app") << Open([](SettingsWindow &window) -> QWidget & {
        window.platform.installedApplications.applications = {
            {.path = u"/a.desktop"_s, .name = u"A"_s}};
        window.click(u"Add"_s);
        QTest::mouseClick(seenButton(SettingsWindow::sheet(u"New shortcut"_s), u"Choose…"_s),
                          Qt::LeftButton);
        QWidget *const panel = QApplication::activeModalWidget();
        QTest::keyClick(panel->focusWidget(), Qt::Key_A);
        return *panel;
    });
}

/// With all parts that there can be, of a new user.
struct FullWindow : SettingsWindow {
    FullWindow()
        : SettingsWindow({website(u"News"_s), website(u"Weather"_s)}, {})
    {
        setKeys(store->entries().first(), {40, 256});
        setKeys(store->entries().last(), {40, 256});
        setLoginItem(LoginItemStatus::requiresApproval);
    }

    /// As the user does elsewhere, and comes back.
    void setLoginItem(LoginItemStatus status)
    {
        platform.loginItem.current = status;
        QEvent comesBack(QEvent::WindowActivate);
        QCoreApplication::sendEvent(&*view, &comesBack);
        settle();
    }
};
} // namespace

Q_DECLARE_METATYPE(Open)

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
            u"Bring open apps to the front"_s,
            u"Show keys with Mac signs (⌃⌥⇧⌘)"_s,
            u"Open Notification Settings"_s,
            u"About"_s,
            u"Reset all shortcuts…"_s,
        };
        QCOMPARE(names, expected);
    }

    void isWalkedThroughInTheOrderOfTheScreen_data() { addWindows(); }
    void isWalkedThroughInTheOrderOfTheScreen()
    {
        QFETCH(const Open, open);
        FullWindow window;
        QCOMPARE(disorder(open(window)), QString());
    }

    void isWalkedThroughInTheOrderOfTheScreenAlsoWhenPartsComeAndGo()
    {
        FullWindow window;
        QCOMPARE(nameOf(window.view->focusWidget()), u"Add"_s);
        QVERIFY(seenButton(*window.view, u"Open Login Items"_s));
        window.click(u"Got it"_s);
        QCOMPARE(disorder(*window.view), QString());
        window.setLoginItem(LoginItemStatus::enabled);
        QVERIFY(!seenButton(*window.view, u"Open Login Items"_s));
        QCOMPARE(disorder(*window.view), QString());
        for (int count = 0; count < 2; ++count)
            window.click(u"Delete"_s);
        QVERIFY(seenText(*window.view, u"No shortcuts yet"_s));
        QCOMPARE(disorder(*window.view), QString());
        window.store->upsert(website(u"New"_s));
        window.platform.userDefaults.remove(seenKey);
        window.setLoginItem(LoginItemStatus::requiresApproval);
        QVERIFY(window.shows(welcome));
        QCOMPARE(disorder(*window.view), QString());
    }

    void walksThroughTheEditorInTheOrderOfTheScreenAlsoWhenPartsComeAndGo()
    {
        FullWindow window;
        window.click(u"Add"_s);
        QWidget &sheet = SettingsWindow::sheet(u"New shortcut"_s);
        auto *const picker = sheet.findChild<QComboBox *>();
        // Around, and back to the first.
        for (const int kind : {1, 2, 3, 0, 2}) {
            picker->setCurrentIndex(kind);
            settle();
            QCOMPARE(disorder(sheet), QString());
        }
        QTest::mouseClick(seenButton(sheet, u"Record Shortcut"_s), Qt::LeftButton);
        window.platform.eventMonitor.press(38, commandEventFlag);
        QTRY_VERIFY(seenButton(sheet, u"Clear"_s));
        QCOMPARE(disorder(sheet), QString());
        QTest::mouseClick(seenButton(sheet, u"Clear"_s), Qt::LeftButton);
        QTRY_VERIFY(!seenButton(sheet, u"Clear"_s));
        QCOMPARE(disorder(sheet), QString());
    }

    void reachesTheDefaultButtonOfAnAlertFirst_data()
    {
        QTest::addColumn<Open>("open");
        addAlerts();
    }
    void reachesTheDefaultButtonOfAnAlertFirst()
    {
        QFETCH(const Open, open);
        FullWindow window;
        QWidget &alert = open(window);
        const auto buttons = alert.findChildren<QPushButton *>();
        QCOMPARE(buttons.size(), 2);
        QVERIFY(buttons.first()->isDefault());
        QVERIFY(buttons.first()->hasFocus());
        QVERIFY(placeIn(alert, buttons.first()).left() > placeIn(alert, buttons.last()).right());
        QTest::keyClick(buttons.first(), Qt::Key_Tab);
        QVERIFY(buttons.last()->hasFocus());
        QTest::keyClick(buttons.last(), Qt::Key_Tab);
        QVERIFY(buttons.first()->hasFocus());
    }

    void showsWhereTheFocusIs_data()
    {
        addWindows();
        addAlerts();
    }
    void showsWhereTheFocusIs()
    {
        QFETCH(const Open, open);
        const auto restored = qScopeGuard([] {
            QApplication::setStyle(u"fusion"_s);
            QApplication::setPalette(QPalette());
        });
        QApplication::setStyle(new PlainStyle);
        FullWindow window;
        QWidget &shown = open(window);
        for (const QPalette &palette : {QApplication::palette(), darkPalette()}) {
            QApplication::setPalette(palette);
            settle();
            QVERIFY(shown.window()->isActiveWindow());
            QCOMPARE(withoutVisibleFocus(shown).join(u", "_s), QString());
        }
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
        const QRect signs = place(window.checkBox(u"Show keys with Mac signs (⌃⌥⇧⌘)"_s));
        const QRect front = place(window.checkBox(u"Bring open apps to the front"_s));
        QCOMPARE(front.top() - notification.bottom() - 1, 8);
        QCOMPARE(signs.top() - front.bottom() - 1, 8);
        const QRect reset = place(seenButton(*window.view, u"Reset all shortcuts…"_s));
        QCOMPARE(reset.top() - signs.bottom() - 1, 8);
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
        SettingsView again(window.platform.services, *window.store);
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
