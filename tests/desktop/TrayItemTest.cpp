// The tray item, as desktops read it over the bus and find it in their trays.

#include "platform/linux/tray/TrayItem.h"
#include "platform/linux/activation/UserActivation.h"
#include "support/DBusClient.h"
#include "support/Panel.h"
#include "support/RecordedService.h"
#include "support/TrayUser.h"
#include "support/WriteFile.h"

#include <QApplication>
#include <QCursor>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QScreen>
#include <QSemaphore>
#include <QTest>
#include <QThread>

using namespace Qt::StringLiterals;

namespace
{
const QString watcherName = u"org.kde.StatusNotifierWatcher"_s;
const QString itemInterface = u"org.kde.StatusNotifierItem"_s;
const QString propertiesInterface = u"org.freedesktop.DBus.Properties"_s;

/// A desktop that shows items, or has only begun to come.
RecordedService::Answer host(bool isThere)
{
    return [isThere](const QDBusMessage &message, const QDBusConnection &connection) {
        const QVariant answer = QVariant::fromValue(QDBusVariant(isThere));
        return connection.send(message.member() == u"Get" ? message.createReply(answer)
                                                          : message.createReply());
    };
}

/// A desktop that has only begun to come, and answers also while our thread waits for it.
class BegunDesktop : public QThread
{
public:
    BegunDesktop()
    {
        start();
        m_isThere.acquire();
    }
    ~BegunDesktop() override
    {
        quit();
        wait();
    }

protected:
    void run() override
    {
        const RecordedService watcher(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), watcherName,
                                      host(false));
        m_isThere.release();
        exec();
    }

private:
    QSemaphore m_isThere;
};

QString ownRegistration()
{
    return u"/StatusNotifierWatcher | "_s + QDBusConnection::sessionBus().baseService();
}

class FakeDelegate : public StatusItemDelegate
{
public:
    StatusButton statusButton() const override { return button; }
    QList<MenuItem> menuNeedsUpdate() override { return menu; }
    void statusButtonClicked() override { ++clicks; }

    StatusButton button{.image = u"command.square"_s, .accessibilityDescription = u"Corvane"_s};
    QList<MenuItem> menu{
        MenuItem{.title = u"Run"_s, .action = [this](const MenuItem &) { ++choices; }}};
    int choices = 0;
    int clicks = 0;
};

/// Sets a variable of the environment, until it is destroyed.
class Variable
{
public:
    Variable(const char *name, const QByteArray &value)
        : m_name(name)
        , m_before(qgetenv(name))
    {
        qputenv(name, value);
    }
    ~Variable() { qputenv(m_name, m_before); }
    Q_DISABLE_COPY_MOVE(Variable)

private:
    const char *m_name;
    QByteArray m_before;
};

struct Tray {
    FakeDelegate delegate;
    UserActivation activation;
    TrayItem item{delegate, activation};
    DBusClient desktop{u"/StatusNotifierItem"_s, itemInterface};
    DBusClient menu{u"/MenuBar"_s, u"com.canonical.dbusmenu"_s};

    QString property(const QString &name)
    {
        return desktop.call(propertiesInterface, u"Get"_s, {itemInterface, name});
    }
    void click(int id)
    {
        menu.call(u"Event"_s, {id, u"clicked"_s, QVariant::fromValue(QDBusVariant(QString())), 0U});
    }
};
} // namespace

class TrayItemTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void makesItselfKnownToEachDesktopThatComes()
    {
        const QString bus = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
        std::optional<RecordedService> watcher(std::in_place, bus, watcherName, host(true));
        const Tray tray;
        const auto registrations = [&watcher] {
            return watcher->calls(u"RegisterStatusNotifierItem"_s);
        };
        QTRY_COMPARE(registrations(), QStringList(ownRegistration()));
        watcher.reset();
        watcher.emplace(bus, watcherName, host(true));
        QTRY_COMPARE(registrations(), QStringList(ownRegistration()));
    }

    void saysWhatItIs_data()
    {
        QTest::addColumn<QString>("property");
        QTest::addColumn<QString>("value");
        QTest::newRow("category") << u"Category"_s << u"ApplicationStatus"_s;
        QTest::newRow("id") << u"Id"_s << u"org.corvane.Corvane"_s;
        QTest::newRow("title") << u"Title"_s << u"Corvane"_s;
        QTest::newRow("status") << u"Status"_s << u"Active"_s;
        QTest::newRow("tooltip") << u"ToolTip"_s << u"(, [], Corvane, )"_s;
        QTest::newRow("a left click opens the menu") << u"ItemIsMenu"_s << u"true"_s;
        QTest::newRow("menu") << u"Menu"_s << u"/MenuBar"_s;
        QTest::newRow("nothing else")
            << u"Colour"_s << u"org.freedesktop.DBus.Error.UnknownProperty"_s;
    }
    void saysWhatItIs()
    {
        QFETCH(const QString, property);
        QFETCH(const QString, value);
        Tray tray;
        QCOMPARE(tray.property(property), value);
    }

    void hasAnImageOfEachSizeOfPanels()
    {
        Tray tray;
        const QString images = tray.property(u"IconPixmap"_s);
        for (const int size : {16, 22, 24, 32, 48, 64, 96})
            QVERIFY(images.contains(u"(%1, %1, "_s.arg(size)));
    }

    void namesAnIconThatThePanelColours_data()
    {
        QTest::addColumn<QByteArray>("desktop");
        QTest::addColumn<QStringList>("installed");
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("nameWhenPaused");
        const QString normal = u"org.corvane.Corvane-symbolic"_s;
        const QString paused = u"org.corvane.Corvane-paused-symbolic"_s;
        QTest::newRow("on Plasma")
            << QByteArray("KDE") << QStringList{normal, paused} << normal << paused;
        QTest::newRow("only if it is installed")
            << QByteArray("KDE") << QStringList() << QString() << QString();
        QTest::newRow("only while it is shown")
            << QByteArray("KDE") << QStringList{normal} << normal << QString();
        QTest::newRow("not where the panel could be as dark")
            << QByteArray("LXQt") << QStringList{normal, paused} << QString() << QString();
    }
    void namesAnIconThatThePanelColours()
    {
        QFETCH(const QByteArray, desktop);
        QFETCH(const QStringList, installed);
        const QTemporaryDir data;
        for (const QString &name : installed)
            writeFile(data.filePath(u"icons/hicolor/symbolic/apps/%1.svg"_s.arg(name)), "<svg/>");
        const Variable dataHome("XDG_DATA_HOME", QFile::encodeName(data.path()));
        const Variable session("XDG_CURRENT_DESKTOP", desktop);
        Tray tray;
        QTEST(tray.property(u"IconName"_s), "name");
        QVERIFY(tray.property(u"IconPixmap"_s).contains(u"(22, 22, "));
        tray.delegate.button.isDimmed = true;
        tray.item.update();
        QTEST(tray.property(u"IconName"_s), "nameWhenPaused");
        QTRY_VERIFY(tray.desktop.signalsSoFar().contains(u"NewIcon | "));
    }

    void letsThePanelColourTheIconAgain_data()
    {
        QTest::addColumn<QString>("changed");
        QTest::newRow("in other colours") << u"kdeglobals"_s;
        QTest::newRow("in another theme of the panel") << u"plasmarc"_s;
    }
    void letsThePanelColourTheIconAgain()
    {
        QFETCH(const QString, changed);
        const QTemporaryDir config;
        writeFile(config.filePath(u"kdeglobals"_s), "[General]\n");

        const Variable configHome("XDG_CONFIG_HOME", QFile::encodeName(config.path()));
        const Variable session("XDG_CURRENT_DESKTOP", "KDE");
        Tray tray;
        QCOMPARE(tray.desktop.signalsSoFar(), QStringList());
        writeFile(config.filePath(changed), "[Theme]\nname=breeze-dark\n");
        QTRY_COMPARE(tray.desktop.signalsSoFar(), QStringList(u"NewIcon | "_s));
    }

    void tellsDesktopsOfAnotherButtonOnly()
    {
        Tray tray;
        const QString before = tray.property(u"IconPixmap"_s);
        tray.item.update();
        QCOMPARE(tray.property(u"Title"_s), u"Corvane"_s);
        QCOMPARE(tray.desktop.signalsSoFar(), QStringList());
        tray.delegate.button.accessibilityDescription = u"Corvane (paused)"_s;
        tray.delegate.button.isDimmed = true;
        tray.item.update();
        QTRY_COMPARE(tray.desktop.signalsSoFar(),
                     QStringList({u"NewIcon | "_s, u"NewToolTip | "_s}));
        QCOMPARE(tray.property(u"ToolTip"_s), u"(, [], Corvane (paused), )"_s);
        QVERIFY(tray.property(u"IconPixmap"_s) != before);
    }

    void opensItsMenuWhereADesktopAsksForIt_data()
    {
        QTest::addColumn<QString>("method");
        QTest::newRow("left click") << u"Activate"_s;
        QTest::newRow("right click") << u"ContextMenu"_s;
        QTest::newRow("middle click") << u"SecondaryActivate"_s;
    }
    void opensItsMenuWhereADesktopAsksForIt()
    {
        QFETCH(const QString, method);
        Tray tray;
        // At the pointer, because some panels send another place than that of the icon.
        QCursor::setPos(300, 200);
        tray.desktop.call(method, {0, 25});
        QTRY_VERIFY(QApplication::activePopupWidget());
        QCOMPARE(QApplication::activePopupWidget()->pos(), QPoint(300, 200));
    }

    void opensItsMenuAnewWhenItIsAskedTwice()
    {
        Tray tray;
        tray.desktop.call(u"Activate"_s, {300, 200});
        QTRY_VERIFY(QApplication::activePopupWidget());
        QCursor::setPos(400, 100);
        tray.desktop.call(u"Activate"_s, {400, 100});
        QTRY_VERIFY(QApplication::activePopupWidget());
        QCOMPARE(QApplication::activePopupWidget()->pos(), QPoint(400, 100));
    }

    void keepsALongMenuOnTheScreen()
    {
        Tray tray;
        const auto nothing = [](const MenuItem &) {};
        tray.delegate.menu << MenuItem{.title = QString(300, u'x') + u"    ⌘K"_s,
                                       .action = nothing};
        for (int i = 0; i < 1000; ++i)
            tray.delegate.menu << MenuItem{.title = u"Entry %1"_s.arg(i), .action = nothing};
        tray.desktop.call(u"Activate"_s, {300, 200});
        QTRY_VERIFY(QApplication::activePopupWidget());
        const auto *const menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        QVERIFY(menu->screen()->geometry().contains(menu->geometry()));
        QVERIFY(menu->width() < menu->screen()->size().width() / 2);
        QVERIFY(menu->actions().at(1)->text().endsWith(u"x    ⌘K"_s));
    }

    void waitsForNobodyWhoHasOnlyBegunToCome()
    {
        // It could not answer while our thread waits for it.
        const RecordedService watcher(qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS"), watcherName,
                                      host(false));
        QElapsedTimer timer;
        timer.start();
        Tray tray;
        QTRY_COMPARE(watcher.calls(u"Get"_s).size(), 1);
        // These are answered behind its answer.
        for (int i = 0; i < 5; ++i)
            QCOMPARE(tray.property(u"Title"_s), u"Corvane"_s);
        QVERIFY(timer.elapsed() < 5000);
    }

    void hasAnIconOfX11WhereADesktopDoesNotGetFurther()
    {
        const Panel panel(Panel::Kind::Trayer);
        const BegunDesktop desktop;
        FakeDelegate delegate;
        UserActivation activation;
        const TrayItem item(delegate, activation, std::chrono::milliseconds(10));
        const TrayUser user;
        QTRY_VERIFY(user.icon());
    }

    void acceptsWhatItHasNoUseFor()
    {
        Tray tray;
        QCOMPARE(tray.desktop.call(u"Scroll"_s, {1, u"vertical"_s}), QString());
        QCOMPARE(tray.desktop.call(u"Scroll"_s, {1}),
                 u"org.freedesktop.DBus.Error.UnknownMethod"_s);
    }

    void runsWhatIsChosenOnBehalfOfTheUser()
    {
        Tray tray;
        tray.click(1);
        QTRY_COMPARE(tray.delegate.choices, 1);
        QVERIFY(tray.activation.x11Time);
    }

    void handsOnTheDesktopsTokenOnce()
    {
        Tray tray;
        tray.desktop.call(u"ProvideXdgActivationToken"_s, {u"token-1"_s});
        tray.click(1);
        QTRY_COMPARE(tray.delegate.choices, 1);
        QCOMPARE(tray.activation.activationToken, QByteArray("token-1"));
        tray.click(1);
        QTRY_COMPARE(tray.delegate.choices, 2);
        QCOMPARE(tray.activation.activationToken, QByteArray());
    }
};

QTEST_MAIN(TrayItemTest)
#include "TrayItemTest.moc"
