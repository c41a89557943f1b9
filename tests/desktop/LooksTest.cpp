// How every view, sheet and alert of the program looks on one desktop after the other. What is
// written there is measured for its contrast. Pictures of it all, on some more desktops, are left
// in the folder that CORVANE_PICTURES names, to be looked at (script/pictures).

#include "support/DesktopLook.h"
#include "support/Panel.h"
#include "support/RecordedService.h"
#include "support/Screen.h"
#include "support/SettingsDesk.h"
#include "support/TrayUser.h"
#include "support/Windows.h"
#include "unit/support/Contrast.h"

#include <QDBusVariant>
#include <QDir>
#include <QHash>
#include <QTest>
#include <nlohmann/json.hpp>

using namespace Qt::StringLiterals;
using Json = nlohmann::json;
using State = Accessible::State;

namespace
{
const QString comboBox = u"combo box"_s;

/// One entry of the list to look at.
struct Sample {
    QString name;
    QString kind;
    QString target;
    StoredKeys keys;
    bool isEnabled = true;
};

constexpr StoredKeys controlOption(int keyCode)
{
    return {keyCode, 0x1800};
}

/// As a user has it who keeps it in order.
QList<Sample> tidyList(const QString &home)
{
    return {
        {u"Notes"_s, u"app"_s, home + u"/.local/share/applications/notes.desktop"_s,
         controlOption(45)},
        {u"Papers"_s, u"path"_s, home + u"/Papers"_s, controlOption(35)},
        {u"Weather"_s, u"website"_s, u"https://example.com/weather"_s, controlOption(13)},
        {u"Tidy Up"_s, u"shortcut"_s, u"Tidy Up"_s, {17, 0x900}},
        {u"Radio"_s, u"website"_s, u"https://example.com/radio"_s, controlOption(15)},
    };
}

/// All that can be seen of entries: what is missing, keys that are there twice, names in another
/// direction or of great length, and what is switched off.
QList<Sample> everything(const QString &home)
{
    return tidyList(home)
        + QList<Sample>{
            {u"Webmail"_s, u"website"_s, u"https://example.com/mail"_s, controlOption(13)},
            {u"Music"_s, u"app"_s, home + u"/music.desktop"_s, controlOption(46)},
            {u"مكتبة الصور"_s, u"path"_s, u"/usr/share"_s, {34, 0x900}},
            {u"Archive"_s, u"path"_s, u"/usr/share/doc"_s, {0, 0x300}, false},
            {u"The minutes of the meetings of the whole year, with all that was decided"_s,
             u"website"_s,
             u"https://example.com/archive/of/the/year/minutes-of-the-meetings-and-decisions.html"_s,
             {122, 0x1B00}},
        };
}

/// Between what most of the picture is and what differs most from that.
double contrastOfContent(const QImage &picture)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            ++counts[picture.pixel(x, y)];
    }
    const auto ground = std::max_element(counts.cbegin(), counts.cend());
    double most = 1;
    for (auto count = counts.cbegin(); count != counts.cend(); ++count)
        most = std::max(most, contrast(QColor(count.key()), QColor(ground.key())));
    return most;
}

/// A text on the screen, or the drawing of a button.
struct Mark {
    QString content;
    QRect place;
    double minContrast = 4.5;
};

/// Where in a part of a window its text is, without frames, drawings and the text cursor.
QRect placeOfContent(const QString &role, const QRect &part)
{
    constexpr int frame = 4;
    constexpr int box = 22;
    constexpr int iconOfApp = 34;
    if (role == Role::checkBox)
        return part.adjusted(box, 0, 0, 0);
    if (role == Role::button)
        return part.adjusted(frame, frame, -frame, -frame);
    if (role == Role::field)
        return part.adjusted(3 * frame, frame, -frame, -frame);
    if (role == Role::row)
        return part.adjusted(iconOfApp, 0, 0, 0);
    if (role == comboBox)
        return part.adjusted(2 * frame, frame, -box, -frame);
    return part;
}

/// Nothing if it has none, or if it is not wholly within the clip.
QList<Mark> marksOf(const Accessible &part, const QString &role, const QRect &clip)
{
    constexpr int narrowest = 60;
    const QRect place = part.geometry();
    const bool isNarrow = place.width() < narrowest;
    // The switch of a row has nothing written.
    if (!clip.contains(place) || (role == Role::checkBox && isNarrow))
        return {};
    const bool isDrawing = role == Role::button && isNarrow;
    return {{part.name() + part.text(), placeOfContent(role, place), isDrawing ? 3 : 4.5}};
}

/// All that the user sees of it within the clip.
QList<Mark> marksIn(const Accessible &part, const QRect &clip)
{
    static const QStringList written{Role::label, Role::button, Role::checkBox, Role::field,
                                     comboBox};
    if (!part.is(State::showing))
        return {};
    const QString role = part.role();
    if (written.contains(role))
        return marksOf(part, role, clip);
    const QRect place = part.geometry();
    const QList<Accessible> children = part.children();
    if (role == Role::row && children.isEmpty())
        return marksOf(part, role, clip);
    QList<Mark> marks;
    for (const Accessible &child : children)
        marks << marksIn(child, place.isEmpty() ? clip : clip & place);
    if (role == Role::row && !part.find(Role::checkBox, u"Enabled"_s).is(State::checked)) {
        // It is meant to be pale.
        for (Mark &mark : marks)
            mark.minContrast = 2;
    }
    return marks;
}

/// A window as it is on the screen.
struct Shown {
    QRect place;
    QImage picture;

    bool operator==(const Shown &other) const = default;
};

struct Desk : SettingsDesk {
    explicit Desk(const DesktopLook &look)
        : lookName(look.name)
    {
        look.setUp(program);
        if (look.prefersDark)
            portal.emplace(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"),
                           u"org.freedesktop.portal.Desktop"_s, RecordedService::reply({dark}));
        if (!isLookedAt)
            setHardEdges(program);
    }

    void addEntries(const QList<Sample> &samples)
    {
        write(program.home.filePath(u".local/share/applications/notes.desktop"_s), app.content());
        QVERIFY(QDir(program.home.path()).mkpath(u"Papers"_s));
        Json records = Json::array();
        for (const Sample &sample : samples) {
            const QByteArray id = "5A3F1C52-8E0B-4E5B-9C53-0A4F8E6D1B"
                + QByteArray::number(10 + qsizetype(records.size()));
            records.push_back({{"id", id.toStdString()},
                               {"name", sample.name.toStdString()},
                               {"kind", sample.kind.toStdString()},
                               {"target", sample.target.toStdString()},
                               {"isEnabled", sample.isEnabled}});
            program.addKeys(id, sample.keys);
        }
        write(listPath(), QByteArray::fromStdString(records.dump()));
    }

    QString autostartFolder() const { return program.configHome() + u"/autostart"_s; }

    /// The window in front, once it has that title and nothing changes in it any more.
    Shown look(const QString &title) const
    {
        Shown last;
        const auto isStill = [&] {
            const auto window = activeWindow();
            const QRect place = window ? geometryOf(*window) : QRect();
            const Shown now{place, screen.picture(place)};
            return std::exchange(last, now) == now && contrast(now.picture) > 0;
        };
        [&] {
            QTRY_COMPARE(activeTitle(), title);
            QVERIFY(QTest::qWaitFor(isStill));
        }();
        return last;
    }

    /// Leaves it to be looked at, if somebody wants to.
    void keep(const QImage &picture, const QString &name) const
    {
        const QString folder = qEnvironmentVariable("CORVANE_PICTURES") + u'/' + name;
        if (isLookedAt)
            QVERIFY(QDir().mkpath(folder) && picture.save(folder + u'/' + lookName + u".png"_s));
    }

    /// Keeps a picture of it, and measures all that is written there.
    void lookAt(const Accessible &window, const QString &title, const QString &name) const
    {
        const Shown shown = look(title);
        keep(shown.picture, name);
        if (isLookedAt)
            return;
        QStringList faint;
        const QList<Mark> marks = marksIn(window, shown.place);
        for (const Mark &mark : marks) {
            const QRect part = mark.place.translated(-shown.place.topLeft());
            const double ratio = contrastOfContent(shown.picture.copy(part));
            if (ratio < mark.minContrast)
                faint << u"%1: %2"_s.arg(mark.content).arg(ratio);
        }
        QVERIFY(!marks.isEmpty());
        QVERIFY2(faint.isEmpty(), qPrintable(name + u": "_s + faint.join(u", "_s)));
    }
    void lookAtWindow(const QString &name) const { lookAt(all, windowTitle, name); }
    void lookAtSheet(const QString &title, const QString &name) const
    {
        lookAt(sheet(title), title, name);
    }

    /// As small as it lets itself be made.
    void shrink() const
    {
        const auto window = *windowOnScreen(windowTitle);
        const int height = geometryOf(window).height();
        resizeWindow(window, {1, 1});
        // With a large font it is that small already.
        if (!isLookedAt)
            QTRY_VERIFY(geometryOf(window).height() < height);
    }

    const QString lookName;
    const QVariant dark = QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(1U))));
    std::optional<RecordedService> portal;
    const bool isLookedAt = qEnvironmentVariableIsSet("CORVANE_PICTURES");
    const QString windowTitle = u"Corvane"_s;
    Screen screen;
};
} // namespace

class LooksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        QTest::addColumn<DesktopLook>("look");
        QList<DesktopLook> looks = DesktopLook::measured();
        if (qEnvironmentVariableIsSet("CORVANE_PICTURES"))
            looks << DesktopLook::others();
        for (const DesktopLook &look : std::as_const(looks))
            QTest::newRow(qPrintable(look.name)) << look;
    }

    void isLegibleToANewUser()
    {
        Desk desk(look());
        desk.program.isUserNew = true;
        desk.program.start();
        desk.awaitWindow();
        desk.lookAtWindow(u"window-welcome"_s);
        desk.shrink();
        desk.lookAtWindow(u"window-welcome-smallest"_s);
        desk.press(u"Got it"_s);
        QTRY_VERIFY(!desk.shows(Role::button, u"Got it"_s));
        desk.lookAtWindow(u"window-empty"_s);
        const QString nothing = desk.program.home.filePath(u"nothing.json"_s);
        SettingsDesk::write(nothing, R"({"version": 1, "items": []})");
        desk.press(u"Import…"_s);
        const Accessible panel = desk.sheet(u"Import"_s);
        desk.keep(desk.look(u"Import"_s).picture, u"import"_s);
        QVERIFY(panel.findAll(Role::field).constLast().setText(nothing));
        desk.press(panel, u"Open"_s);
        desk.awaitNoSheet();
        QVERIFY(desk.all.await(Role::label, u"Imported 0 shortcuts."_s).isThere());
        desk.lookAtWindow(u"window-imported"_s);
    }

    void isLegibleWithAList()
    {
        Desk desk(look());
        desk.addEntries(everything(desk.program.home.path()));
        SettingsDesk::write(desk.autostartFolder() + u"/org.corvane.Corvane.desktop"_s,
                            desk.app.content() + "Hidden=true\n");
        desk.open();
        desk.lookAtWindow(u"window-list"_s);
        const Accessible signs =
            desk.all.find(Role::checkBox, u"Show keys with Mac signs (⌃⌥⇧⌘)"_s);
        QVERIFY(signs.toggle());
        QVERIFY(desk.all.await(Role::label, u"⌃⌥N"_s).isThere());
        desk.lookAtWindow(u"window-list-signs"_s);
        QVERIFY(signs.toggle());
        QTRY_VERIFY(!desk.shows(Role::label, u"⌃⌥N"_s));
        desk.shrink();
        desk.lookAtWindow(u"window-list-smallest"_s);
        desk.keyboard.type({KEY_TAB});
        QTRY_VERIFY(desk.all.find(Role::button, u"Import…"_s).is(State::focused));
        desk.lookAtWindow(u"window-focus"_s);
    }

    void isLegibleAfterADeletion()
    {
        Desk desk(look());
        QList<Sample> samples = everything(desk.program.home.path());
        const QString longName = samples.constLast().name;
        samples.prepend(samples.takeLast());
        desk.addEntries(samples);
        desk.open();
        SettingsDesk::press(desk.row(u"Notes"_s), u"Delete"_s);
        QVERIFY(desk.all.await(Role::label, u"“Notes” was deleted."_s).isThere());
        desk.lookAtWindow(u"window-undo"_s);
        desk.shrink();
        SettingsDesk::press(desk.row(longName), u"Delete"_s);
        QVERIFY(desk.all.await(Role::label, u"“%1” was deleted."_s.arg(longName)).isThere());
        desk.lookAtWindow(u"window-undo-smallest"_s);
    }

    void isLegibleWhileTheUserSearches()
    {
        Desk desk(look());
        QList<Sample> samples = everything(desk.program.home.path());
        while (samples.size() < 12)
            samples << Sample{u"Site"_s, u"website"_s, u"https://example.com"_s, {0, 0x300}};
        desk.addEntries(samples);
        desk.open();
        const Accessible search = desk.all.await(Role::field, u"Search"_s);
        desk.lookAtWindow(u"window-search"_s);
        desk.keyboard.type({KEY_LEFTCTRL, KEY_F});
        QTRY_VERIFY(search.is(State::focused));
        desk.keyboard.write(u"weather"_s);
        QTRY_COMPARE(search.description(), u"1 of 12 shortcuts"_s);
        desk.lookAtWindow(u"window-search-found"_s);
        desk.shrink();
        desk.keyboard.write(u"x"_s);
        QVERIFY(desk.all.await(Role::label, u"No shortcuts found"_s).isThere());
        desk.lookAtWindow(u"window-search-nothing-smallest"_s);
    }

    void isLegibleInTheEditor()
    {
        const QString title = u"New shortcut"_s;
        Desk desk(look());
        desk.open();
        desk.press(u"Add"_s);
        const Accessible editor = desk.sheet(title);
        desk.lookAtSheet(title, u"editor-app"_s);
        const Accessible picker = editor.findAll(comboBox).constFirst();
        QVERIFY(picker.choose(u"Open a folder or file"_s, desk.keyboard));
        desk.lookAtSheet(title, u"editor-path"_s);
        QVERIFY(picker.choose(u"Open a website"_s, desk.keyboard));
        desk.lookAtSheet(title, u"editor-website"_s);
        QVERIFY(picker.choose(u"Run a Shortcut"_s, desk.keyboard));
        desk.lookAtSheet(title, u"editor-shortcut"_s);
        desk.press(editor, u"Add"_s);
        QVERIFY(editor.await(Role::label, u"Please give this shortcut a name."_s).isThere());
        desk.lookAtSheet(title, u"editor-message"_s);
        desk.press(editor, u"Record Shortcut"_s);
        QVERIFY(editor.await(Role::label, u"Esc cancels"_s).isThere());
        desk.lookAtSheet(title, u"editor-recording"_s);
        desk.keyboard.type({KEY_J});
        const bool isPlasma = desk.program.environment.value(u"XDG_CURRENT_DESKTOP"_s) == u"KDE"_s;
        const QString hint = u"Include %1, Ctrl or Alt"_s.arg(isPlasma ? u"Meta"_s : u"Super"_s);
        QVERIFY(editor.await(Role::label, hint).isThere());
        desk.lookAtSheet(title, u"editor-hint"_s);
    }

    void isLegibleInTheEditorOfAnEntryWithAWarning()
    {
        const QString title = u"Edit shortcut"_s;
        Desk desk(look());
        desk.addEntries(everything(desk.program.home.path()));
        desk.open();
        desk.press(desk.row(u"Weather"_s), u"Edit"_s);
        desk.lookAtSheet(title, u"editor-warning"_s);
    }

    void isLegibleInTheEditorOfAnEntryWithTheDesktopsKeys()
    {
        const QString title = u"Edit shortcut"_s;
        Desk desk(look());
        desk.addEntries(everything(desk.program.home.path()));
        // LXQt keeps its keys in a file; the colours stay those of Plasma.
        desk.program.environment.insert(u"XDG_CURRENT_DESKTOP"_s, u"LXQt:KDE"_s);
        SettingsDesk::write(desk.program.configHome() + u"/lxqt/globalkeyshortcuts.conf"_s,
                            "[Control%2BAlt%2BW.1]\nEnabled=true\nExec=x\n");
        desk.open();
        desk.press(desk.row(u"Weather"_s), u"Edit"_s);
        QVERIFY(desk.sheet(title).await(Role::button, u"Keyboard Settings"_s).isThere());
        desk.lookAtSheet(title, u"editor-desktop-warning"_s);
    }

    void isLegibleInTheFormForANewScript()
    {
        const QString title = u"New script"_s;
        Desk desk(look());
        desk.open();
        desk.press(u"Add"_s);
        const Accessible editor = desk.sheet(u"New shortcut"_s);
        QVERIFY(editor.findAll(comboBox).constFirst().choose(u"Run a Shortcut"_s, desk.keyboard));
        QVERIFY(editor.await(Role::button, u"New…"_s).press());
        const Accessible form = desk.sheet(title);
        desk.lookAtSheet(title, u"new-script"_s);
        QVERIFY(form.find(Role::field, u"Name"_s).setText(u".hidden"_s));
        desk.press(form, u"Create"_s);
        QVERIFY(form.await(Role::label, u"The name must not begin with a full stop."_s).isThere());
        desk.lookAtSheet(title, u"new-script-message"_s);
    }

    void isLegibleInTheAppPanel()
    {
        const QString title = u"Choose App"_s;
        Desk desk(look());
        desk.open();
        desk.press(u"Add"_s);
        desk.press(desk.sheet(u"New shortcut"_s), u"Choose…"_s);
        const Accessible panel = desk.sheet(title);
        desk.lookAtSheet(title, u"apps"_s);
        const Accessible search = panel.find(Role::field, u"Search"_s);
        const Accessible choose = panel.find(Role::button, u"Choose App"_s);
        QVERIFY(search.setText(u"recorded"_s));
        QTRY_VERIFY(choose.is(State::enabled));
        desk.lookAtSheet(title, u"apps-selected"_s);
        QVERIFY(search.setText(u"There is no such app"_s));
        QTRY_VERIFY(!choose.is(State::enabled));
        desk.lookAtSheet(title, u"apps-none"_s);
    }

    void isLegibleInSheets()
    {
        const QString question = u"Remove the keys from every shortcut?"_s;
        Desk desk(look());
        desk.addEntries(tidyList(desk.program.home.path()));
        desk.open();
        desk.lookAtWindow(u"window"_s);
        desk.press(u"About"_s);
        desk.lookAtSheet(desk.windowTitle, u"about"_s);
        desk.keyboard.type({KEY_ESC});
        desk.awaitNoSheet();
        desk.press(u"Reset all shortcuts…"_s);
        desk.lookAt(desk.alert(question), question, u"reset"_s);
        desk.keyboard.type({KEY_ESC});
        desk.awaitNoSheet();
        desk.press(u"Export…"_s);
        // Its content is Qt's.
        desk.sheet(u"Export"_s);
        desk.keep(desk.look(u"Export"_s).picture, u"export"_s);
    }

    void isLegibleInAlerts()
    {
        const QString title = u"Something went wrong"_s;
        Desk desk(look());
        SettingsDesk::write(desk.autostartFolder(), "a file in the folder's place");
        desk.open();
        desk.toggle(u"Launch at login"_s);
        const Accessible alert = desk.errorAlert(u"Launch at login could not be changed."_s);
        desk.lookAt(alert, title, u"error"_s);
        desk.press(alert, u"Show Details"_s);
        desk.lookAtSheet(u"Details"_s, u"details"_s);
    }

    void isLegibleInTheMenu()
    {
        const Panel panel(Panel::Kind::Trayer);
        TrayUser user;
        Desk desk(look());
        // By the edges of its letters the user knows a menu.
        desk.program.environment.remove(u"FONTCONFIG_FILE"_s);
        desk.addEntries(tidyList(desk.program.home.path()));
        desk.program.start();
        const QRect place = user.openMenu();
        QImage menu;
        // It is there before it is painted.
        const auto isLegible = [&] {
            menu = desk.screen.picture(place);
            constexpr int line = 20;
            for (int top = 0; top + line <= menu.height(); top += line) {
                if (contrastOfContent(menu.copy(30, top, menu.width() - 60, line)) < 4.5)
                    return false;
            }
            return true;
        };
        // Of a menu that is twice as large some of these lines are empty.
        QVERIFY(QTest::qWaitFor(isLegible) || desk.isLookedAt);
        desk.keep(menu, u"menu"_s);
    }

private:
    static DesktopLook look()
    {
        QFETCH_GLOBAL(const DesktopLook, look);
        return look;
    }
};

QTEST_MAIN(LooksTest)
#include "LooksTest.moc"
