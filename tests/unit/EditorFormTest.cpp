#include "settings/EditorForm.h"
#include "support/EditorSheet.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QComboBox>
#include <QCompleter>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryFile>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace viewkit;
using KeyboardShortcuts::Shortcut;

namespace
{
const Shortcut commandK{40, 0x100};
const Shortcut commandJ{38, 0x100};

const QString needsName = u"Please give this shortcut a name."_s;
const QString needsTarget = u"Choose what to open."_s;
const QString notFound = u"That item could not be found."_s;
const QString badWebsite = u"The website must start with http:// or https://"_s;
const QString needsShortcut = u"Enter the name of the Shortcut to run."_s;
const QString needsKeys = u"Click the key box and press a key combination."_s;

struct Editor : EditorSheet {
    explicit Editor(const LaunchEntry &edited = {}, const std::optional<Shortcut> &keys = {},
                    const QList<LaunchEntry> &list = {})
        : EditorSheet(edited)
    {
        for (const LaunchEntry &other : list)
            store.upsert(other);
        store.setShortcut(keys, entry.shortcutName());
        open();
    }

    QComboBox &picker() const { return *form->findChild<QComboBox *>(); }

    /// One of the validation messages, if one is shown.
    QString message() const
    {
        for (const QString &text :
             {needsName, needsTarget, notFound, badWebsite, needsShortcut, needsKeys}) {
            if (shows(text))
                return text;
        }
        return {};
    }
    void confirm() const
    {
        button(form->title() == u"New shortcut" ? u"Add"_s : u"Save"_s)->click();
    }
    /// Presses the recorder's button, whatever it says now.
    void startRecording() const
    {
        const auto stored = keys();
        button(stored ? stored->description() : u"Record Shortcut"_s)->click();
        QVERIFY(platform.eventMonitor.monitored);
    }
    void record(quint16 keyCode, quint32 flags)
    {
        startRecording();
        platform.eventMonitor.press(keyCode, flags);
        QTRY_VERIFY(button(keys()->description()));
    }
    std::optional<Shortcut> keys() const { return store.getShortcut(entry.shortcutName()); }
    /// The field for a Shortcut, with the focus, on a computer with these.
    QLineEdit *focusShortcuts(const QStringList &names)
    {
        platform.shortcutLibrary.shortcuts = names;
        field(u"Shortcut"_s)->setFocus();
        return field(u"Shortcut"_s);
    }
};

LaunchEntry website(const QString &target = u"https://example.com/"_s)
{
    return {.name = u"News"_s, .kind = ActionKind::website, .target = target};
}

LaunchEntry shortcut()
{
    return {.name = u"Tidy"_s, .kind = ActionKind::shortcut};
}

QAbstractItemView *popupOf(const QLineEdit *field)
{
    return field->completer()->popup();
}

/// What the field offers on the screen now.
QStringList offered(const QLineEdit *field)
{
    QStringList texts;
    const QAbstractItemView *const popup = popupOf(field);
    for (int row = 0; popup->isVisible() && row < popup->model()->rowCount(); ++row)
        texts << popup->model()->index(row, 0).data().toString();
    return texts;
}
} // namespace

class EditorFormTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

    void addsAnEntryThatTheListDoesNotHold()
    {
        Editor editor;
        QCOMPARE(editor.sheet->windowTitle(), u"New shortcut"_s);
        QVERIFY(editor.shows(u"New shortcut"_s));
        QVERIFY(editor.button(u"Add"_s)->isDefault());
        QVERIFY(!editor.button(u"Save"_s));
    }

    void changesAnEntryOfTheList()
    {
        const LaunchEntry entry = website();
        Editor editor(entry, commandK, {entry});
        QCOMPARE(editor.sheet->windowTitle(), u"Edit shortcut"_s);
        QVERIFY(editor.shows(u"Edit shortcut"_s));
        QVERIFY(editor.button(u"Save"_s)->isDefault());
        QVERIFY(!editor.button(u"Add"_s));
    }

    void showsWhatTheEntryHolds()
    {
        Editor editor(website(), commandK);
        QCOMPARE(editor.field(u"Name"_s)->text(), u"News"_s);
        QCOMPARE(editor.picker().currentText(), u"Open a website"_s);
        QCOMPARE(editor.field(u"Website"_s)->text(), u"https://example.com/"_s);
        QVERIFY(editor.button(u"⌘K"_s));
        QVERIFY(editor.shows(
            u"Tip: include ⌘, ⌥ or ⌃ so the combination does not clash with typing."_s));
        QCOMPARE(editor.message(), QString());
    }

    void offersTheKindsInTheirOrder()
    {
        Editor editor;
        QStringList kinds;
        for (int index = 0; index < editor.picker().count(); ++index)
            kinds << editor.picker().itemText(index);
        QCOMPARE(kinds,
                 QStringList({u"Open an app"_s, u"Open a folder or file"_s, u"Open a website"_s,
                              u"Run a Shortcut"_s}));
    }

    void asksForTheTargetOfItsKind()
    {
        Editor editor;
        QVERIFY(editor.button(u"Choose…"_s));
        QVERIFY(editor.shows(u"Nothing chosen"_s));
        QVERIFY(!editor.field(u"Website"_s));
        editor.picker().setCurrentText(u"Open a website"_s);
        QTRY_VERIFY(editor.field(u"Website"_s));
        QCOMPARE(editor.field(u"Website"_s)->placeholderText().left(8), u"https://"_s);
        QVERIFY(!editor.button(u"Choose…"_s));
        editor.picker().setCurrentText(u"Run a Shortcut"_s);
        QTRY_VERIFY(editor.field(u"Shortcut"_s));
        QCOMPARE(editor.field(u"Shortcut"_s)->placeholderText(),
                 u"Name of the Shortcut, exactly as in the Shortcuts app"_s);
        QVERIFY(!editor.field(u"Website"_s));
    }

    void readsTheShortcutsOnceTheirFieldIsUsed()
    {
        Editor editor;
        QCOMPARE(editor.platform.shortcutLibrary.timesRead, 0);
        editor.picker().setCurrentText(u"Run a Shortcut"_s);
        QTRY_VERIFY(editor.field(u"Shortcut"_s));
        editor.field(u"Shortcut"_s)->setFocus();
        QCOMPARE(editor.platform.shortcutLibrary.timesRead, 1);
        editor.field(u"Name"_s)->setFocus();
        editor.field(u"Shortcut"_s)->setFocus();
        QCOMPARE(editor.platform.shortcutLibrary.timesRead, 2);
    }

    void offersTheShortcutsThatContainWhatIsTyped()
    {
        Editor editor(shortcut());
        QLineEdit *const field = editor.focusShortcuts({u"Dark"_s, u"Tidy Up"_s, u"Untidy"_s});
        QTest::keyClicks(field, u"tid"_s);
        QTRY_COMPARE(offered(field), QStringList({u"Tidy Up"_s, u"Untidy"_s}));
        QTest::keyClicks(popupOf(field), u"x"_s);
        QTRY_VERIFY(!popupOf(field)->isVisible());
        QCOMPARE(field->text(), u"tidx"_s);
    }

    void offersAllShortcutsBelowAnEmptyField()
    {
        Editor editor(shortcut());
        QLineEdit *const field = editor.focusShortcuts({u"Dark"_s, u"Tidy Up"_s});
        QTest::keyClick(field, Qt::Key_Down);
        QTRY_COMPARE(offered(field), QStringList({u"Dark"_s, u"Tidy Up"_s}));
    }

    void offersNothingWhereThereAreNoShortcuts()
    {
        Editor editor(shortcut());
        QLineEdit *const field = editor.focusShortcuts({});
        QTest::keyClick(field, Qt::Key_Down);
        QTest::keyClicks(field, u"t"_s);
        QCoreApplication::processEvents();
        QVERIFY(!popupOf(field)->isVisible());
        QVERIFY(editor.sheet->isVisible());
    }

    void takesAnOfferedShortcutByReturnWithoutSaving()
    {
        Editor editor(shortcut(), commandK);
        QLineEdit *const field = editor.focusShortcuts({u"Dark"_s, u"Tidy Up"_s});
        QTest::keyClicks(field, u"up"_s);
        QTRY_VERIFY(popupOf(field)->isVisible());
        QTest::keyClick(popupOf(field), Qt::Key_Down);
        QTest::keyClick(popupOf(field), Qt::Key_Return);
        QTRY_VERIFY(!popupOf(field)->isVisible());
        QCOMPARE(field->text(), u"Tidy Up"_s);
        QCOMPARE(editor.closings, 0);
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(editor.store.entries().constFirst().target, u"Tidy Up"_s);
    }

    void savesByReturnWhenNoOfferedShortcutIsChosen()
    {
        Editor editor(shortcut(), commandK);
        QLineEdit *const field = editor.focusShortcuts({u"Tidy Up"_s});
        QTest::keyClicks(field, u"Tidy"_s);
        QTRY_VERIFY(popupOf(field)->isVisible());
        QTest::keyClick(popupOf(field), Qt::Key_Return);
        QVERIFY(!popupOf(field)->isVisible());
        QCOMPARE(editor.closings, 1);
        QCOMPARE(editor.store.entries().constFirst().target, u"Tidy"_s);
    }

    void closesOnlyTheOfferByEscape()
    {
        Editor editor(shortcut());
        QLineEdit *const field = editor.focusShortcuts({u"Tidy Up"_s});
        QTest::keyClicks(field, u"t"_s);
        QTRY_VERIFY(popupOf(field)->isVisible());
        QTest::keyClick(popupOf(field), Qt::Key_Escape);
        QVERIFY(!popupOf(field)->isVisible());
        QCOMPARE(editor.closings, 0);
        QCOMPARE(editor.platform.shortcutLibrary.timesRead, 1);
        QTest::keyClick(field, Qt::Key_Escape);
        QCOMPARE(editor.closings, 1);
    }

    void abbreviatesTheHomeFolderOfAChosenTarget()
    {
        Editor editor({.kind = ActionKind::path, .target = QDir::homePath() + u"/Papers/a.txt"_s});
        QVERIFY(editor.shows(u"~/Papers/a.txt"_s));
        QVERIFY(!editor.shows(u"Nothing chosen"_s));
    }

    void clearsTargetAndMessageWithAnotherKind()
    {
        Editor editor(website(u"ftp://example.com"_s), commandK);
        editor.confirm();
        QTRY_COMPARE(editor.message(), badWebsite);
        editor.picker().setCurrentText(u"Run a Shortcut"_s);
        QTRY_COMPARE(editor.message(), QString());
        QCOMPARE(editor.field(u"Shortcut"_s)->text(), QString());
        editor.picker().setCurrentText(u"Open a website"_s);
        QTRY_VERIFY(editor.field(u"Website"_s));
        QCOMPARE(editor.field(u"Website"_s)->text(), QString());
    }

    void validatesInOrder_data()
    {
        QTest::addColumn<LaunchEntry>("entry");
        QTest::addColumn<bool>("hasKeys");
        QTest::addColumn<QString>("message");
        const auto row = [](const char *name, const QString &label, ActionKind kind,
                            const QString &target, bool hasKeys, const QString &message) {
            QTest::newRow(name) << LaunchEntry{.name = label, .kind = kind, .target = target}
                                << hasKeys << message;
        };
        const QString nowhere = u"/nowhere/at all"_s;
        row("no name, nor anything else", {}, ActionKind::app, {}, false, needsName);
        row("a name of blanks", u" \t\n "_s, ActionKind::website, {}, false, needsName);
        row("no app", u"N"_s, ActionKind::app, {}, false, needsTarget);
        row("an app of blanks", u"N"_s, ActionKind::app, u"  "_s, true, needsTarget);
        row("no path", u"N"_s, ActionKind::path, {}, true, needsTarget);
        row("an app that has gone", u"N"_s, ActionKind::app, nowhere, false, notFound);
        row("a path that has gone", u"N"_s, ActionKind::path, nowhere, true, notFound);
        row("no website", u"N"_s, ActionKind::website, {}, false, badWebsite);
        row("another scheme", u"N"_s, ActionKind::website, u"ftp://a.b"_s, true, badWebsite);
        row("no host", u"N"_s, ActionKind::website, u"https://"_s, true, badWebsite);
        row("no Shortcut", u"N"_s, ActionKind::shortcut, u" \n"_s, false, needsShortcut);
        row("an app without keys", u"N"_s, ActionKind::app, u"/bin/true"_s, false, needsKeys);
        row("a folder without keys", u"N"_s, ActionKind::path, u"/"_s, false, needsKeys);
        row("a website without keys", u"N"_s, ActionKind::website, u"http://a.b"_s, false,
            needsKeys);
        row("a Shortcut without keys", u"N"_s, ActionKind::shortcut, u"Tidy"_s, false, needsKeys);
        row("a folder where an app should be", u"N"_s, ActionKind::app, u"/"_s, true, {});
        row("a Shortcut that nobody knows", u"N"_s, ActionKind::shortcut, u"Tidy"_s, true, {});
        row("a website with blanks around it", u"N"_s, ActionKind::website, u" https://a.b "_s,
            true, {});
    }
    void validatesInOrder()
    {
        QFETCH(const LaunchEntry, entry);
        QFETCH(const bool, hasKeys);
        QFETCH(const QString, message);
        Editor editor(entry, hasKeys ? std::optional(commandK) : std::nullopt);
        editor.confirm();
        QTRY_COMPARE(editor.message(), message);
        QCOMPARE(editor.store.entries().size(), message.isEmpty() ? 1 : 0);
        QCOMPARE(editor.closings, message.isEmpty() ? 1 : 0);
    }

    void noticesThatAChosenFileWasDeleted()
    {
        QTemporaryFile file;
        QVERIFY(file.open());
        Editor editor({.name = u"N"_s, .target = file.fileName()}, commandK);
        file.remove();
        editor.confirm();
        QTRY_COMPARE(editor.message(), notFound);
    }

    void storesTheTrimmedNameAndTarget()
    {
        Editor editor;
        editor.picker().setCurrentText(u"Open a website"_s);
        QTRY_VERIFY(editor.field(u"Website"_s));
        QTest::keyClicks(editor.field(u"Name"_s), u" News "_s);
        QTest::keyClicks(editor.field(u"Website"_s), u"  https://example.com/ "_s);
        editor.record(40, commandEventFlag);
        editor.confirm();
        LaunchEntry stored = website();
        stored.id = editor.entry.id;
        QCOMPARE(editor.store.entries(), {stored});
        QCOMPARE(editor.keys(), commandK);
        QCOMPARE(editor.closings, 1);
    }

    void replacesTheEntryOfTheList()
    {
        LaunchEntry entry = website();
        entry.isEnabled = false;
        const LaunchEntry other{.name = u"Other"_s};
        Editor editor(entry, commandK, {entry, other});
        editor.field(u"Name"_s)->setText(u"Papers"_s);
        editor.confirm();
        entry.name = u"Papers"_s;
        QCOMPARE(editor.store.entries(), QList({entry, other}));
    }

    void keepsTheSheetOpenWithWhatWasTypedWhenSomethingIsWrong()
    {
        Editor editor;
        QTest::keyClicks(editor.field(u"Name"_s), u" News "_s);
        editor.confirm();
        QTRY_COMPARE(editor.message(), needsTarget);
        QCOMPARE(editor.field(u"Name"_s)->text(), u" News "_s);
        QVERIFY(editor.sheet->isVisible());
    }

    void showsOneMessageAtATime()
    {
        Editor editor;
        editor.confirm();
        QTRY_COMPARE(editor.message(), needsName);
        QTest::keyClicks(editor.field(u"Name"_s), u"News"_s);
        editor.confirm();
        QTRY_COMPARE(editor.message(), needsTarget);
        QVERIFY(!editor.shows(needsName));
    }

    void makesTheKeysOfAnEntryOfTheListLiveAtOnce()
    {
        const LaunchEntry entry = website();
        Editor editor(entry, {}, {entry});
        editor.record(40, commandEventFlag);
        QCOMPARE(editor.platform.hotkeys.live.size(), 1);
    }

    void makesTheKeysOfANewEntryLiveOnceItIsSaved()
    {
        Editor editor(website());
        editor.record(40, commandEventFlag);
        QVERIFY(editor.platform.hotkeys.live.isEmpty());
        editor.confirm();
        QCOMPARE(editor.platform.hotkeys.live.size(), 1);
    }

    void announcesEachRecordedCombination()
    {
        const LaunchEntry entry = website();
        Editor editor(entry, {}, {entry});
        const QSignalSpy notices(&editor.store, &ShortcutStore::willChange);
        editor.record(40, commandEventFlag);
        QCOMPARE(notices.size(), 1);
        QTRY_VERIFY(editor.button(u"Clear"_s));
        editor.button(u"Clear"_s)->click();
        QCOMPARE(notices.size(), 2);
    }

    void movesTheFocusToItsButtonOnceKeysAreRecorded_data()
    {
        QTest::addColumn<bool>("isInList");
        QTest::addColumn<QString>("button");
        QTest::newRow("of a new entry") << false << u"Add"_s;
        QTest::newRow("of an entry of the list") << true << u"Save"_s;
    }
    void movesTheFocusToItsButtonOnceKeysAreRecorded()
    {
        QFETCH(const bool, isInList);
        QFETCH(const QString, button);
        const LaunchEntry entry = website();
        Editor editor(entry, {}, isInList ? QList({entry}) : QList<LaunchEntry>());
        editor.button(u"Record Shortcut"_s)->setFocus();
        editor.record(40, commandEventFlag);
        QVERIFY(editor.button(button)->hasFocus());
    }

    void leavesTheFocusOnTheRecorderOtherwise_data()
    {
        using End = void (*)(Editor &, QPushButton & recorder);
        QTest::addColumn<End>("end");
        QTest::newRow("after Escape") << End([](Editor &editor, QPushButton &recorder) {
            recorder.click();
            editor.platform.eventMonitor.press(53, {});
        });
        QTest::newRow("after a second press of the button")
            << End([](Editor &, QPushButton &recorder) {
                   recorder.click();
                   recorder.click();
               });
        QTest::newRow("after keys that cannot be recorded")
            << End([](Editor &editor, QPushButton &recorder) {
                   recorder.click();
                   editor.platform.eventMonitor.press(40, shiftEventFlag);
               });
        QTest::newRow("after the keys were cleared")
            << End([](Editor &editor, QPushButton &) { editor.button(u"Clear"_s)->click(); });
    }
    void leavesTheFocusOnTheRecorderOtherwise()
    {
        using End = void (*)(Editor &, QPushButton & recorder);
        QFETCH(const End, end);
        Editor editor(website(), commandK);
        QPushButton &recorder = *editor.button(u"⌘K"_s);
        recorder.setFocus();
        end(editor, recorder);
        QVERIFY(recorder.hasFocus());
    }

    void undoesWhatWasRecordedWhenItIsCancelled_data()
    {
        QTest::addColumn<void (*)(Editor &)>("cancel");
        using Cancel = void (*)(Editor &);
        QTest::newRow("by its button")
            << Cancel([](Editor &editor) { editor.button(u"Cancel"_s)->click(); });
        QTest::newRow("by Escape") << Cancel(
            [](Editor &editor) { QTest::keyClick(editor.sheet->focusWidget(), Qt::Key_Escape); });
        QTest::newRow("by the sheet's close button")
            << Cancel([](Editor &editor) { editor.sheet->close(); });
    }
    void undoesWhatWasRecordedWhenItIsCancelled()
    {
        using Cancel = void (*)(Editor &);
        QFETCH(const Cancel, cancel);
        const LaunchEntry entry = website();
        for (const auto &[former, list] :
             {std::pair(std::optional(commandJ), QList({entry})),
              std::pair(std::optional<Shortcut>(), QList<LaunchEntry>())}) {
            Editor editor(entry, former, list);
            editor.field(u"Name"_s)->setText(u"Other"_s);
            editor.record(40, commandEventFlag);
            QCOMPARE(editor.keys(), commandK);
            const QSignalSpy notices(&editor.store, &ShortcutStore::willChange);
            cancel(editor);
            QCOMPARE(editor.keys(), former);
            QCOMPARE(editor.store.entries(), list);
            QCOMPARE(editor.closings, 1);
            QVERIFY(notices.size() >= 1);
        }
    }

    void doesNothingMoreOnceItIsClosed_data()
    {
        using Press = void (*)(Editor &);
        QTest::addColumn<Press>("first");
        QTest::addColumn<Press>("second");
        QTest::addColumn<bool>("isSaved");
        const Press cancel = [](Editor &editor) { editor.form->cancel(); };
        const Press save = [](Editor &editor) { editor.confirm(); };
        QTest::newRow("cancelled after it was saved") << save << cancel << true;
        QTest::newRow("saved after it was cancelled") << cancel << save << false;
        QTest::newRow("saved twice") << save << save << true;
    }
    void doesNothingMoreOnceItIsClosed()
    {
        using Press = void (*)(Editor &);
        QFETCH(const Press, first);
        QFETCH(const Press, second);
        QFETCH(const bool, isSaved);
        Editor editor(website());
        editor.record(40, commandEventFlag);
        first(editor);
        second(editor);
        QCOMPARE(editor.closings, 1);
        QCOMPARE(editor.store.entries().size(), isSaved ? 1 : 0);
        QCOMPARE(editor.keys(), isSaved ? std::optional(commandK) : std::nullopt);
    }

    void leavesWhatItCannotReadAsItIsWhenItIsCancelled()
    {
        const LaunchEntry entry = website();
        Editor editor(entry, {}, {entry});
        const QString key = KeyboardShortcuts::defaultsKey(entry.shortcutName());
        editor.platform.userDefaults.setData(key, "{");
        editor.form->cancel();
        QCOMPARE(editor.platform.userDefaults.data(key), QByteArray("{"));
    }

    void bringsAClearedCombinationBackWhenItIsCancelled()
    {
        const LaunchEntry entry = website();
        Editor editor(entry, commandJ, {entry});
        editor.button(u"Clear"_s)->click();
        QVERIFY(editor.platform.hotkeys.live.isEmpty());
        editor.button(u"Cancel"_s)->click();
        QCOMPARE(editor.keys(), commandJ);
        QCOMPARE(editor.platform.hotkeys.live.size(), 1);
    }

    void warnsOfEveryRecordedCombination()
    {
        const LaunchEntry twin{.name = u"Twin"_s, .target = u"/bin/true"_s};
        const LaunchEntry other{.name = u"Other"_s, .target = u"/bin/true"_s};
        Editor editor(website(), {}, {twin, other});
        editor.store.setShortcut(commandK, twin.shortcutName());
        editor.store.setShortcut(commandJ, other.shortcutName());
        editor.platform.symbolicHotkeys.hotkeys = {{40, 0x100000, true}};
        const QString taken = u"⌘K is already used by macOS. It may not work."_s;
        const QString usedByTwin = u"The same keys are used by “Twin”."_s;
        const QString usedByOther = u"The same keys are used by “Other”."_s;

        editor.record(40, commandEventFlag);
        QTRY_VERIFY(editor.shows(taken));
        const QStringList shown = seenTexts(*editor.form);
        QCOMPARE(shown.indexOf(usedByTwin), shown.indexOf(taken) + 1);
        editor.record(38, commandEventFlag);
        QTRY_VERIFY(editor.shows(usedByOther));
        QVERIFY(!editor.shows(taken) && !editor.shows(usedByTwin));
        editor.confirm();
        QCOMPARE(editor.store.entries().size(), 3);
    }

    void leadsToTheKeyboardSettingsWhereOnlyTheyCanFreeTheKeys_data()
    {
        QTest::addColumn<std::function<void(FakeSymbolicHotkeys &)>>("take");
        QTest::addColumn<QList<LaunchEntry>>("others");
        QTest::addColumn<bool>("leads");
        using Take = std::function<void(FakeSymbolicHotkeys &)>;
        const auto add = [](const char *row, const Take &take, bool leads,
                            const QList<LaunchEntry> &others = {}) {
            QTest::newRow(row) << take << others << leads;
        };
        const LaunchEntry twin{.name = u"Twin"_s, .target = u"/bin/true"_s};
        const Take desktop = [](auto &keys) { keys.hotkeys = {{40, 0x100000, true}}; };
        add("the desktop", desktop, true);
        add("the desktop and another entry", desktop, true, {twin});
        add(
            "nobody", [](auto &) {}, false);
        add("another entry", [](auto &) {}, false, {twin});
        add(
            "the Super key", [](auto &keys) { keys.isSuperKeyKept = true; }, false);
        add(
            "another program",
            [](auto &keys) {
                keys.heldElsewhere = {{40, 0x100}};
            },
            false);
        add(
            "the desktop, but switched off there",
            [](auto &keys) {
                keys.hotkeys = {{40, 0x100000, false}};
            },
            false);
    }
    void leadsToTheKeyboardSettingsWhereOnlyTheyCanFreeTheKeys()
    {
        QFETCH(const std::function<void(FakeSymbolicHotkeys &)>, take);
        QFETCH(const QList<LaunchEntry>, others);
        Editor editor(website(), commandK, others);
        for (const LaunchEntry &other : others)
            editor.store.setShortcut(commandK, other.shortcutName());
        take(editor.platform.symbolicHotkeys);
        editor.form->refresh();
        QTEST(editor.button(u"Keyboard Settings"_s) != nullptr, "leads");
    }

    void opensTheKeyboardSettings()
    {
        Editor editor(website(), commandK);
        editor.platform.symbolicHotkeys.hotkeys = {{40, 0x100000, true}};
        editor.form->refresh();
        QTest::keyClick(editor.button(u"Keyboard Settings"_s), Qt::Key_Space);
        QCOMPARE(editor.platform.systemSettings.opened, QStringList(u"keyboard"_s));
        QCOMPARE(editor.closings, 0);
    }

    void goesOnAtSaveOnceTheKeyboardSettingsHaveFreedTheKeys()
    {
        Editor editor(website(), commandK);
        editor.platform.symbolicHotkeys.hotkeys = {{40, 0x100000, true}};
        editor.form->refresh();
        editor.button(u"Keyboard Settings"_s)->setFocus();
        editor.platform.symbolicHotkeys.hotkeys->clear();
        Q_EMIT editor.platform.symbolicHotkeys.changed();
        QTRY_VERIFY(!editor.button(u"Keyboard Settings"_s));
        QCOMPARE(editor.sheet->focusWidget(), editor.button(u"Add"_s));
    }

    void reachesTheKeyboardSettingsBetweenTheKeysAndTheLastButtons()
    {
        Editor editor(website(), commandK);
        editor.platform.symbolicHotkeys.hotkeys = {{40, 0x100000, true}};
        editor.form->refresh();
        editor.button(u"Clear"_s)->setFocus();
        QTest::keyClick(editor.sheet, Qt::Key_Tab);
        QCOMPARE(editor.sheet->focusWidget(), editor.button(u"Keyboard Settings"_s));
        QTest::keyClick(editor.sheet, Qt::Key_Tab);
        QCOMPARE(editor.sheet->focusWidget(), editor.button(u"Cancel"_s));
    }

    void doesNotWarnOfTheEntryItself()
    {
        const LaunchEntry entry = website();
        Editor editor(entry, commandK, {entry});
        QVERIFY(!editor.shows(u"The same keys are used by “News”."_s));
    }

    void savesByReturnFromEveryField_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("the name") << u"Name"_s;
        QTest::newRow("the kind") << u"Action"_s;
        QTest::newRow("the website") << u"Website"_s;
        QTest::newRow("the recorder") << u"⌘K"_s;
        QTest::newRow("another button") << u"Clear"_s;
        QTest::newRow("the button itself") << u"Add"_s;
    }
    void savesByReturnFromEveryField()
    {
        QFETCH(const QString, name);
        Editor editor(website(), commandK);
        QWidget *field = editor.button(name);
        if (!field)
            field = editor.field(name);
        if (!field)
            field = &editor.picker();
        field->setFocus();
        QTest::keyClick(field, Qt::Key_Return);
        QCOMPARE(editor.store.entries().size(), 1);
        QCOMPARE(editor.closings, 1);
        QVERIFY(!editor.platform.eventMonitor.monitored);
    }

    void keepsAHalfTypedTextWhenTheStoreChanges()
    {
        Editor editor(website(), commandK);
        auto *const name = editor.field(u"Name"_s);
        name->setFocus();
        name->setCursorPosition(2);
        QTest::keyClicks(name, u"x"_s);
        editor.store.upsert({.name = u"Other"_s});
        // Comes after the refresh in the event loop.
        bool isRefreshed = false;
        QMetaObject::invokeMethod(
            editor.form, [&] { isRefreshed = true; }, Qt::QueuedConnection);
        QTRY_VERIFY(isRefreshed);
        QCOMPARE(name->text(), u"Nexws"_s);
        QCOMPARE(name->cursorPosition(), 3);
        QVERIFY(name->hasFocus());
    }

    void keepsALongNameAndLineBreaksAsTheyAre()
    {
        LaunchEntry entry = website();
        entry.name = u"a\nb"_s + QString(40000, u'x');
        Editor editor(entry, commandK, {entry});
        editor.confirm();
        QCOMPARE(editor.store.entries(), {entry});
    }

    void choosesAFileAndNamesTheEntryByIt_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("name");
        QTest::newRow("a file") << u"letter.txt"_s << QString() << u"letter"_s;
        QTest::newRow("two extensions") << u"letters.tar.gz"_s << QString() << u"letters.tar"_s;
        QTest::newRow("a hidden file") << u".profile"_s << QString() << u".profile"_s;
        QTest::newRow("a folder") << u"Papers"_s << QString() << u"Papers"_s;
        QTest::newRow("a name of blanks is none") << u"letter.txt"_s << u" \t"_s << u"letter"_s;
        QTest::newRow("a typed name stays") << u"letter.txt"_s << u"Mine"_s << u"Mine"_s;
    }
    void choosesAFileAndNamesTheEntryByIt()
    {
        QFETCH(const QString, path);
        QFETCH(const QString, typed);
        QFETCH(const QString, name);
        const QTemporaryDir folder;
        for (const auto &file : {u"letter.txt"_s, u"letters.tar.gz"_s, u".profile"_s})
            QVERIFY(QFile(folder.filePath(file)).open(QIODevice::WriteOnly));
        QVERIFY(QDir(folder.path()).mkdir(u"Papers"_s));

        Editor editor({.name = typed, .kind = ActionKind::path});
        const QPointer<QFileDialog> panel = openPanel(editor, folder.path());
        QCOMPARE(panel->labelText(QFileDialog::Accept), u"Choose"_s);
        panel->findChild<QLineEdit *>()->setText(path);
        // Not "Open", also for a folder.
        QVERIFY(seenButton(*panel, u"Choose"_s));
        QTest::keyClick(panel->findChild<QLineEdit *>(), Qt::Key_Return);
        QTRY_VERIFY(editor.shows(folder.filePath(path)));
        QCOMPARE(editor.field(u"Name"_s)->text(), name);
        QTRY_VERIFY(!panel);
    }

    void changesNothingWhenThePanelIsDismissed()
    {
        Editor editor({.name = u"N"_s, .kind = ActionKind::path, .target = u"/bin/true"_s});
        QPointer<QFileDialog> panel = openPanel(editor, u"/"_s);
        panel->reject();
        QTRY_VERIFY(!panel);
        QVERIFY(editor.shows(u"/bin/true"_s));
        QVERIFY(editor.sheet->isVisible());
    }

    void saysInThePanelThatAFileIsMissingAndWaitsForNobody()
    {
        Editor editor({.name = u"N"_s, .kind = ActionKind::path});
        QPointer<QFileDialog> panel = openPanel(editor, u"/"_s);
        auto *const name = panel->findChild<QLineEdit *>();
        name->setText(u"/nowhere"_s);
        QTest::keyClick(name, Qt::Key_Return);
        auto *const box = panel->findChild<QMessageBox *>();
        QVERIFY(box && box->isVisible());
        QCOMPARE(box->text(), notFound);
        QVERIFY(panel->isVisible());
        // The sheet may go meanwhile.
        delete editor.sheet;
        QVERIFY(!panel);
    }

    void namesTheRootFolderByItself()
    {
        Editor editor({.kind = ActionKind::path});
        const QPointer<QFileDialog> panel = openPanel(editor, QDir::homePath());
        panel->findChild<QLineEdit *>()->setText(u"/"_s);
        QTest::keyClick(panel->findChild<QLineEdit *>(), Qt::Key_Return);
        QTRY_VERIFY(editor.shows(u"/"_s));
        QCOMPARE(editor.field(u"Name"_s)->text(), u"/"_s);
    }

    void namesTheEntryByTheChosenApplication_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("name");
        QTest::newRow("an empty name") << QString() << u"Calculator"_s;
        QTest::newRow("a name already typed") << u"Sums"_s << u"Sums"_s;
    }
    void namesTheEntryByTheChosenApplication()
    {
        QFETCH(const QString, typed);
        QFETCH(const QString, name);
        Editor editor({.name = typed});
        const QString path = u"/usr/share/applications/org.example.calc.desktop"_s;
        editor.platform.installedApplications.applications = {
            {.path = path, .name = u"Calculator"_s}};
        editor.button(u"Choose…"_s)->click();
        auto *const panel = editor.form->findChild<QDialog *>();
        QVERIFY(panel && panel->isVisible());
        QVERIFY(QTest::qWaitForWindowActive(panel));
        QWidget *const search = seen(*panel, QAccessible::EditableText, u"Search"_s);
        QTest::keyClicks(search, u"calc"_s);
        QTest::keyClick(search, Qt::Key_Return);
        QTRY_VERIFY(editor.shows(path));
        QCOMPARE(editor.field(u"Name"_s)->text(), name);
    }

    void offersTheCommandWhereNoKeysCanBeRegistered()
    {
        Editor editor(website());
        QVERIFY(!editor.button(u"Copy Command"_s));
        editor.platform.hotkeys.setReach(HotkeyReach::nowhere);
        QTRY_VERIFY(editor.button(u"Copy Command"_s));
        const auto leftOf = [&editor](const QString &label) {
            return editor.button(label)->mapTo(editor.form, QPoint()).x();
        };
        QVERIFY(leftOf(u"Copy Command"_s) < leftOf(u"Record Shortcut"_s));
        editor.button(u"Copy Command"_s)->click();
        QCOMPARE(QGuiApplication::clipboard()->text(),
                 editor.platform.application.fireCommand(editor.entry.id));
    }

    void needsNoKeysWhereNoneCanBeRegistered()
    {
        Editor editor(website());
        editor.platform.hotkeys.setReach(HotkeyReach::nowhere);
        editor.confirm();
        QCOMPARE(editor.message(), QString());
        QVERIFY(editor.store.contains(editor.entry.id));
    }

    void tellsWhichKeysTheDesktopUsesInstead()
    {
        Editor editor(website(), commandK);
        editor.platform.hotkeys.setOtherKeys(40, {41, 256});
        QTRY_VERIFY(editor.shows(u"Your desktop uses ⌘; for this."_s));
    }

private:
    static QFileDialog *openPanel(Editor &editor, const QString &folder)
    {
        editor.button(u"Choose…"_s)->click();
        auto *const panel = editor.form->findChild<QFileDialog *>();
        [&] { QVERIFY(panel && panel->isVisible()); }();
        panel->setDirectory(folder);
        return panel;
    }
};

QTEST_MAIN(EditorFormTest)
#include "EditorFormTest.moc"
