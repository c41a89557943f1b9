// What comes to the front at a press on a running KWin: started programs, with the token of the
// press, and open applications.

#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"
#include "support/WaylandKeyboard.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRasterWindow>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
constexpr StoredKeys storedControlAltK{40, 0x1800};
constexpr StoredKeys storedControlAltJ{38, 0x1800};
const QList<int> controlAltJ{KEY_LEFTCTRL, KEY_LEFTALT, KEY_J};
const QList<int> controlAltK{KEY_LEFTCTRL, KEY_LEFTALT, KEY_K};

/// Installs a desktop file with which a program gets an interface of KWin's.
void install(const QString &name, const QString &program, const QByteArray &interface)
{
    const QDir folder(qEnvironmentVariable("XDG_DATA_HOME") + u"/applications"_s);
    QVERIFY(folder.mkpath(u"."_s));
    QFile file(folder.filePath(name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("[Desktop Entry]\nType=Application\nName=Program\nExec=" + QFile::encodeName(program)
               + "\nX-KDE-Wayland-Interfaces=" + interface + '\n');
}

/// A window in front, of the application whose .desktop file has that name.
class Window : public QRasterWindow
{
public:
    explicit Window(const QString &title, const QString &app = {})
    {
        QGuiApplication::setDesktopFileName(app);
        setTitle(title);
        resize(300, 200);
        show();
        QTRY_VERIFY(isActive());
    }
};

/// The program with an app that is always started, and one that may be open.
struct Desk {
    WaylandKeyboard keyboard;
    RecordedApp other;
    RecordedApp app;
    ProgramUnderTest program;

    /// Starts the program, and the other app by its keys.
    void start()
    {
        program.addApp(other.desktopFile(), storedControlAltJ);
        program.addApp(app.desktopFile(), storedControlAltK);
        program.start();
        const auto hasStarted = [this] {
            keyboard.type(controlAltJ);
            return QTest::qWaitFor([this] { return !other.starts().isEmpty(); }, 300);
        };
        QVERIFY(QTest::qWaitFor(hasStarted));
    }

    QByteArray token() const
    {
        return other.starts().value(0).value(u"activationToken"_s).toString().toUtf8();
    }
};
} // namespace

class PlasmaFrontTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        install(u"keyboard.desktop"_s, QCoreApplication::applicationFilePath(),
                "org_kde_kwin_fake_input");
        install(u"org.corvane.Corvane.desktop"_s, ProgramUnderTest().program,
                "org_kde_plasma_window_management");
        // KWin takes notice of new desktop files after a while.
        const auto isPermitted = [] {
            Desk desk;
            desk.start();
            return !desk.token().isEmpty();
        };
        QVERIFY(QTest::qWaitFor(isPermitted, 30000));
    }

    void hasNoTokenIfTheProgramIsNotInstalled()
    {
        const QTemporaryDir folder;
        Desk desk;
        const QString copy = folder.filePath(u"corvane"_s);
        QVERIFY(QFile::copy(desk.program.program, copy));
        desk.program.program = copy;
        desk.start();
        QCOMPARE(desk.token(), QByteArray());
        Window open(u"App"_s, u"app"_s);
        desk.keyboard.type(controlAltK);
        QTRY_COMPARE(desk.app.starts().size(), 1);
    }

    void bringsAWindowOfAStartedProgramToTheFront()
    {
        Window behind(u"Behind"_s);
        const Window front(u"Front"_s);
        Desk desk;
        desk.start();
        QVERIFY(!desk.token().isEmpty());
        // Qt's Wayland plugin reads the token from this variable.
        qputenv("XDG_ACTIVATION_TOKEN", desk.token());
        QVERIFY(front.isActive() && !behind.isActive());
        behind.requestActivate();
        QTRY_VERIFY(behind.isActive());
    }

    void bringsAnOpenAppToTheFront_data()
    {
        QTest::addColumn<bool>("isMinimized");
        QTest::newRow("from behind another window") << false;
        QTest::newRow("minimized") << true;
    }
    void bringsAnOpenAppToTheFront()
    {
        QFETCH(const bool, isMinimized);
        Desk desk;
        desk.start();
        Window window(u"App"_s, u"app"_s);
        if (isMinimized)
            window.showMinimized();
        const Window front(u"Front"_s, u"front"_s);
        desk.keyboard.type(controlAltK);
        QTRY_VERIFY(window.isActive());
        QCOMPARE(desk.app.starts().size(), 0);
    }

    void bringsOneWindowAfterTheOther()
    {
        Desk desk;
        desk.start();
        const Window first(u"First"_s, u"app"_s);
        const Window second(u"Second"_s, u"app"_s);
        const Window third(u"Third"_s, u"app"_s);
        for (const Window *const window : {&first, &second, &third, &first}) {
            desk.keyboard.type(controlAltK);
            QTRY_VERIFY(window->isActive());
        }
        QCOMPARE(desk.app.starts().size(), 0);
    }

    void startsAnAppWithoutAWindow()
    {
        Desk desk;
        desk.start();
        const Window front(u"Front"_s, u"front"_s);
        desk.keyboard.type(controlAltK);
        QTRY_COMPARE(desk.app.starts().size(), 1);
    }
};

QTEST_MAIN(PlasmaFrontTest)
#include "PlasmaFrontTest.moc"
