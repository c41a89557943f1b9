// The list goes to a file and comes from one: by the panels of the settings window, with real
// files.

#include "support/SettingsDesk.h"
#include "support/Windows.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTest>
#include <nlohmann/json.hpp>
#include <vector>

using namespace Qt::StringLiterals;
using Json = nlohmann::json;
using State = Accessible::State;

namespace
{
const QString noImport = u"That file could not be imported. Is it a Corvane export?"_s;

struct Desk : SettingsDesk {
    /// A place in the user's home.
    QString path(const QString &name) const { return program.home.filePath(name); }

    Accessible panelWith(const QString &title, const QString &path) const
    {
        press(title + u'…');
        Accessible panel = sheet(title);
        [&] { QVERIFY(panel.findAll(Role::field).constLast().setText(path)); }();
        return panel;
    }
    void importFrom(const QString &path) const { press(panelWith(u"Import"_s, path), u"Open"_s); }
    void exportTo(const QString &path) const { press(panelWith(u"Export"_s, path), u"Save"_s); }
};

Json parsed(const QByteArray &text)
{
    return Json::parse(text.constData(), nullptr, false);
}

/// An item of an export, with what is the same in all that the tests write.
Json item(const QString &name, const QString &kind, const QString &target)
{
    return {{"name", name.toStdString()},
            {"kind", kind.toStdString()},
            {"target", target.toStdString()},
            {"isEnabled", true}};
}

QByteArray exportOf(const Json &items)
{
    return QByteArray::fromStdString(Json{{"version", 1}, {"items", items}}.dump());
}

/// All combinations of the first key codes, again and again: those of real keys among them, and
/// most are held already when their turn comes.
QByteArray exportWithKeys(int count)
{
    std::vector<int> modifiers;
    for (const int commandAndShift : {0, 0x100, 0x200, 0x300}) {
        for (const int optionAndControl : {0, 0x800, 0x1000, 0x1800})
            modifiers.push_back(commandAndShift + optionAndControl);
    }
    Json items = Json::array();
    for (int index = 0; index < count; ++index) {
        items.push_back(
            item(u"Site %1"_s.arg(index), u"website"_s, u"https://example.com/%1"_s.arg(index)));
        items.back()["keyCode"] = index % 128;
        items.back()["modifiers"] = modifiers[size_t(index / 128) % modifiers.size()];
    }
    return exportOf(items);
}
} // namespace

class ListExchangeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void exportsTheListWithItsKeysAndWithoutIds()
    {
        Desk desk;
        desk.addApp(storedControlAltK);
        desk.program.entriesAreEnabled = false;
        desk.program.addEntry("website", u"https://example.com/"_s);
        desk.open();
        desk.exportTo(desk.path(u"list.json"_s));
        desk.awaitNoSheet();
        Json app = item(u"App"_s, u"app"_s, desk.app.desktopFile());
        app["keyCode"] = storedControlAltK.keyCode;
        app["modifiers"] = storedControlAltK.modifiers;
        Json website = item(u"App"_s, u"website"_s, u"https://example.com/"_s);
        website["isEnabled"] = false;
        const Json written = parsed(SettingsDesk::content(desk.path(u"list.json"_s)));
        QCOMPARE(QByteArray::fromStdString(written.dump()), exportOf({app, website}));
    }

    void bringsAListToAnotherComputer()
    {
        Desk first;
        first.addApp(storedControlAltK);
        first.open();
        first.exportTo(first.path(u"list.json"_s));
        first.awaitNoSheet();
        QCOMPARE(first.program.stop(), 0);

        Desk second;
        second.open();
        second.importFrom(first.path(u"list.json"_s));
        QVERIFY(second.row(u"App"_s).find(Role::label, u"Ctrl+Alt+K"_s).isThere());
        second.awaitNoSheet();
        second.awaitHeld(KEY_K);
        first.verifyThatKeysRunTheApp(controlAltK);
    }

    void keepsWhatWasImported()
    {
        Desk desk;
        Json app = item(u"Mine"_s, u"app"_s, desk.app.desktopFile());
        app["keyCode"] = storedControlAltK.keyCode;
        app["modifiers"] = storedControlAltK.modifiers;
        SettingsDesk::write(desk.path(u"list.json"_s), exportOf(Json::array({app})));
        desk.open();
        desk.importFrom(desk.path(u"list.json"_s));
        desk.awaitHeld(KEY_K);
        desk.restart();
        desk.awaitHeld(KEY_K);
        desk.verifyThatKeysRunTheApp(controlAltK);
        desk.show();
        QVERIFY(desk.hasRow(u"Mine"_s));
    }

    void refusesWhatIsNoExport()
    {
        const Json good = item(u"Good"_s, u"website"_s, u"https://example.com/"_s);
        Json folder = good;
        folder["kind"] = "folder";
        Desk desk;
        desk.addApp(storedControlAltK);
        desk.open();
        const QByteArray list = desk.list();
        const QByteArray settings = desk.settings();
        SettingsDesk::write(desk.path(u"list.json"_s), exportOf({good, folder}));
        desk.importFrom(desk.path(u"list.json"_s));
        SettingsDesk::press(desk.errorAlert(noImport), u"OK"_s);
        desk.awaitNoSheet();
        QCOMPARE(desk.list(), list);
        QCOMPARE(desk.settings(), settings);
        desk.verifyThatKeysRunTheApp(controlAltK);
    }

    void opensAFolderInsteadOfImportingIt()
    {
        Desk desk;
        SettingsDesk::write(desk.path(u"folder/inside.json"_s), exportOf(Json::array()));
        desk.open();
        const Accessible panel = desk.panelWith(u"Import"_s, desk.path(u"folder"_s));
        SettingsDesk::press(panel, u"Open"_s);
        QVERIFY(panel.await(Role::row, u"inside.json"_s).isThere());
        QVERIFY(panel.is(State::active));
    }

    void importsTenThousandEntriesWithKeysInTwoSeconds()
    {
        Desk desk;
        SettingsDesk::write(desk.path(u"list.json"_s), exportWithKeys(10000));
        desk.open();
        desk.panelWith(u"Import"_s, desk.path(u"list.json"_s));
        QElapsedTimer timer;
        timer.start();
        desk.keyboard.type({KEY_ENTER});
        QVERIFY(desk.row(u"Site 0"_s).isThere());
        const qint64 duration = timer.elapsed();
        qInfo("10000 entries were there after %lld ms", duration);
        QVERIFY(duration <= 2000);
        QCOMPARE(parsed(desk.list()).size(), 10000);
        // The combination is that of one with control and option.
        desk.awaitHeld(KEY_K);
    }
};

QTEST_MAIN(ListExchangeTest)
#include "ListExchangeTest.moc"
