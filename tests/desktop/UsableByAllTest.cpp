// The settings window for those who use no mouse, and for those who see no screen: its whole story
// by the keyboard alone and by an assistive program alone, and what is said of each of its parts.

#include "support/ProgramOnTheBus.h"
#include "support/ScreenReader.h"
#include "support/SettingsDesk.h"

#include <QFileInfo>
#include <QScopeGuard>
#include <QTest>
#include <algorithm>
#include <functional>
#include <memory>
#include <tuple>

using namespace Qt::StringLiterals;
using namespace Role;
using State = Accessible::State;

namespace
{
const QString picker = u"combo box"_s;
const QString welcome = u"Welcome to Corvane"_s;
const QString question = u"Remove the keys from every shortcut?"_s;
const QString reset = u"Reset all shortcuts"_s;

/// Somebody who uses the window in one way alone.
class User
{
public:
    explicit User(SettingsDesk &desk)
        : m_desk(desk)
    {
    }
    virtual ~User() = default;
    Q_DISABLE_COPY_MOVE(User)

    /// Presses a button, or turns a check box.
    virtual void press(const Accessible &control) = 0;
    virtual void write(const Accessible &field, const QString &text) = 0;
    virtual void choose(const Accessible &box, const QString &item) = 0;
    /// Presses the default button of the sheet.
    virtual void confirm(const Accessible &button) = 0;
    /// Verifies that the user is there without having looked for it.
    virtual void verifyPlace(const QString &name) = 0;

protected:
    SettingsDesk &m_desk;
};

/// Looks at what has the focus, and types.
class KeyboardUser final : public User
{
public:
    using User::User;

    void press(const Accessible &control) override
    {
        goTo(control);
        m_desk.keyboard.type({KEY_SPACE});
    }
    void write(const Accessible &field, const QString &text) override
    {
        goTo(field);
        m_desk.keyboard.type({KEY_LEFTCTRL, KEY_A});
        m_desk.keyboard.write(text);
        QTRY_COMPARE(field.text(), text);
    }
    void choose(const Accessible &box, const QString &item) override
    {
        goTo(box);
        for (QString shown = box.name(); shown != item; shown = box.name()) {
            m_desk.keyboard.type({KEY_DOWN});
            QTRY_VERIFY(box.name() != shown);
        }
    }
    void confirm(const Accessible &button) override
    {
        QVERIFY(button.is(State::isDefault));
        m_desk.keyboard.type({KEY_ENTER});
    }
    void verifyPlace(const QString &name) override
    {
        QTRY_COMPARE(m_desk.all.focused().name(), name);
    }

private:
    /// By the Tab key, which must lead there.
    void goTo(const Accessible &control) const
    {
        Accessible place = m_desk.all.focused();
        for (int steps = 0; place != control && steps < 40; ++steps) {
            const Accessible former = std::exchange(place, {});
            m_desk.keyboard.type({KEY_TAB});
            QVERIFY(QTest::qWaitFor([&] {
                place = m_desk.all.focused();
                return place.isThere() && place != former;
            }));
        }
        QCOMPARE(place, control);
    }
};

/// Does what screen readers, voice control and switches can do, with one exception: keys to be
/// recorded have to be pressed, and so has an item in the list of a picker, whose own action does
/// not choose it.
class AssistiveUser final : public User
{
public:
    using User::User;

    void press(const Accessible &control) override
    {
        QVERIFY(control.role() == checkBox ? control.toggle() : control.press());
    }
    void write(const Accessible &field, const QString &text) override
    {
        QVERIFY(field.setText(text));
    }
    void choose(const Accessible &box, const QString &item) override
    {
        QVERIFY(box.choose(item, m_desk.keyboard));
    }
    void confirm(const Accessible &button) override { QVERIFY(button.press()); }
    // A press does not move the focus.
    void verifyPlace(const QString &) override { }
};

using MakeUser = std::function<std::unique_ptr<User>(SettingsDesk &desk)>;

template <typename Kind>
MakeUser make()
{
    return [](SettingsDesk &desk) { return std::make_unique<Kind>(desk); };
}

/// A new user before the window.
struct Desk : SettingsDesk {
    explicit Desk(const MakeUser &make)
        : user(make(*this))
    {
        program.isUserNew = true;
        program.start();
        awaitWindow();
        user->verifyPlace(u"Add"_s);
    }

    void press(const Accessible &part, const QString &name) const
    {
        user->press(part.await(button, name));
    }

    void dismissWelcome() const
    {
        press(all, u"Got it"_s);
        QTRY_VERIFY(!shows(label, welcome));
    }

    Accessible addWebsite(const QString &name) const
    {
        press(all, u"Add"_s);
        Accessible form = sheet(u"New shortcut"_s);
        user->verifyPlace(u"Name"_s);
        user->write(form.find(field, u"Name"_s), name);
        user->choose(form.findAll(picker).value(0), u"Open a website"_s);
        user->write(form.await(field, u"Website"_s), u"https://example.com/"_s + name);
        return form;
    }

    /// The editor of an entry that runs a Shortcut.
    Accessible addScript() const
    {
        press(all, u"Add"_s);
        Accessible form = sheet(u"New shortcut"_s);
        user->verifyPlace(u"Name"_s);
        user->choose(form.findAll(picker).value(0), u"Run a Shortcut"_s);
        return form;
    }

    void record(const Accessible &form, const QList<int> &keys, const QString &text)
    {
        press(form, u"Record Shortcut"_s);
        user->verifyPlace(u"Press the keys…"_s);
        QVERIFY(form.await(button, u"Press the keys…"_s).isThere());
        keyboard.type(keys);
        QVERIFY(form.await(button, text).isThere());
        user->verifyPlace(u"Add"_s);
    }

    void confirm(const Accessible &form, const QString &name) const
    {
        user->confirm(form.find(button, name));
        awaitNoSheet();
    }

    void rename(const QString &name, const QString &newName) const
    {
        press(row(name), u"Edit"_s);
        const Accessible form = sheet(u"Edit shortcut"_s);
        user->verifyPlace(u"Name"_s);
        user->write(form.find(field, u"Name"_s), newName);
        confirm(form, u"Save"_s);
        user->verifyPlace(u"Edit"_s);
        QVERIFY(row(newName).isThere());
    }

    bool warns(const Accessible &part, const QString &name) const
    {
        return part.await(label, u"The same keys are used by “%1”."_s.arg(name)).isThere();
    }

    /// By a panel, and the name of a file in the user's home.
    void exchange(const QString &title, const QString &file, const QString &confirming) const
    {
        press(all, title + u'…');
        const Accessible panel = sheet(title);
        user->write(panel.findAll(field).constLast(), file);
        confirm(panel, confirming);
        user->verifyPlace(title + u'…');
    }

    void removeAllKeys() const
    {
        press(all, reset + u'…');
        const Accessible sheet = alert(question);
        user->verifyPlace(u"Cancel"_s);
        press(sheet, reset);
        awaitNoSheet();
        user->verifyPlace(reset + u'…');
    }

    std::unique_ptr<User> user;
};
QString autostartFile(const SettingsDesk &desk)
{
    return desk.program.configHome() + u"/autostart/org.corvane.Corvane.desktop"_s;
}

/// And nothing else, since it was last asked.
void verifyThatIsSaid(ScreenReader &reader, const QStringList &texts)
{
    QStringList heard;
    QTRY_COMPARE(heard += reader.heard(), texts);
}

const QString noFault;

/// What of the part would leave somebody at a loss who only hears of it.
QString faultOf(const Accessible &part, const QString &role)
{
    const bool isControl =
        QStringList{button, checkBox, field, picker, u"list"_s, row}.contains(role);
    const bool isSaid = isControl || role == label || role == notice;
    // What screen readers pass over: layouts and drawings are fillers.
    const bool isSilent =
        QStringList{u"frame"_s, dialog, alert, u"separator"_s, u"filler"_s}.contains(role);
    if (part.is(State::focusable) && !isControl)
        return u"is no control"_s;
    if (isSaid && part.name().isEmpty())
        return u"has no name"_s;
    return isSaid || isSilent ? noFault : u"is said for no reason"_s;
}

/// What is wrong with what shows of a window, if anything.
QString fault(const Accessible &window)
{
    QStringList faults;
    int focused = 0;
    int defaults = 0;
    for (const Accessible &part : window.descendants()) {
        if (!part.is(State::showing))
            continue;
        const QString role = part.role();
        if (const QString found = faultOf(part, role); !found.isEmpty())
            faults << role + u" “"_s + part.name() + u"” "_s + found;
        // Qt gives it to the inside of a text area as well.
        focused += part.is(State::focused) && part.is(State::focusable);
        defaults += part.is(State::isDefault);
    }
    if (focused != 1)
        faults << u"%1 have the focus"_s.arg(focused);
    if (const bool isSheet = window.role() != u"frame"; defaults != int(isSheet))
        faults << u"%1 are the default button"_s.arg(defaults);
    return faults.join(u"; "_s);
}
} // namespace

Q_DECLARE_METATYPE(MakeUser)

class UsableByAllTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isUsedFromTheFirstDayOn_data()
    {
        QTest::addColumn<MakeUser>("makeUser");
        QTest::newRow("by the keyboard alone") << make<KeyboardUser>();
        QTest::newRow("by an assistive program alone") << make<AssistiveUser>();
    }
    void isUsedFromTheFirstDayOn()
    {
        QFETCH(const MakeUser, makeUser);
        Desk desk(makeUser);
        desk.dismissWelcome();
        desk.user->verifyPlace(u"Add"_s);

        const Accessible first = desk.addWebsite(u"News"_s);
        desk.record(first, controlAltJ, u"Ctrl+Alt+J"_s);
        desk.confirm(first, u"Add"_s);
        desk.user->verifyPlace(u"Add"_s);
        desk.awaitHeld(KEY_J);
        desk.verifyThatKeysRunTheApp(controlAltJ);
        desk.rename(u"News"_s, u"Mail"_s);

        const Accessible second = desk.addWebsite(u"Twin"_s);
        desk.record(second, controlAltJ, u"Ctrl+Alt+J"_s);
        QVERIFY(desk.warns(second, u"Mail"_s));
        desk.confirm(second, u"Add"_s);
        QVERIFY(desk.warns(desk.row(u"Twin"_s), u"Mail"_s));
        QVERIFY(desk.warns(desk.row(u"Mail"_s), u"Twin"_s));

        chooseInTray(u"Pause all shortcuts"_s);
        desk.awaitFree(KEY_J);
        desk.keyboard.type(controlAltJ);
        chooseInTray(u"Pause all shortcuts"_s);
        desk.awaitHeld(KEY_J);
        desk.verifyThatKeysRunTheApp(controlAltJ);

        desk.exchange(u"Export"_s, u"mine.json"_s, u"Save"_s);
        desk.removeAllKeys();
        desk.awaitFree(KEY_J);
        desk.exchange(u"Import"_s, u"mine.json"_s, u"Open"_s);
        QTRY_COMPARE(desk.all.findAll(row, u"Mail"_s).size(), 2);
        desk.awaitHeld(KEY_J);
        desk.verifyThatKeysRunTheApp(controlAltJ);

        // Now that all that was started has ended.
        QCOMPARE(desk.program.stop(), 0);
        QCOMPARE(desk.app.starts().size(), 3);
    }

    void savesByReturnOnceKeysAreRecordedWhereReturnPressesTheButtonInFocus()
    {
        const auto restored = qScopeGuard([desktop = qgetenv("XDG_CURRENT_DESKTOP")] {
            qputenv("XDG_CURRENT_DESKTOP", desktop);
        });
        qputenv("XDG_CURRENT_DESKTOP", "XFCE");
        Desk desk(make<KeyboardUser>());
        const Accessible form = desk.addWebsite(u"News"_s);
        desk.record(form, controlAltJ, u"Ctrl+Alt+J"_s);
        desk.confirm(form, u"Add"_s);
        desk.awaitHeld(KEY_J);
    }

    /// What the first story leaves out.
    void changesAllElse_data() { isUsedFromTheFirstDayOn_data(); }
    void changesAllElse()
    {
        QFETCH(const MakeUser, makeUser);
        Desk desk(makeUser);
        desk.dismissWelcome();
        const Accessible form = desk.addWebsite(u"News"_s);
        desk.record(form, controlAltJ, u"Ctrl+Alt+J"_s);
        desk.confirm(form, u"Add"_s);

        const Accessible toggle = desk.row(u"News"_s).find(checkBox, u"Enabled"_s);
        for (const bool isOn : {false, true}) {
            desk.user->press(toggle);
            QTRY_COMPARE(toggle.is(State::checked), isOn);
            desk.user->verifyPlace(u"Enabled"_s);
        }
        for (const QString &name :
             {u"Launch at login"_s, u"Show a small notification when a shortcut runs"_s}) {
            const bool before = desk.checkBox(name).is(State::checked);
            desk.user->press(desk.checkBox(name));
            QTRY_COMPARE(desk.checkBox(name).is(State::checked), !before);
        }
        desk.press(desk.all, u"About"_s);
        desk.confirm(desk.sheet(u"Corvane"_s), u"Close"_s);
        desk.user->verifyPlace(u"About"_s);
        desk.press(desk.row(u"News"_s), u"Delete"_s);
        QVERIFY(desk.all.await(label, u"No shortcuts yet"_s).isThere());
        desk.user->verifyPlace(u"Add"_s);
        desk.awaitFree(KEY_J);
        desk.press(desk.all, u"Undo"_s);
        QVERIFY(desk.row(u"News"_s).isThere());
        desk.user->verifyPlace(u"Edit"_s);
        desk.awaitHeld(KEY_J);
        desk.verifyThatKeysRunTheApp(controlAltJ);
    }

    void saysWhatHappensToThoseWhoDoNotSeeIt()
    {
        ScreenReader reader;
        Desk desk(make<KeyboardUser>());
        desk.press(desk.all, u"Add"_s);
        const Accessible form = desk.sheet(u"New shortcut"_s);
        reader.heard();
        const QString noName = u"Please give this shortcut a name."_s;
        desk.keyboard.type({KEY_ENTER});
        verifyThatIsSaid(reader, {noName});
        desk.keyboard.type({KEY_ENTER});
        verifyThatIsSaid(reader, {noName});
        desk.keyboard.type({KEY_N});
        desk.keyboard.type({KEY_ENTER});
        verifyThatIsSaid(reader, {u"Choose what to open."_s});
        desk.press(form, u"Record Shortcut"_s);
        verifyThatIsSaid(reader, {u"Press the keys…"_s, u"Esc cancels"_s});
        const QString refused = u"Include Super, Ctrl or Alt"_s;
        desk.keyboard.type({KEY_X});
        verifyThatIsSaid(reader, {refused});
        desk.keyboard.type({KEY_X});
        verifyThatIsSaid(reader, {refused});
        desk.keyboard.type(controlAltJ);
        verifyThatIsSaid(reader, {u"Ctrl+Alt+J"_s});
    }

    void saysWhatCanBeUndone()
    {
        const QString deleted = u"“App” was deleted."_s;
        ScreenReader reader;
        SettingsDesk desk;
        for (int count = 0; count < 3; ++count)
            desk.addApp(storedControlAltJ);
        desk.open();
        reader.heard();
        for (int count = 0; count < 2; ++count) {
            SettingsDesk::press(desk.row(u"App"_s), u"Delete"_s);
            verifyThatIsSaid(reader, {deleted});
        }
        desk.press(reset + u'…');
        SettingsDesk::press(desk.alert(question), reset);
        desk.awaitNoSheet();
        // The button that the alert gives the focus to may be said before.
        QStringList heard;
        QTRY_VERIFY((heard += reader.heard()).contains(u"The keys of all entries were removed."_s));
        QTRY_VERIFY(desk.all.focused().isThere());
        QCOMPARE(fault(desk.all.find(u"frame"_s, u"Corvane"_s)), noFault);
    }

    void saysWhyNoScriptIsMade()
    {
        ScreenReader reader;
        Desk desk(make<KeyboardUser>());
        // No text editor is installed.
        const Accessible editor = desk.addScript();
        desk.press(editor, u"New…"_s);
        const Accessible form = desk.sheet(u"New script"_s);
        desk.user->verifyPlace(u"Name"_s);
        reader.heard();
        for (int attempt = 0; attempt < 2; ++attempt) {
            desk.keyboard.type({KEY_ENTER});
            verifyThatIsSaid(reader, {u"Please give the script a name."_s});
        }
        desk.keyboard.type({KEY_N});
        desk.keyboard.type({KEY_ENTER});
        QStringList heard;
        QTRY_VERIFY((heard += reader.heard())
                        .contains(u"The script was made, but no text editor could be opened."_s));
        desk.user->verifyPlace(u"Shortcut"_s);
    }

    void saysWhatBecomesOfTheSearchForAnApp()
    {
        ScreenReader reader;
        Desk desk(make<KeyboardUser>());
        SettingsDesk::write(desk.program.home.filePath(u"letter.txt"_s), "Dear all");
        desk.press(desk.all, u"Add"_s);
        desk.press(desk.sheet(u"New shortcut"_s), u"Choose…"_s);
        const Accessible panel = desk.sheet(u"Choose App"_s);
        reader.heard();
        desk.keyboard.write(u"xyz"_s);
        verifyThatIsSaid(reader, {u"No apps found"_s});
        for (int attempt = 0; attempt < 2; ++attempt) {
            desk.press(panel, u"Browse…"_s);
            // The panel for files has the same title.
            QTRY_COMPARE(desk.all.findAll(dialog, u"Choose App"_s).size(), 2);
            desk.user->verifyPlace(u"File name:"_s);
            desk.keyboard.write(u"letter.txt"_s);
            QTRY_COMPARE(desk.all.focused().text(), u"letter.txt"_s);
            reader.heard();
            desk.keyboard.type({KEY_ENTER});
            verifyThatIsSaid(reader, {u"That file is not an app."_s});
            desk.user->verifyPlace(u"Browse…"_s);
        }
    }

    void saysWhatBecomesOfTheSearchForAnEntry()
    {
        ScreenReader reader;
        SettingsDesk desk;
        for (int count = 0; count < 12; ++count)
            desk.addApp(storedControlAltJ);
        desk.open();
        desk.keyboard.type({KEY_LEFTCTRL, KEY_F});
        const Accessible search = desk.all.find(field, u"Search"_s);
        QTRY_VERIFY(search.is(State::focused));
        reader.heard();
        desk.keyboard.write(u"app"_s);
        QTRY_COMPARE(search.description(), u"12 of 12 shortcuts"_s);
        QCOMPARE(reader.heard(), QStringList());
        desk.keyboard.write(u"s"_s);
        verifyThatIsSaid(reader, {u"No shortcuts found"_s});
        QCOMPARE(search.description(), u"0 of 12 shortcuts"_s);
        QCOMPARE(fault(desk.all.find(u"frame"_s, u"Corvane"_s)), noFault);
    }

    void tellsOfTheWindowOfANewUser()
    {
        SettingsDesk desk;
        desk.program.isUserNew = true;
        SettingsDesk::write(autostartFile(desk), desk.app.content() + "Hidden=true\n");
        desk.program.start();
        desk.awaitWindow();
        QVERIFY(desk.shows(label, welcome));
        QVERIFY(desk.shows(button, u"Open Startup Applications"_s));
        QCOMPARE(fault(desk.all.find(u"frame"_s, u"Corvane"_s)), noFault);
        for (const QString &name : {u"Export…"_s, reset + u'…'})
            QVERIFY(!desk.all.find(button, name).is(State::enabled));
    }

    void tellsOfTheList()
    {
        SettingsDesk desk;
        desk.addApp(storedControlAltJ);
        desk.addApp(storedControlAltJ);
        desk.program.entriesAreEnabled = false;
        desk.program.addEntry("path", u"/nowhere"_s);
        desk.open();
        QCOMPARE(fault(desk.all.find(u"frame"_s, u"Corvane"_s)), noFault);
        const QList<Accessible> rows = desk.all.find(u"list"_s, u"Shortcuts"_s).children();
        QCOMPARE(rows.size(), 3);
        for (const Accessible &one : rows) {
            QCOMPARE(one.role(), row);
            QCOMPARE(one.name(), u"App"_s);
            const bool isEnabled = one.find(checkBox, u"Enabled"_s).is(State::checked);
            QCOMPARE(isEnabled, one != rows.constLast());
            // Those who see a drawing only can have it explained.
            QCOMPARE(one.find(button, u"Delete"_s).description(), u"Delete"_s);
        }
    }

    void tellsOfTheEditor()
    {
        Desk desk(make<KeyboardUser>());
        desk.press(desk.all, u"Add"_s);
        const Accessible form = desk.sheet(u"New shortcut"_s);
        const Accessible kind = form.findAll(picker).value(0);
        QCOMPARE(kind.labels(), QStringList(u"Action"_s));
        for (const auto &[title, role, name] : {
                 std::tuple(u"Open an app"_s, button, u"Choose…"_s),
                 std::tuple(u"Open a folder or file"_s, button, u"Choose…"_s),
                 std::tuple(u"Open a website"_s, field, u"Website"_s),
                 std::tuple(u"Run a Shortcut"_s, field, u"Shortcut"_s),
             }) {
            desk.user->choose(kind, title);
            QVERIFY(form.await(role, name).isThere());
            QCOMPARE(fault(form), noFault);
        }
        desk.keyboard.type({KEY_ENTER});
        QVERIFY(form.await(notice, u"Please give this shortcut a name."_s).isThere());
        QCOMPARE(fault(form), noFault);
        desk.record(form, controlAltJ, u"Ctrl+Alt+J"_s);
        QVERIFY(form.await(button, u"Clear"_s).isThere());
        QCOMPARE(fault(form), noFault);
    }

    void tellsOfTheFormForANewScript()
    {
        Desk desk(make<KeyboardUser>());
        desk.press(desk.addScript(), u"New…"_s);
        const Accessible form = desk.sheet(u"New script"_s);
        QCOMPARE(fault(form), noFault);
        desk.keyboard.type({KEY_ENTER});
        QVERIFY(form.await(notice, u"Please give the script a name."_s).isThere());
        QCOMPARE(fault(form), noFault);
    }

    void tellsOfTheChoiceOfAnApp()
    {
        Desk desk(make<KeyboardUser>());
        desk.press(desk.all, u"Add"_s);
        desk.press(desk.sheet(u"New shortcut"_s), u"Choose…"_s);
        const Accessible panel = desk.sheet(u"Choose App"_s);
        QVERIFY(panel.find(u"list"_s, u"Apps"_s).find(row, u"Recorded"_s).isThere());
        QCOMPARE(fault(panel), noFault);
        desk.keyboard.write(u"no such app"_s);
        QVERIFY(panel.await(notice, u"No apps found"_s).isThere());
        QVERIFY(!panel.find(button, u"Choose App"_s).is(State::enabled));
        QCOMPARE(fault(panel), noFault);
    }

    void tellsOfEachSheet()
    {
        SettingsDesk desk;
        desk.addApp(storedControlAltJ);
        desk.open();
        desk.press(u"About"_s);
        QCOMPARE(fault(desk.sheet(u"Corvane"_s)), noFault);
        desk.keyboard.type({KEY_ESC});
        desk.awaitNoSheet();

        desk.press(reset + u'…');
        const Accessible asking = desk.alert(question);
        QCOMPARE(fault(asking), noFault);
        QCOMPARE(asking.description(),
                 u"Your entries stay in the list, but each one loses its key combination."_s);
        desk.keyboard.type({KEY_ESC});
        desk.awaitNoSheet();

        SettingsDesk::write(QFileInfo(autostartFile(desk)).path(), "not a folder");
        desk.toggle(u"Launch at login"_s);
        const Accessible error = desk.errorAlert(u"Launch at login could not be changed."_s);
        QCOMPARE(fault(error), noFault);
        QCOMPARE(error.description(), u"Launch at login could not be changed."_s);
        SettingsDesk::press(error, u"Show Details"_s);
        QCOMPARE(fault(desk.sheet(u"Details"_s)), noFault);
    }
};

QTEST_MAIN(UsableByAllTest)
#include "UsableByAllTest.moc"
