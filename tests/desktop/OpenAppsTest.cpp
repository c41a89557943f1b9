// Open applications come to the front at a press of their keys, with the window manager that the
// variable CORVANE_WINDOW_MANAGER names in place of the one that is there.

#include "support/Keyboard.h"
#include "support/ProgramOnTheBus.h"
#include "support/ProgramUnderTest.h"
#include "support/RecordedApp.h"
#include "support/Windows.h"

#include <QProcess>
#include <QRasterWindow>
#include <QTest>
#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace
{
constexpr quint16 controlAlt = XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1;
constexpr StoredKeys storedControlAltK{40, 0x1800};
constexpr StoredKeys storedControlAltJ{38, 0x1800};
const QList<int> controlAltJ{KEY_LEFTCTRL, KEY_LEFTALT, KEY_J};
const QList<int> controlAltK{KEY_LEFTCTRL, KEY_LEFTALT, KEY_K};

xcb_connection_t *connection()
{
    return qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
}

xcb_atom_t atom(const QByteArray &name)
{
    const auto request = xcb_intern_atom(connection(), false, uint16_t(name.size()), name.data());
    auto *const reply = xcb_intern_atom_reply(connection(), request, nullptr);
    const xcb_atom_t atom = reply->atom;
    std::free(reply);
    return atom;
}

struct Disconnect {
    void operator()(xcb_connection_t *connection) const { xcb_disconnect(connection); }
};

using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

/// Null if the X server accepts no more connections.
Connection furtherConnection()
{
    Connection connection(xcb_connect(nullptr, nullptr));
    return xcb_connection_has_error(connection.get()) ? nullptr : std::move(connection);
}

/// A window of an application of that class, shown in front.
class Window : public QRasterWindow
{
public:
    explicit Window(const QString &title, const QByteArray &instance = "recorded",
                    const QByteArray &className = "Recorded")
    {
        setTitle(title);
        resize(200, 150);
        create();
        setBytes("WM_CLASS", instance + '\0' + className + '\0');
    }

    void setBytes(const QByteArray &name, const QByteArray &value)
    {
        xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, id(), atom(name), XCB_ATOM_STRING,
                            8, uint32_t(value.size()), value.constData());
    }

    void setAtom(const QByteArray &name, const QByteArray &value)
    {
        const xcb_atom_t number = atom(value);
        xcb_change_property(connection(), XCB_PROP_MODE_REPLACE, id(), atom(name), XCB_ATOM_ATOM,
                            32, 1, &number);
    }

    void openInFront()
    {
        show();
        // Window managers list a window a moment after it has the focus.
        QTRY_VERIFY(windowOnScreen(title()) && activeTitle() == title());
    }

    xcb_window_t id() const { return xcb_window_t(winId()); }
};

struct WindowInFront : Window {
    template <typename... Class>
    explicit WindowInFront(const QString &title, Class... nameOfClass)
        : Window(title, nameOfClass...)
    {
        openInFront();
    }
};

/// A window of another application.
struct OtherInFront : WindowInFront {
    OtherInFront()
        : WindowInFront(u"Other"_s, "other", "Other")
    {
    }
};

/// The program with an entry for an app.
struct Desk {
    Keyboard keyboard;
    RecordedApp app;
    ProgramUnderTest program;

    explicit Desk(const QByteArray &furtherLines = "StartupWMClass=Recorded")
        : app({}, furtherLines)
    {
    }

    void start()
    {
        program.addApp(app.desktopFile(), storedControlAltK);
        program.start();
        QTRY_VERIFY(keyboard.isGrabbed(KEY_K, controlAlt));
    }

    /// Presses the keys, and claims that this window comes to the front and nothing starts.
    void claimFront(const Window &window)
    {
        keyboard.type(controlAltK);
        QTRY_COMPARE(activeTitle(), window.title());
        QCOMPARE(app.starts().size(), 0);
    }
};

class WindowManager
{
public:
    WindowManager()
    {
        const QString program = qEnvironmentVariable("CORVANE_WINDOW_MANAGER");
        if (program.isEmpty())
            return;
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_process.startCommand(program);
        QTRY_VERIFY(
            name().contains(program.section(u' ', 0, 0).section(u'_', 0, 0), Qt::CaseInsensitive));
    }
    ~WindowManager()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    static QString name()
    {
        QProcess process;
        process.start(u"sh"_s,
                      {u"-c"_s,
                       u"xprop -id $(xprop -root -notype _NET_SUPPORTING_WM_CHECK | "
                       "sed 's/.* //') _NET_WM_NAME"_s});
        process.waitForFinished();
        return QString::fromUtf8(process.readAllStandardOutput());
    }

    QProcess m_process;
};
} // namespace

class OpenAppsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_windowManager = std::make_unique<WindowManager>();
        setWorkspaces(2);
    }
    void cleanup() { switchToWorkspace(0); }
    void cleanupTestCase() { m_windowManager.reset(); }

    void comeToTheFront_data()
    {
        QTest::addColumn<std::function<void(Window &)>>("hide");
        const auto add = [](const char *row, const std::function<void(Window &)> &hide) {
            QTest::newRow(row) << hide;
        };
        add("from behind another window", [](Window &) {});
        add("minimized", [](Window &window) { minimizeWindow(window.id()); });
        add("from another workspace", [](Window &) {
            switchToWorkspace(1);
            QTRY_COMPARE(currentWorkspace(), 1);
        });
    }
    void comeToTheFront()
    {
        QFETCH(const std::function<void(Window &)>, hide);
        Desk desk;
        desk.start();
        WindowInFront window(u"App"_s);
        hide(window);
        const OtherInFront other;
        desk.claimFront(window);
        QCOMPARE(currentWorkspace(), 0);
        QCOMPARE(workspaceOf(window.id()), 0);
    }

    void startWithoutAWindow()
    {
        Desk desk;
        desk.start();
        const OtherInFront other;
        desk.keyboard.type(controlAltK);
        QTRY_COMPARE(desk.app.starts().size(), 1);
        desk.keyboard.type(controlAltK);
        QTRY_COMPARE(desk.app.starts().size(), 2);
    }

    void startIfTheUserWantsThat()
    {
        Desk desk;
        desk.program.addDefault("bringToFront=false");
        desk.start();
        const WindowInFront window(u"App"_s);
        const OtherInFront other;
        desk.keyboard.type(controlAltK);
        QTRY_COMPARE(desk.app.starts().size(), 1);
        QCOMPARE(activeTitle(), u"Other"_s);
    }

    void comeOneAfterTheOther()
    {
        Desk desk;
        desk.start();
        const WindowInFront first(u"First"_s);
        const WindowInFront second(u"Second"_s);
        const WindowInFront third(u"Third"_s);
        const OtherInFront other;
        for (const Window *const window : {&third, &first, &second, &third})
            desk.claimFront(*window);
    }

    void openAndCloseBetweenPresses()
    {
        Desk desk;
        desk.start();
        for (int starts = 1; starts <= 3; ++starts) {
            desk.keyboard.type(controlAltK);
            QTRY_COMPARE(desk.app.starts().size(), starts);
            WindowInFront window(u"App"_s);
            const OtherInFront other;
            desk.keyboard.type(controlAltK);
            QTRY_COMPARE(activeTitle(), u"App"_s);
            QCOMPARE(desk.app.starts().size(), starts);
            window.destroy();
            QTRY_VERIFY(!windowOnScreen(window.title()));
        }
    }

    void startWhileTheServerAcceptsNoConnection()
    {
        Desk desk;
        desk.start();
        const WindowInFront window(u"App"_s);
        const OtherInFront other;
        std::vector<Connection> connections;
        while (Connection connection = furtherConnection())
            connections.push_back(std::move(connection));
        desk.keyboard.type(controlAltK);
        QTRY_COMPARE(desk.app.starts().size(), 1);
        connections.clear();
        QTRY_VERIFY(furtherConnection());
        desk.keyboard.type(controlAltK);
        QTRY_COMPARE(activeTitle(), u"App"_s);
        QCOMPARE(desk.app.starts().size(), 1);
    }

    void stayIfTheyAreInFront()
    {
        const RecordedApp other;
        Desk desk;
        desk.program.addApp(other.desktopFile(), storedControlAltJ);
        desk.start();
        const WindowInFront window(u"App"_s);
        desk.keyboard.type(controlAltK);
        // What that press did comes before what the next one does.
        desk.keyboard.type(controlAltJ);
        QTRY_COMPARE(other.starts().size(), 1);
        QCOMPARE(desk.app.starts().size(), 0);
        QCOMPARE(activeTitle(), u"App"_s);
    }

    void areNoDialogsPanelsAndTheLike()
    {
        Desk desk;
        desk.start();
        const WindowInFront window(u"App"_s);
        Window palette(u"Palette"_s);
        palette.setAtom("_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_UTILITY");
        palette.show();
        Window hidden(u"Hidden"_s);
        hidden.setAtom("_NET_WM_STATE", "_NET_WM_STATE_SKIP_TASKBAR");
        hidden.show();
        const OtherInFront other;
        desk.claimFront(window);
    }

    void areInFrontWithADialogOfTheirs()
    {
        Desk desk;
        desk.start();
        const WindowInFront first(u"First"_s);
        WindowInFront second(u"Second"_s);
        Window dialog(u"Dialog"_s);
        dialog.setTransientParent(&second);
        dialog.setFlags(Qt::Dialog);
        dialog.setBytes("WM_CLASS", "recorded\0Recorded\0"_ba);
        dialog.openInFront();
        desk.claimFront(first);
    }

    void areKnownByTheirNames_data()
    {
        QTest::addColumn<QByteArray>("furtherLines");
        QTest::addColumn<QByteArray>("instance");
        QTest::addColumn<QByteArray>("className");
        QTest::newRow("class, in another case")
            << QByteArray("StartupWMClass=rEcorded") << QByteArray("x") << QByteArray("Recorded");
        QTest::newRow("program") << QByteArray() << QByteArray("Record-Start") << QByteArray("X");
        QTest::newRow("file") << QByteArray() << QByteArray("x") << QByteArray("App");
    }
    void areKnownByTheirNames()
    {
        QFETCH(const QByteArray, furtherLines);
        QFETCH(const QByteArray, instance);
        QFETCH(const QByteArray, className);
        Desk desk(furtherLines);
        desk.start();
        const WindowInFront window(u"App"_s, instance, className);
        const OtherInFront other;
        desk.claimFront(window);
    }

    void areKnownByTheirProcess()
    {
        // A program without a .desktop file: this test itself.
        Desk desk;
        desk.program.addApp(QCoreApplication::applicationFilePath(), storedControlAltJ);
        desk.start();
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_J, controlAlt));
        const WindowInFront first(u"First"_s);
        const WindowInFront second(u"Second"_s);
        desk.keyboard.type(controlAltJ);
        QTRY_COMPARE(activeTitle(), u"First"_s);
    }

    void comeForAFireToo()
    {
        Desk desk;
        const QString id = desk.program.addApp(desk.app.desktopFile(), storedControlAltK);
        desk.program.start();
        QTRY_VERIFY(desk.keyboard.isGrabbed(KEY_K, controlAlt));
        const WindowInFront window(u"App"_s);
        const OtherInFront other;
        askToFire(id);
        QTRY_COMPARE(activeTitle(), u"App"_s);
        QCOMPARE(desk.app.starts().size(), 0);
    }

private:
    std::unique_ptr<WindowManager> m_windowManager;
};

QTEST_MAIN(OpenAppsTest)
#include "OpenAppsTest.moc"
