// The sheets of the settings window that tell or ask something.

#include "support/SettingsWindow.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace viewkit;

namespace
{
const QString wrong = u"Something went wrong"_s;
const QString details = u"Details"_s;
const QString about = u"Corvane"_s;
const QString question = u"Remove the keys from every shortcut?"_s;
const KeyboardShortcuts::Shortcut commandK{40, 256};

LaunchEntry website(const QString &name)
{
    return SettingsWindow::website(name);
}

QStringList buttons(QWidget &sheet)
{
    QStringList names;
    for (QWidget *const button : seenAll(sheet, QAccessible::Button))
        names << nameOf(button);
    return names;
}

void press(QWidget &sheet, Qt::Key key)
{
    QTest::keyClick(sheet.focusWidget() ? sheet.focusWidget() : &sheet, key);
    settle();
}

QRect placeIn(QWidget &sheet, QWidget *part)
{
    return {part->mapTo(&sheet, QPoint()), part->size()};
}

/// The details of an error with these words.
QWidget &openDetails(SettingsWindow &window, const QString &words)
{
    window.store->report(u"It failed."_s, Error{words});
    SettingsWindow::sheet(wrong);
    SettingsWindow::clickInSheet(u"Show Details"_s);
    return SettingsWindow::sheet(details);
}

using Close = std::function<void(QWidget &sheet)>;
} // namespace

Q_DECLARE_METATYPE(Close)

class SettingsSheetsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsWhatWentWrong()
    {
        SettingsWindow window;
        window.store->report(u"The disk is full."_s, Error{u"ENOSPC"_s});
        QWidget &sheet = SettingsWindow::sheet(wrong);
        QCOMPARE(seenTexts(sheet), QStringList({wrong, u"The disk is full."_s}));
        QCOMPARE(buttons(sheet), QStringList({u"Show Details"_s, u"OK"_s}));
        QCOMPARE(sheet.windowModality(), Qt::WindowModal);
        QCOMPARE(roleOf(&sheet), QAccessible::AlertMessage);
        QCOMPARE(sheet.accessibleDescription(), u"The disk is full."_s);
        QCOMPARE(sheet.parentWidget(), &*window.view);
        QCOMPARE(seenText(sheet, wrong)->font(), font(TextStyle::headline));
    }

    void forgetsTheErrorOnceItsAlertIsClosed_data()
    {
        QTest::addColumn<Close>("close");
        QTest::newRow("by the button")
            << Close([](auto &) { SettingsWindow::clickInSheet(u"OK"_s); });
        QTest::newRow("by Return") << Close([](QWidget &sheet) { press(sheet, Qt::Key_Return); });
        QTest::newRow("by Escape") << Close([](QWidget &sheet) { press(sheet, Qt::Key_Escape); });
        QTest::newRow("by its close button") << Close([](QWidget &sheet) { sheet.close(); });
    }
    void forgetsTheErrorOnceItsAlertIsClosed()
    {
        QFETCH(const Close, close);
        SettingsWindow window;
        window.store->report(u"The disk is full."_s, Error{u"ENOSPC"_s});
        close(SettingsWindow::sheet(wrong));
        QTRY_VERIFY(sheets().isEmpty());
        QVERIFY(!window.store->error());
        window.view->refresh();
        settle();
        QVERIFY(sheets().isEmpty());
    }

    void goesOnTellingTheErrorWhoseAlertIsOpen()
    {
        SettingsWindow window;
        window.store->report(u"First."_s, Error{u"1"_s});
        QWidget &first = SettingsWindow::sheet(wrong);
        window.store->report(u"Second."_s, Error{u"2"_s});
        settle();
        QCOMPARE(sheets(), QList<QWidget *>{&first});
        QVERIFY(seenText(first, u"First."_s));
    }

    void tellsASecondErrorInAnAlertOfItsOwn_data()
    {
        QTest::addColumn<Close>("close");
        QTest::newRow("after a click")
            << Close([](auto &) { SettingsWindow::clickInSheet(u"OK"_s); });
        QTest::newRow("after a double click") << Close([](auto &) {
            SettingsWindow::clickInSheet(u"OK"_s);
            QTRY_VERIFY(!sheets().isEmpty());
            QWidget *const button = seenButton(*sheets().constFirst(), u"OK"_s);
            QTest::mouseDClick(button, Qt::LeftButton);
            QTest::mouseRelease(button, Qt::LeftButton);
        });
        QTest::newRow("after Return that is held down") << Close([](QWidget &sheet) {
            press(sheet, Qt::Key_Return);
            QTRY_VERIFY(!sheets().isEmpty());
            QKeyEvent repeat(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
            QCoreApplication::sendEvent(sheets().constFirst()->focusWidget(), &repeat);
        });
    }
    void tellsASecondErrorInAnAlertOfItsOwn()
    {
        QFETCH(const Close, close);
        SettingsWindow window;
        window.store->report(u"First."_s, Error{u"1"_s});
        QWidget &first = SettingsWindow::sheet(wrong);
        window.store->report(u"Second."_s, Error{u"2"_s});
        settle();
        close(first);
        settle();
        QTRY_VERIFY(!sheets().isEmpty() && seenText(*sheets().constFirst(), u"Second."_s));
        QCOMPARE(sheets().size(), 1);
    }

    void opensNoAlertOverAHiddenWindow()
    {
        SettingsWindow window;
        window.view->hide();
        window.store->report(u"It failed."_s, Error{u"why"_s});
        window.view->refresh();
        settle();
        QVERIFY(sheets().isEmpty());
        QVERIFY(window.store->error());
    }

    void tellsTheSameErrorTwiceIfItHappensTwice()
    {
        SettingsWindow window;
        for (int count = 0; count < 2; ++count) {
            window.store->report(u"Again."_s, Error{u"why"_s});
            SettingsWindow::sheet(wrong);
            SettingsWindow::clickInSheet(u"OK"_s);
            QTRY_VERIFY(sheets().isEmpty());
        }
    }

    void waitsWithAnErrorUntilTheOtherSheetIsClosed()
    {
        SettingsWindow window;
        window.click(u"Add"_s);
        QWidget &editor = SettingsWindow::sheet(u"New shortcut"_s);
        window.store->report(u"Meanwhile."_s, Error{u"why"_s});
        settle();
        QCOMPARE(sheets(), QList<QWidget *>{&editor});
        press(editor, Qt::Key_Escape);
        QVERIFY(seenText(SettingsWindow::sheet(wrong), u"Meanwhile."_s));
    }

    void tellsWhenItIsShownWhatWentWrongWhileItWasHidden()
    {
        SettingsWindow window;
        window.view->hide();
        window.store->report(u"Meanwhile."_s, Error{u"why"_s});
        settle();
        QVERIFY(sheets().isEmpty());
        window.view->show();
        QVERIFY(seenText(SettingsWindow::sheet(wrong), u"Meanwhile."_s));
    }

    void tellsThatTheListAndTheSettingsCouldNotBeLoadedBefore()
    {
        StoreHome home({website(u"News"_s)});
        QFile file(home.platform.applicationSupport.filePath(u"Corvane/entries.json"_s));
        QVERIFY(file.open(QFile::WriteOnly));
        file.write("{");
        file.close();
        home.platform.userDefaults.failure = Error{u"why"_s};
        ShortcutStore store(home.platform.services, home.center);
        SettingsView view(home.platform.services, store);
        view.show();
        for (const QString &what : {u"shortcut list"_s, u"settings"_s}) {
            QVERIFY(seenText(SettingsWindow::sheet(wrong),
                             u"Your %1 could not be loaded."_s.arg(what)));
            SettingsWindow::clickInSheet(u"OK"_s);
        }
        QTRY_VERIFY(sheets().isEmpty());
    }

    void beginsWithTheButtonThatDoesNoHarm()
    {
        SettingsWindow window({website(u"News"_s)});
        window.click(u"Reset all shortcuts…"_s);
        QCOMPARE(nameOf(SettingsWindow::sheet(question).focusWidget()), u"Cancel"_s);
    }

    void showsTheDetailsOfAnErrorAsTheyAre()
    {
        SettingsWindow window;
        const QString words = u"<b>no</b> & more "_s.repeated(200);
        QWidget &sheet = openDetails(window, words);
        const auto *const area = sheet.findChild<QPlainTextEdit *>();
        QCOMPARE(area->toPlainText(), words);
        QVERIFY(!window.store->error());
    }

    void letsTheDetailsBeReadAndCopied()
    {
        SettingsWindow window;
        QWidget &sheet = openDetails(window, u"why"_s);
        const auto *const area = sheet.findChild<QPlainTextEdit *>();
        QVERIFY(area->hasFocus() && area->isReadOnly());
        const auto flags = Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard;
        QCOMPARE(area->textInteractionFlags() & flags, flags);
    }

    void laysTheDetailsOut()
    {
        SettingsWindow window;
        QWidget &sheet = openDetails(window, u"why"_s);
        QWidget *const heading = seenText(sheet, details);
        QWidget *const area = sheet.findChild<QPlainTextEdit *>();
        QCOMPARE(heading->font(), font(TextStyle::headline));
        QCOMPARE(area->font(), font(TextStyle::captionMonospaced));
        QCOMPARE(sheet.width(), 440);
        QCOMPARE(placeIn(sheet, heading).topLeft(), QPoint(20, 20));
        QCOMPARE(placeIn(sheet, area),
                 QRect(20, placeIn(sheet, heading).bottom() + 1 + 10, 400, 140));
        const QRect close = placeIn(sheet, seenButton(sheet, u"Close"_s));
        QCOMPARE(close.top(), placeIn(sheet, area).bottom() + 1 + 10);
        QCOMPARE(close.bottomRight(), sheet.rect().bottomRight() - QPoint(20, 20));
    }

    void closesTheDetails_data()
    {
        QTest::addColumn<Close>("close");
        QTest::newRow("by the button")
            << Close([](auto &) { SettingsWindow::clickInSheet(u"Close"_s); });
        QTest::newRow("by Return, also in the text") << Close([](QWidget &sheet) {
            sheet.findChild<QPlainTextEdit *>()->setFocus();
            press(sheet, Qt::Key_Return);
        });
        QTest::newRow("by Escape") << Close([](QWidget &sheet) { press(sheet, Qt::Key_Escape); });
    }
    void closesTheDetails()
    {
        QFETCH(const Close, close);
        SettingsWindow window;
        close(openDetails(window, u"why"_s));
        QTRY_VERIFY(sheets().isEmpty());
    }

    void walksOutOfTheDetailsByTheTabKey()
    {
        SettingsWindow window;
        QWidget &sheet = openDetails(window, u"why"_s);
        sheet.findChild<QPlainTextEdit *>()->setFocus();
        press(sheet, Qt::Key_Tab);
        QCOMPARE(nameOf(sheet.focusWidget()), u"Close"_s);
    }

    void asksBeforeItRemovesAllKeys()
    {
        SettingsWindow window({website(u"News"_s)});
        window.click(u"Reset all shortcuts…"_s);
        QWidget &sheet = SettingsWindow::sheet(question);
        QCOMPARE(seenTexts(sheet),
                 QStringList({question,
                              u"Your entries stay in the list, but each one loses its key "
                              "combination."_s}));
        QCOMPARE(buttons(sheet), QStringList({u"Reset all shortcuts"_s, u"Cancel"_s}));
        QCOMPARE(seenButton(sheet, u"Reset all shortcuts"_s)->palette().color(QPalette::ButtonText),
                 color(TextColor::error, sheet.palette(), Surface::button));
    }

    void removesAllKeysAndNoEntry()
    {
        SettingsWindow window({website(u"News"_s), website(u"Weather"_s)});
        const auto entries = window.store->entries();
        for (const LaunchEntry &entry : entries)
            window.setKeys(entry, commandK);
        window.click(u"Reset all shortcuts…"_s);
        SettingsWindow::sheet(question);
        SettingsWindow::clickInSheet(u"Reset all shortcuts"_s);
        QTRY_VERIFY(sheets().isEmpty());
        QCOMPARE(window.store->entries(), entries);
        for (const LaunchEntry &entry : entries)
            QVERIFY(!window.store->getShortcut(entry.shortcutName()));
        QTRY_VERIFY(window.shows(u"No keys"_s) && !window.shows(u"⌘K"_s));
    }

    void keepsAllKeysWhenThatIsCancelled_data()
    {
        QTest::addColumn<Close>("close");
        QTest::newRow("by the button")
            << Close([](auto &) { SettingsWindow::clickInSheet(u"Cancel"_s); });
        // What cannot be undone is not done by accident.
        QTest::newRow("by Return") << Close([](QWidget &sheet) { press(sheet, Qt::Key_Return); });
        QTest::newRow("by Escape") << Close([](QWidget &sheet) { press(sheet, Qt::Key_Escape); });
        QTest::newRow("by its close button") << Close([](QWidget &sheet) { sheet.close(); });
    }
    void keepsAllKeysWhenThatIsCancelled()
    {
        QFETCH(const Close, close);
        SettingsWindow window({website(u"News"_s)});
        const LaunchEntry entry = window.store->entries().constFirst();
        window.setKeys(entry, commandK);
        window.click(u"Reset all shortcuts…"_s);
        close(SettingsWindow::sheet(question));
        QTRY_VERIFY(sheets().isEmpty());
        QCOMPARE(window.store->getShortcut(entry.shortcutName()), std::optional(commandK));
    }

    void tellsWhatTheProgramIs()
    {
        SettingsWindow window;
        window.click(u"About"_s);
        QCOMPARE(seenTexts(SettingsWindow::sheet(about)),
                 QStringList({
                     u"Corvane"_s,
                     u"Your own global shortcuts for apps, folders, files, websites and "
                     "Shortcuts."_s,
                     u"Privacy: the app records no keystrokes except the key combinations you set, "
                     "and it sends nothing anywhere. It contains no network code. Your list stays "
                     "on this Mac."_s,
                     u"Global hotkeys use Apple's Carbon hot key API. No third-party code is "
                     "included."_s,
                 }));
    }

    void centresAndWrapsTheLinesOfTheAboutSheet()
    {
        SettingsWindow window;
        window.click(u"About"_s);
        QWidget &sheet = SettingsWindow::sheet(about);
        for (QWidget *const text : seenAll(sheet, QAccessible::StaticText)) {
            const auto *const label = qobject_cast<QLabel *>(text);
            QVERIFY(label->alignment() & Qt::AlignHCenter);
            QVERIFY(placeIn(sheet, text).left() >= 24 && placeIn(sheet, text).right() < 400 - 24);
            QVERIFY(label->height() >= label->heightForWidth(label->width()));
        }
    }

    void laysTheAboutSheetOut()
    {
        SettingsWindow window;
        window.click(u"About"_s);
        QWidget &sheet = SettingsWindow::sheet(about);
        const auto texts = seenAll(sheet, QAccessible::StaticText);
        QList<QFont> fonts;
        for (const QWidget *const text : texts)
            fonts << text->font();
        QCOMPARE(fonts,
                 QList({font(TextStyle::title2), font(TextStyle::body), font(TextStyle::callout),
                        font(TextStyle::caption)}));
        QCOMPARE(texts.last()->palette().color(QPalette::WindowText),
                 color(TextColor::secondary, sheet.palette()));
        QCOMPARE(seenAll(sheet, QAccessible::Separator).size(), 1);
        QCOMPARE(sheet.width(), 400);
        // Below the drawing.
        QCOMPARE(placeIn(sheet, texts.at(0)).top(), 24 + 42 + 10);
        QCOMPARE(placeIn(sheet, seenButton(sheet, u"Close"_s)).bottom(), sheet.height() - 1 - 24);
    }

    void closesTheAboutSheet_data()
    {
        QTest::addColumn<Close>("close");
        QTest::newRow("by the button")
            << Close([](auto &) { SettingsWindow::clickInSheet(u"Close"_s); });
        QTest::newRow("by Return") << Close([](QWidget &sheet) { press(sheet, Qt::Key_Return); });
        QTest::newRow("by Escape") << Close([](QWidget &sheet) { press(sheet, Qt::Key_Escape); });
    }
    void closesTheAboutSheet()
    {
        QFETCH(const Close, close);
        SettingsWindow window;
        window.click(u"About"_s);
        close(SettingsWindow::sheet(about));
        QTRY_VERIFY(sheets().isEmpty());
    }
};

QTEST_MAIN(SettingsSheetsTest)
#include "SettingsSheetsTest.moc"
