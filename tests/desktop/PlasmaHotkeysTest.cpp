// Key combinations on a running KWin: who registers them there, and what presses do.

#include "support/Accessible.h"
#include "support/ProgramOnTheBus.h"
#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"
#include "support/WaylandKeyboard.h"
#include "support/WriteFile.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QTest>
#include <algorithm>
#include <csignal>

using namespace Qt::StringLiterals;

namespace
{
const QString service = u"org.kde.kglobalaccel"_s;
const QString component = u"org.corvane.Corvane"_s;

constexpr StoredKeys storedControlAltK{40, 0x1800};
constexpr StoredKeys storedControlAltJ{38, 0x1800};
constexpr StoredKeys storedControlY{16, 0x1000};
constexpr StoredKeys storedControlZ{6, 0x1000};
constexpr int controlAltCode = int(Qt::ControlModifier) | int(Qt::AltModifier);
const QList<int> controlAltK{KEY_LEFTCTRL, KEY_LEFTALT, KEY_K};
const QList<int> controlAltJ{KEY_LEFTCTRL, KEY_LEFTALT, KEY_J};

/// Longer than it takes a held key to repeat several times.
constexpr int longHold = 1300;

QDBusMessage ask(const QString &path, const QString &interface, const QString &method,
                 const QVariantList &arguments = {})
{
    auto question = QDBusMessage::createMethodCall(service, path, interface, method);
    question.setArguments(arguments);
    return QDBusConnection::sessionBus().call(question);
}

QDBusMessage ask(const QString &method, const QVariantList &arguments)
{
    return ask(u"/kglobalaccel"_s, u"org.kde.KGlobalAccel"_s, method, arguments);
}

struct Shortcut {
    QString name;
    QString title;
    QList<int> codes;
};

/// What the service has of a component's.
QList<Shortcut> shortcutsOf(const QString &path)
{
    QList<Shortcut> found;
    const auto answer = ask(path, u"org.kde.kglobalaccel.Component"_s, u"allShortcutInfos"_s);
    if (answer.signature() != u"a(ssssssaiai)")
        return found;
    const auto list = answer.arguments().constFirst().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        Shortcut shortcut;
        QString other;
        list.beginStructure();
        list >> shortcut.name >> shortcut.title >> other >> other >> other >> other
            >> shortcut.codes;
        list.endStructure();
        found << shortcut;
    }
    return found;
}

/// The codes that the service has for the program.
QList<int> heldCodes()
{
    QList<int> codes;
    for (const Shortcut &shortcut : shortcutsOf(u"/component/org_corvane_Corvane"_s))
        codes += shortcut.codes;
    std::ranges::sort(codes);
    return codes;
}

/// Another program that has keys, until its end.
class Rival
{
public:
    explicit Rival(int code)
    {
        constexpr uint presentAndNotAutoloaded = 6;
        ask(u"doRegister"_s, {m_id});
        ask(u"setShortcut"_s,
            {m_id, QVariant::fromValue(QList<int>{code}), presentAndNotAutoloaded});
    }
    ~Rival() { ask(u"unregister"_s, {m_id.at(0), m_id.at(1)}); }
    Q_DISABLE_COPY_MOVE(Rival)

private:
    const QStringList m_id{u"rival"_s, u"act"_s, u"Rival"_s, u"Act"_s};
};

/// As the desktop's settings do.
void setLayouts(const QByteArray &names)
{
    writeFile(qEnvironmentVariable("XDG_CONFIG_HOME") + u"/kxkbrc"_s,
              "[Layout]\nUse=true\nLayoutList=" + names + '\n');
    QDBusConnection::sessionBus().send(
        QDBusMessage::createSignal(u"/Layouts"_s, u"org.kde.keyboard"_s, u"reloadConfig"_s));
}

void switchTo(uint layout)
{
    auto *const bus = QDBusConnection::sessionBus().interface();
    QTRY_VERIFY(bus->isServiceRegistered(u"org.kde.keyboard"_s));
    auto call = QDBusMessage::createMethodCall(u"org.kde.keyboard"_s, u"/Layouts"_s,
                                               u"org.kde.KeyboardLayouts"_s, u"setLayout"_s);
    call << layout;
    QCOMPARE(QDBusConnection::sessionBus().call(call).arguments(), QVariantList{true});
}

struct Desk {
    WaylandKeyboard keyboard;
    RecordedApp app;
    ProgramUnderTest program;

    Desk() { program.isAccessible = true; }
    /// Nothing of a program that ends remains for the next one.
    ~Desk()
    {
        if (program.isRunning())
            program.stop();
    }
    Q_DISABLE_COPY_MOVE(Desk)

    void start(const QList<int> &codes = {controlAltCode | Qt::Key_K})
    {
        program.start();
        QTRY_COMPARE(heldCodes(), codes);
    }

    /// Types while nothing tells whether the program is ready.
    void typeUntilItRuns(const QList<int> &keys)
    {
        const qsizetype runs = app.starts().size();
        const auto runs300msLater = [&] {
            keyboard.type(keys);
            return QTest::qWaitFor([&] { return app.starts().size() > runs; }, 300);
        };
        QTRY_VERIFY(runs300msLater());
    }

    void claimRuns(qsizetype runs) { QTRY_COMPARE(app.starts().size(), runs); }
};
} // namespace

class PlasmaHotkeysTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runTheirEntry()
    {
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.start();
        desk.keyboard.type(controlAltK);
        desk.claimRuns(1);
        desk.keyboard.type(controlAltK);
        desk.claimRuns(2);
        QCOMPARE(desk.program.errorOutput(), QByteArray());
    }

    void runItOnceWhileHeld()
    {
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.start();
        desk.keyboard.press(controlAltK);
        QTest::qWait(longHold);
        desk.keyboard.release(controlAltK);
        QTest::qWait(60);
        desk.keyboard.type(controlAltK);
        desk.claimRuns(2);
    }

    void areGivenUpAtTheEnd()
    {
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.start();
        QCOMPARE(desk.program.stop(), 0);
        QCOMPARE(heldCodes(), QList<int>());
    }

    void outliveACrash()
    {
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.start();
        kill(desk.program.processId(), SIGKILL);
        desk.program.exitStatus();
        QCOMPARE(heldCodes(), QList<int>{controlAltCode | Qt::Key_K});
        desk.program.startAgain();
        desk.typeUntilItRuns(controlAltK);
    }

    void leaveNothingOfACrashThatIsNotWantedAnyMore()
    {
        Desk desk;
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.start();
        kill(desk.program.processId(), SIGKILL);
        desk.program.exitStatus();
        Desk next;
        next.program.addApp(next.app.desktopFile(), storedControlAltJ);
        next.start({controlAltCode | Qt::Key_J});
        next.keyboard.type(controlAltJ);
        next.claimRuns(1);
    }

    void areNotTakenFromOthers()
    {
        Desk desk;
        auto rival = std::make_unique<Rival>(controlAltCode | Qt::Key_K);
        desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.program.addApp(desk.app.desktopFile(), storedControlAltJ);
        desk.start({controlAltCode | Qt::Key_J});
        QTRY_COMPARE(shortcutsOf(u"/component/org_corvane_Corvane"_s).size(), 1);
        desk.keyboard.type(controlAltK);
        desk.keyboard.type(controlAltJ);
        desk.claimRuns(1);
        // The program tries again when its window is activated.
        rival.reset();
        askForSettings();
        QTRY_COMPARE(heldCodes(),
                     QList<int>({controlAltCode | Qt::Key_J, controlAltCode | Qt::Key_K}));
    }

    void followTheLayout()
    {
        setLayouts("us,de,ru");
        switchTo(0);
        Desk desk;
        RecordedApp other;
        desk.program.addApp(desk.app.desktopFile(), storedControlY);
        desk.program.addApp(other.desktopFile(), storedControlZ);
        constexpr int control = int(Qt::ControlModifier);
        desk.start({control | Qt::Key_Y, control | Qt::Key_Z});
        for (const uint layout : {0, 1, 2, 1, 0}) {
            switchTo(layout);
            desk.typeUntilItRuns({KEY_LEFTCTRL, KEY_Y});
        }
        setLayouts("us");
    }
};

QTEST_GUILESS_MAIN(PlasmaHotkeysTest)
#include "PlasmaHotkeysTest.moc"
