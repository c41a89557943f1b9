// The menu, as desktops read it over the bus.

#include "platform/linux/tray/DBusMenu.h"
#include "platform/linux/tray/DBusMenuTypes.h"
#include "support/DBusClient.h"

#include <QDBusVariant>
#include <QElapsedTimer>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
MenuItem entry(const QString &name, const QString &id)
{
    return {.title = name, .action = [](const MenuItem &) {}, .representedObject = id};
}

/// A menu on the bus, and a desktop that reads it.
struct ShownMenu {
    explicit ShownMenu(const QList<MenuItem> &content = {})
        : items(content)
    {
        menu.update();
    }
    QString layout() { return desktop.call(u"GetLayout"_s, {0, -1, QStringList()}); }
    QString send(int id, const QString &event)
    {
        return desktop.call(u"Event"_s, {id, event, QVariant::fromValue(QDBusVariant(0)), 0U});
    }
    void click(int id) { QCOMPARE(send(id, u"clicked"_s), QString()); }

    QList<MenuItem> items;
    QStringList chosen;
    DBusMenu menu{[this] { return items; }, [this](const MenuItem &item) { chosen << item.title; }};
    DBusClient desktop{DBusMenu::path(), u"com.canonical.dbusmenu"_s};
};

/// What the layout says of a menu of these items.
QString root(const QString &items)
{
    return u"(0, {children-display: submenu}, [%1])"_s.arg(items);
}
} // namespace

class DBusMenuTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsEachKindOfItem_data()
    {
        const auto nothing = [](const MenuItem &) {};
        QTest::addColumn<MenuItem>("item");
        QTest::addColumn<QString>("properties");
        QTest::newRow("one to be chosen")
            << MenuItem{.title = u"Quit"_s, .action = nothing} << u"enabled: true, label: Quit"_s;
        QTest::newRow("one without an action")
            << MenuItem{.title = u"None"_s} << u"enabled: false, label: None"_s;
        QTest::newRow("a disabled one")
            << MenuItem{.title = u"Off"_s, .action = nothing, .isEnabled = false}
            << u"enabled: false, label: Off"_s;
        QTest::newRow("a separator") << MenuItem{} << u"type: separator"_s;
        QTest::newRow("one that is checked")
            << MenuItem{.title = u"Pause"_s, .action = nothing, .isChecked = true}
            << u"enabled: true, label: Pause, toggle-state: 1, toggle-type: checkmark"_s;
        QTest::newRow("one that is not")
            << MenuItem{.title = u"Pause"_s, .action = nothing, .isChecked = false}
            << u"enabled: true, label: Pause, toggle-state: 0, toggle-type: checkmark"_s;
        QTest::newRow("one with a key")
            << MenuItem{.title = u"Quit"_s, .action = nothing, .keyEquivalent = u"q"_s}
            << u"enabled: true, label: Quit, shortcut: [[Control, Q]]"_s;
        QTest::newRow("an ampersand is a letter")
            << MenuItem{.title = u"A & B & C"_s, .action = nothing}
            << u"enabled: true, label: A & B & C"_s;
        QTest::newRow("an underscore would mark a letter")
            << MenuItem{.title = u"a_b__c"_s, .action = nothing}
            << u"enabled: true, label: a__b____c"_s;
    }
    void showsEachKindOfItem()
    {
        QFETCH(const MenuItem, item);
        QFETCH(const QString, properties);
        ShownMenu shown({item});
        QCOMPARE(shown.layout(), u"1 | "_s + root(u"(1, {%1}, [])"_s.arg(properties)));
    }

    void givesOnlyWhatIsAskedFor_data()
    {
        QTest::addColumn<QString>("method");
        QTest::addColumn<QVariantList>("arguments");
        QTest::addColumn<QString>("answer");
        const QVariant ids = QVariant::fromValue(QList<int>{2, 9});
        const QVariant all = QVariant::fromValue(QList<int>());
        QTest::newRow("the root alone")
            << u"GetLayout"_s << QVariantList{0, 0, QStringList()} << u"1 | "_s + root({});
        QTest::newRow("one item") << u"GetLayout"_s << QVariantList{2, -1, QStringList()}
                                  << u"1 | (2, {enabled: false, label: B}, [])"_s;
        QTest::newRow("one property")
            << u"GetLayout"_s << QVariantList{0, 1, QStringList(u"label"_s)}
            << u"1 | (0, {}, [(1, {label: A}, []), (2, {label: B}, [])])"_s;
        QTest::newRow("no such item") << u"GetLayout"_s << QVariantList{3, -1, QStringList()}
                                      << u"org.freedesktop.DBus.Error.InvalidArgs"_s;
        QTest::newRow("properties of items")
            << u"GetGroupProperties"_s << QVariantList{ids, QStringList()}
            << u"[(2, {enabled: false, label: B})]"_s;
        QTest::newRow("properties of all items")
            << u"GetGroupProperties"_s << QVariantList{all, QStringList(u"enabled"_s)}
            << u"[(0, {}), (1, {enabled: true}), (2, {enabled: false})]"_s;
        QTest::newRow("the value of a property")
            << u"GetProperty"_s << QVariantList{2, u"label"_s} << u"B"_s;
        QTest::newRow("that it is a menu")
            << u"GetProperty"_s << QVariantList{0, u"children-display"_s} << u"submenu"_s;
        QTest::newRow("no such property") << u"GetProperty"_s << QVariantList{2, u"colour"_s}
                                          << u"org.freedesktop.DBus.Error.InvalidArgs"_s;
        QTest::newRow("no such method")
            << u"GetMore"_s << QVariantList() << u"org.freedesktop.DBus.Error.UnknownMethod"_s;
        QTest::newRow("arguments of other types") << u"GetLayout"_s << QVariantList{u"0"_s}
                                                  << u"org.freedesktop.DBus.Error.UnknownMethod"_s;
    }
    void givesOnlyWhatIsAskedFor()
    {
        QFETCH(const QString, method);
        QFETCH(const QVariantList, arguments);
        QFETCH(const QString, answer);
        ShownMenu shown({entry(u"A"_s, u"a"_s), MenuItem{.title = u"B"_s}});
        QCOMPARE(shown.desktop.call(method, arguments), answer);
    }

    void hasTheProtocolsProperties()
    {
        ShownMenu shown;
        QCOMPARE(shown.desktop.call(u"org.freedesktop.DBus.Properties"_s, u"GetAll"_s,
                                    {u"com.canonical.dbusmenu"_s}),
                 u"{IconThemePath: [], Status: normal, TextDirection: ltr, Version: 3}"_s);
    }

    void tellsWhatIsChosen()
    {
        ShownMenu shown({entry(u"A"_s, u"a"_s), entry(u"B"_s, u"b"_s)});
        shown.click(2);
        QTRY_COMPARE(shown.chosen, QStringList(u"B"_s));
    }

    void choosesNothing_data()
    {
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("event");
        QTest::newRow("for an item that is only pointed at") << 1 << u"hovered"_s;
        QTest::newRow("for a disabled item") << 2 << u"clicked"_s;
        QTest::newRow("for a separator") << 3 << u"clicked"_s;
        QTest::newRow("for the menu itself") << 0 << u"clicked"_s;
        QTest::newRow("for an item that is not there") << 9 << u"clicked"_s;
    }
    void choosesNothing()
    {
        QFETCH(const int, id);
        QFETCH(const QString, event);
        MenuItem off = entry(u"B"_s, u"b"_s);
        off.isEnabled = false;
        ShownMenu shown({entry(u"A"_s, u"a"_s), off, MenuItem{}});
        QCOMPARE(shown.send(id, event), QString());
        // What is chosen comes in its order.
        shown.click(1);
        QTRY_COMPARE(shown.chosen, QStringList(u"A"_s));
    }

    void takesSeveralEventsAtOnce()
    {
        ShownMenu shown({entry(u"A"_s, u"a"_s)});
        const QList<ItemEvent> events{{1, u"opened"_s, QDBusVariant(0), 0},
                                      {7, u"clicked"_s, QDBusVariant(0), 0},
                                      {1, u"clicked"_s, QDBusVariant(0), 0}};
        QCOMPARE(shown.desktop.call(u"EventGroup"_s, {QVariant::fromValue(events)}), u"[7]"_s);
        QTRY_COMPARE(shown.chosen, QStringList(u"A"_s));
    }

    void keepsTheIdsOfItemsThatStay()
    {
        ShownMenu shown({entry(u"A"_s, u"a"_s), entry(u"B"_s, u"b"_s), entry(u"C"_s, u"c"_s)});
        shown.items = {entry(u"C"_s, u"c"_s), entry(u"A renamed"_s, u"a"_s), entry(u"D"_s, u"d"_s)};
        shown.menu.update();
        QCOMPARE(shown.layout(),
                 u"2 | "_s
                     + root(u"(3, {enabled: true, label: C}, []), (1, {enabled: true, label: A "
                            u"renamed}, []), "
                            "(4, {enabled: true, label: D}, [])"_s));
    }

    void choosesNothingForAnItemThatIsThereNoMore()
    {
        ShownMenu shown({entry(u"A"_s, u"a"_s), entry(u"B"_s, u"b"_s)});
        shown.items = {entry(u"B"_s, u"b"_s)};
        shown.menu.update();
        shown.items = {entry(u"A"_s, u"a"_s), entry(u"B"_s, u"b"_s)};
        shown.menu.update();
        shown.click(1);
        shown.click(3);
        QTRY_COMPARE(shown.chosen, QStringList(u"A"_s));
        QCOMPARE(
            shown.layout(),
            u"3 | "_s
                + root(
                    u"(3, {enabled: true, label: A}, []), (2, {enabled: true, label: B}, [])"_s));
    }

    void tellsItemsApartThatStandForTheSame()
    {
        ShownMenu shown({entry(u"A"_s, u"a"_s), MenuItem{}, entry(u"B"_s, u"a"_s), MenuItem{}});
        shown.click(3);
        QTRY_COMPARE(shown.chosen, QStringList(u"B"_s));
        QCOMPARE(shown.layout(),
                 u"1 | "_s
                     + root(u"(1, {enabled: true, label: A}, []), (2, {type: separator}, []), "
                            "(3, {enabled: true, label: B}, []), (4, {type: separator}, [])"_s));
    }

    void announcesWhatHasChanged_data()
    {
        QTest::addColumn<MenuItem>("now");
        QTest::addColumn<QStringList>("announced");
        MenuItem item = entry(u"A"_s, u"a"_s);
        QTest::newRow("nothing") << item << QStringList();
        item.title = u"B"_s;
        QTest::newRow("a title")
            << item
            << QStringList(u"ItemsPropertiesUpdated | [(1, {enabled: true, label: B})] | []"_s);
        item.isEnabled = false;
        QTest::newRow("two properties") << item
                                        << QStringList(u"ItemsPropertiesUpdated | [(1, {enabled: "
                                                       "false, label: B})] | []"_s);
        QTest::newRow("another item")
            << entry(u"A"_s, u"b"_s) << QStringList(u"LayoutUpdated | 2 | 0"_s);
    }
    void announcesWhatHasChanged()
    {
        QFETCH(const MenuItem, now);
        QFETCH(const QStringList, announced);
        ShownMenu shown({entry(u"A"_s, u"a"_s)});
        // A desktop that follows from here on.
        shown.layout();
        const qsizetype before = shown.desktop.signalsSoFar().size();
        shown.items = {now};
        QCOMPARE(shown.menu.update(), !announced.isEmpty());
        // The answer comes behind the signals.
        shown.layout();
        QTRY_COMPARE(shown.desktop.signalsSoFar().sliced(before), announced);
    }

    void announcesAlsoWhatHasChangedBesidesTheLayout()
    {
        ShownMenu shown({entry(u"A"_s, u"a"_s)});
        shown.items = {entry(u"A renamed"_s, u"a"_s), entry(u"B"_s, u"b"_s)};
        shown.menu.update();
        shown.layout();
        QTRY_COMPARE(shown.desktop.signalsSoFar().sliced(1),
                     QStringList({u"ItemsPropertiesUpdated | [(1, {enabled: true, label: A "
                                  "renamed})] | []"_s,
                                  u"LayoutUpdated | 2 | 0"_s}));
    }

    void bringsTheMenuUpToDateWhenItIsAboutToBeShown()
    {
        ShownMenu shown({entry(u"A"_s, u"a"_s)});
        QCOMPARE(shown.desktop.call(u"AboutToShow"_s, {0}), u"false"_s);
        shown.items << entry(u"B"_s, u"b"_s);
        QCOMPARE(shown.desktop.call(u"AboutToShow"_s, {0}), u"true"_s);
        QCOMPARE(
            shown.layout(),
            u"2 | "_s
                + root(
                    u"(1, {enabled: true, label: A}, []), (2, {enabled: true, label: B}, [])"_s));
        shown.items << entry(u"C"_s, u"c"_s);
        const QVariant ids = QVariant::fromValue(QList<int>{0});
        QCOMPARE(shown.desktop.call(u"AboutToShowGroup"_s, {ids}), u"[0] | []"_s);
        QCOMPARE(shown.desktop.call(u"AboutToShowGroup"_s, {ids}), u"[] | []"_s);
    }

    void showsAThousandEntriesAtOnce()
    {
        ShownMenu shown;
        for (int i = 0; i < 1000; ++i)
            shown.items << entry(u"Entry %1    ⌃⌥K"_s.arg(i), QString::number(i));
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(shown.desktop.call(u"AboutToShow"_s, {0}), u"true"_s);
        QVERIFY(timer.elapsed() < 200);
        QVERIFY(shown.layout().contains(u"(1000, {enabled: true, label: Entry 999    ⌃⌥K}, [])"_s));
    }
};

QTEST_GUILESS_MAIN(DBusMenuTest)
#include "DBusMenuTest.moc"
