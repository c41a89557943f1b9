#include "settings/Recorder.h"
#include "fakes/FakePlatform.h"
#include "hotkeys/HotkeyCenter.h"
#include "model/DefaultsKeys.h"
#include "store/ShortcutStore.h"
#include "support/Seen.h"

#include <QPushButton>
#include <QTest>

using namespace Qt::StringLiterals;
using KeyboardShortcuts::Recorder;
using KeyboardShortcuts::Shortcut;

namespace
{
constexpr quint16 keyA = 0;
constexpr quint16 keyK = 40;
constexpr quint16 escape = 53;
constexpr quint32 shift = shiftEventFlag;
constexpr quint32 control = controlEventFlag;
constexpr quint32 option = optionEventFlag;
constexpr quint32 command = commandEventFlag;
constexpr quint32 capsLock = 0x10000;
constexpr quint32 function = 0x800000;

const Shortcut commandK{40, 0x100};

/// A recorder on the screen, of an entry of the list.
struct Form {
    explicit Form(const std::optional<Shortcut> &stored = std::nullopt)
    {
        store.upsert(entry);
        if (stored)
            store.setShortcut(stored, name);
        recorder.emplace(store, platform.eventMonitor, name,
                         [this](const auto &shortcut) { changes << shortcut; });
        recorder->QWidget::show();
    }

    std::optional<Shortcut> stored() const { return store.getShortcut(name); }

    /// The main button is the first one, whatever it says.
    QPushButton &mainButton() const
    {
        return *recorder->findChildren<QPushButton *>().constFirst();
    }
    QPushButton *clearButton()
    {
        return qobject_cast<QPushButton *>(seenButton(*recorder, u"Clear"_s));
    }
    QString hint() { return seenTexts(*recorder).join(u'|'); }

    void record() const { mainButton().click(); }

    FakePlatform platform;
    HotkeyCenter center{platform.hotkeys, platform.userDefaults};
    ShortcutStore store{platform.services, center};
    const LaunchEntry entry{.name = u"Notes"_s, .target = u"/bin/true"_s};
    const KeyboardShortcuts::Name name = entry.shortcutName();
    QList<std::optional<Shortcut>> changes;
    std::optional<Recorder> recorder;
};

const QString recordShortcut = u"Record Shortcut"_s;
const QString pressTheKeys = u"Press the keys…"_s;
const QString escapeCancels = u"Esc cancels"_s;
const QString includeModifier = u"Include ⌘, ⌥ or ⌃"_s;
} // namespace

class RecorderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void offersToRecordWhereNothingIsStored()
    {
        Form form;
        QCOMPARE(form.mainButton().text(), recordShortcut);
        QVERIFY(!form.clearButton());
        QCOMPARE(form.hint(), QString());
        QVERIFY(form.mainButton().width() >= 150);
    }

    void showsTheStoredCombination()
    {
        Form form(commandK);
        QCOMPARE(form.mainButton().text(), u"⌘K"_s);
        QVERIFY(form.clearButton());
    }

    void writesKeysAsTheSystemDoes()
    {
        Form form(commandK);
        form.platform.wording.makeUp();
        form.recorder->refresh();
        QCOMPARE(form.mainButton().text(), u"40 and 256"_s);
        QCOMPARE(form.mainButton().accessibleDescription(), QString());
        form.record();
        form.platform.eventMonitor.press(keyA, shift);
        QTRY_COMPARE(form.hint(), u"Include 256"_s);
    }

    void saysTheKeysInWordsWhereItShowsSigns()
    {
        Form form(commandK);
        form.platform.wording.makeUp();
        form.platform.userDefaults.setBoolean(DefaultsKeys::showMacKeySigns, true);
        form.recorder->refresh();
        QCOMPARE(form.mainButton().text(), u"⌘K"_s);
        QCOMPARE(form.mainButton().accessibleDescription(), u"40 and 256"_s);
        form.record();
        form.recorder->refresh();
        QCOMPARE(form.mainButton().accessibleDescription(), QString());
    }

    void listensFromThePressOfItsButton()
    {
        Form form(commandK);
        form.record();
        QTRY_COMPARE(form.mainButton().text(), pressTheKeys);
        QCOMPARE(form.hint(), escapeCancels);
        QCOMPARE(form.platform.eventMonitor.monitored, static_cast<QWidget *>(&*form.recorder));
        QVERIFY(form.clearButton());
    }

    void recordsAcceptedKeys_data()
    {
        QTest::addColumn<quint16>("keyCode");
        QTest::addColumn<quint32>("flags");
        QTest::addColumn<qint64>("mask");
        QTest::addColumn<QString>("label");
        QTest::newRow("the key with the code 0") << keyA << command << 0x100LL << u"⌘A"_s;
        QTest::newRow("Option alone") << keyK << option << 0x800LL << u"⌥K"_s;
        QTest::newRow("Control alone") << keyK << control << 0x1000LL << u"⌃K"_s;
        QTest::newRow("Shift is kept") << keyK << (shift | control) << 0x1200LL << u"⌃⇧K"_s;
        QTest::newRow("all four") << keyK << (shift | control | option | command) << 0x1b00LL
                                  << u"⌃⌥⇧⌘K"_s;
        QTest::newRow("Caps Lock does not matter")
            << keyK << (command | capsLock) << 0x100LL << u"⌘K"_s;
        QTest::newRow("nor do other flags")
            << keyK << (command | function | 0x8U) << 0x100LL << u"⌘K"_s;
        QTest::newRow("Delete") << quint16(51) << command << 0x100LL << u"⌘⌫"_s;
        QTest::newRow("Return") << quint16(36) << command << 0x100LL << u"⌘↩"_s;
        QTest::newRow("Tab") << quint16(48) << command << 0x100LL << u"⌘⇥"_s;
        QTest::newRow("Space") << quint16(49) << option << 0x800LL << u"⌥Space"_s;
        QTest::newRow("an arrow") << quint16(123) << control << 0x1000LL << u"⌃←"_s;
        QTest::newRow("a function key") << quint16(122) << command << 0x100LL << u"⌘F1"_s;
        QTest::newRow("a key without a name") << quint16(10) << command << 0x100LL << u"⌘Key 10"_s;
    }
    void recordsAcceptedKeys()
    {
        QFETCH(const quint16, keyCode);
        QFETCH(const quint32, flags);
        QFETCH(const qint64, mask);
        QFETCH(const QString, label);
        Form form;
        form.record();
        QVERIFY(form.platform.eventMonitor.press(keyCode, flags));
        const Shortcut recorded{keyCode, mask};
        QCOMPARE(form.stored(), recorded);
        QCOMPARE(form.changes, {recorded});
        QTRY_COMPARE(form.mainButton().text(), label);
        QCOMPARE(form.hint(), QString());
    }

    void isLiveAndOverBeforeItsOwnerIsTold()
    {
        Form form;
        bool isMonitored = true;
        std::optional<Shortcut> stored;
        qsizetype live = 0;
        const auto onChange = [&](const auto &) {
            isMonitored = form.platform.eventMonitor.monitored != nullptr;
            stored = form.stored();
            live = form.platform.hotkeys.live.size();
        };
        Recorder recorder(form.store, form.platform.eventMonitor, form.name, onChange);
        recorder.QWidget::show();
        recorder.findChild<QPushButton *>()->click();
        form.platform.eventMonitor.press(keyK, command);
        QVERIFY(!isMonitored);
        QCOMPARE(stored, commandK);
        QCOMPARE(live, 1);
    }

    void needsNoOwnerToTell()
    {
        Form form;
        const Recorder recorder(form.store, form.platform.eventMonitor, form.name);
        recorder.findChild<QPushButton *>()->click();
        form.platform.eventMonitor.press(keyK, command);
        QCOMPARE(form.stored(), commandK);
    }

    void refusesKeysWithoutAModifierThatTypingLacks_data()
    {
        QTest::addColumn<quint16>("keyCode");
        QTest::addColumn<quint32>("flags");
        QTest::newRow("a plain key") << keyA << quint32(0);
        QTest::newRow("Shift and a letter") << keyA << shift;
        QTest::newRow("Caps Lock and a letter") << keyA << capsLock;
        QTest::newRow("a function key with its flag") << quint16(122) << function;
        QTest::newRow("Return") << quint16(36) << quint32(0);
    }
    void refusesKeysWithoutAModifierThatTypingLacks()
    {
        QFETCH(const quint16, keyCode);
        QFETCH(const quint32, flags);
        Form form(commandK);
        form.record();
        QVERIFY(form.platform.eventMonitor.press(keyCode, flags));
        QTRY_COMPARE(form.hint(), includeModifier);
        QCOMPARE(form.mainButton().text(), pressTheKeys);
        QCOMPARE(form.stored(), commandK);
        QVERIFY(form.changes.isEmpty());
        form.platform.eventMonitor.press(keyA, command);
        QCOMPARE(form.stored(), Shortcut(0, 0x100));
    }

    void endsWithEscapeWhateverIsHeld_data()
    {
        QTest::addColumn<quint32>("flags");
        QTest::newRow("alone") << quint32(0);
        QTest::newRow("with Command") << command;
        QTest::newRow("with all modifiers") << (command | option | control | shift);
    }
    void endsWithEscapeWhateverIsHeld()
    {
        QFETCH(const quint32, flags);
        Form form(commandK);
        form.record();
        QVERIFY(form.platform.eventMonitor.press(escape, flags));
        QVERIFY(!form.platform.eventMonitor.monitored);
        QTRY_COMPARE(form.mainButton().text(), u"⌘K"_s);
        QCOMPARE(form.hint(), QString());
        QCOMPARE(form.stored(), commandK);
        QVERIFY(form.changes.isEmpty());
    }

    void endsWithAnotherPressOfItsButton()
    {
        Form form(commandK);
        form.record();
        form.mainButton().click();
        QVERIFY(!form.platform.eventMonitor.monitored);
        QTRY_COMPARE(form.mainButton().text(), u"⌘K"_s);
        QCOMPARE(form.stored(), commandK);
    }

    void endsWhenItLeavesTheScreen()
    {
        Form form;
        form.record();
        form.recorder->hide();
        QVERIFY(!form.platform.eventMonitor.press(keyK, command));
        QVERIFY(!form.stored());
        form.recorder->QWidget::show();
        QCOMPARE(form.mainButton().text(), recordShortcut);
    }

    void endsWhenItIsDestroyed()
    {
        Form form;
        form.record();
        form.recorder.reset();
        QVERIFY(!form.platform.eventMonitor.press(keyK, command));
    }

    void removesTheCombinationByClear()
    {
        Form form(commandK);
        QCOMPARE(form.platform.hotkeys.live.size(), 1);
        form.clearButton()->click();
        QVERIFY(!form.stored());
        QVERIFY(form.platform.hotkeys.live.isEmpty());
        QCOMPARE(form.changes, {std::nullopt});
        QTRY_COMPARE(form.mainButton().text(), recordShortcut);
        QVERIFY(!form.clearButton());
    }

    void keepsTheFocusWhenItIsClearedByTheKeyboard()
    {
        Form form(commandK);
        QVERIFY(QTest::qWaitForWindowActive(&*form.recorder));
        form.clearButton()->setFocus();
        QTest::keyClick(form.clearButton(), Qt::Key_Space);
        QTRY_VERIFY(!form.clearButton());
        QVERIFY(form.mainButton().hasFocus());
    }

    void goesOnRecordingAfterClear()
    {
        Form form(commandK);
        form.record();
        form.clearButton()->click();
        QTRY_VERIFY(!form.clearButton());
        QCOMPARE(form.mainButton().text(), pressTheKeys);
        QVERIFY(form.platform.eventMonitor.press(keyA, command));
        QCOMPARE(form.stored(), Shortcut(0, 0x100));
    }

    void storesWhatAnotherProgramHolds()
    {
        Form form;
        form.platform.hotkeys.refusedKeyCodes = {keyK};
        form.record();
        form.platform.eventMonitor.press(keyK, command);
        QCOMPARE(form.stored(), commandK);
        QVERIFY(form.platform.hotkeys.live.isEmpty());
    }

    void saysThatItRecordsEvenIfTheSystemDeclines()
    {
        Form form;
        form.platform.eventMonitor.declines = true;
        form.record();
        QTRY_COMPARE(form.mainButton().text(), pressTheKeys);
        form.mainButton().click();
        QTRY_COMPARE(form.mainButton().text(), recordShortcut);
        form.platform.eventMonitor.declines = false;
        form.record();
        QVERIFY(form.platform.eventMonitor.press(keyK, command));
        QCOMPARE(form.stored(), commandK);
    }
};

QTEST_MAIN(RecorderTest)
#include "RecorderTest.moc"
